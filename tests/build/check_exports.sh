#!/usr/bin/env bash
# Fails when a library defines a visible symbol outside the interface's namespaces. Weak symbols are
# let pass: the standard library forces its templates visible wherever they are made.
# Usage: check_exports.sh <nm> <library>
set -euo pipefail

symbols=$("$1" --dynamic --demangle --defined-only "$2")
if ! grep -q ' T orvel::' <<<"$symbols"; then
  echo "no exported function of namespace orvel in $2: the check reads the wrong file"
  exit 1
fi
foreign=$(awk '$2 ~ /^[TDBRGS]$/ { $1 = $2 = ""; sub(/^ +/, ""); print }' <<<"$symbols" |
  grep -vE '^((typeinfo|typeinfo name|vtable|VTT|construction vtable|guard variable) for |(non-)?virtual thunk to )?(orvel|teskcore|teskundo|teskaudiofilterhost|teskaudiofilters)::' |
  sort -u || true)
if [ -n "$foreign" ]; then
  printf 'exported, though no part of the interface:\n%s\n' "$foreign"
  exit 1
fi
