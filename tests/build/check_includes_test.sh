#!/usr/bin/env bash
# Runs script/check-includes over small trees, each of them wrong in one way, and expects it to name
# the wrong file. Usage: check_includes_test.sh <script/check-includes> <scratch folder>
set -euo pipefail
check=$1
scratch=$2

# A fresh tree that breaks no rule, with a header and a source in every place that has rules.
make_good_tree() {
  rm -rf "$scratch"
  local folder
  for folder in core definitions sections models actions presets configuration resources; do
    mkdir -p "$scratch/orvel/$folder"
    printf '#pragma once\n#include <vector>\n' >"$scratch/orvel/$folder/a.h"
    printf '#include "orvel/%s/a.h"\n' "$folder" >"$scratch/orvel/$folder/a.cpp"
  done
  printf '#include "orvel/configuration/a.h"\n' >"$scratch/orvel/orvel.h"
  printf '#include "orvel/core/a.h"\n' >>"$scratch/orvel/configuration/a.h"
  printf '#include "orvel/configuration/a.h"\n' >"$scratch/orvel/configuration/b.h"
  printf '#include "orvel/configuration/a.h"\n' >>"$scratch/orvel/models/a.cpp"
  printf '#include "orvel/resources/a.h"\n' >>"$scratch/orvel/core/a.cpp"
  mkdir -p "$scratch/host/audio" "$scratch/host/session" "$scratch/apps/orvel"
  printf '#include <libavutil/frame.h>\n#include "orvel/orvel.h"\n' >"$scratch/host/audio/a.h"
  printf '#include "host/audio/a.h"\n' >"$scratch/host/audio/a.cpp"
  printf '#include "host/audio/a.h"\n' >"$scratch/host/session/a.h"
  printf '#include "host/audio/a.h"\n#include "orvel/orvel.h"\n' >"$scratch/apps/orvel/a.cpp"
  printf '#pragma once\n' >"$scratch/apps/orvel/a.h"
}

make_good_tree
if ! output=$("$check" "$scratch"); then
  printf 'a tree that breaks no rule is refused:\n%s\n' "$output"
  exit 1
fi

failures=0
while IFS='|' read -r rule file line; do
  make_good_tree
  printf '%s\n' "$line" >>"$scratch/$file"
  if output=$("$check" "$scratch"); then
    printf 'not found: %s (%s: %s)\n' "$rule" "$file" "$line"
    failures=$((failures + 1))
  elif ! grep -qF "$file" <<<"$output"; then
    printf 'found, but the file is not named: %s\n%s\n' "$rule" "$output"
    failures=$((failures + 1))
  fi
done <<'CASES'
a definitions header knows core alone|orvel/definitions/a.h|#include "orvel/sections/a.h"
a models header knows no action|orvel/models/a.h|#include "orvel/actions/a.h"
a presets header knows no configuration|orvel/presets/a.h|#include "orvel/configuration/a.h"
a core source knows core alone|orvel/core/a.cpp|#include "orvel/definitions/a.h"
a section source knows no model|orvel/sections/a.cpp|#include "orvel/models/a.h"
no header shows the resources|orvel/core/a.h|#include "orvel/resources/a.h"
the library never includes the umbrella header|orvel/models/a.cpp|#include "orvel/orvel.h"
the library never includes the host|orvel/configuration/a.cpp|#include "host/audio/a.h"
the library never includes a program|orvel/configuration/a.cpp|#include "apps/orvel/a.h"
the library never reads audio|orvel/models/a.cpp|#include <libavformat/avformat.h>
the library never measures audio|orvel/models/a.cpp|  #  include <ebur128.h>
the host sees the library through its umbrella|host/audio/a.cpp|#include "orvel/models/a.h"
the folders of the host know each other one way|host/audio/a.cpp|#include "host/session/a.h"
a program sees the library through its umbrella|apps/orvel/a.cpp|#include "orvel/core/a.h"
the host never includes a program|host/audio/a.cpp|#include "apps/orvel/a.h"
a header never includes itself|orvel/core/a.h|#include "orvel/core/a.h"
headers form no circle|orvel/configuration/a.h|#include "orvel/configuration/b.h"
an include is named from the root|orvel/core/a.cpp|#include "a.h"
a file of the project goes between quotes|orvel/core/a.h|#include <orvel/core/export.h>
CASES

exit $((failures > 0))
