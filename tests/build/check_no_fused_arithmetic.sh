#!/usr/bin/env bash
# check_no_fused_arithmetic.sh <compiler> <root>
#
# A host's compiler may fuse a product and a sum into one operation that rounds once. The inline
# arithmetic of the mappings must not take part, or a host would get other values than the library.
# The second function is the proof that this compiler does fuse.
set -euo pipefail

flags=(-std=c++20 -O2 -I "$2")
if [[ $(uname -m) == x86_64 ]]; then flags+=(-mfma); fi

assembly=$("$1" "${flags[@]}" -x c++ -S -o - - <<'EOF'
#include "orvel/definitions/parameter_mapping.h"
float Map(const orvel::ParameterMapping& mapping, float place) { return mapping.FromNormalized(place); }
float Fuse(float a, float b, float c) { return a * b + c; }
EOF
)
fused=$(grep -cE '^\s+v?fn?m(add|sub)' <<<"$assembly" || true)
if [[ $fused != 1 ]]; then
  echo "fused operations: $fused, and one is expected, of the function that fuses" >&2
  exit 1
fi
