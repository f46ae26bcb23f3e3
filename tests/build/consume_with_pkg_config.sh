#!/usr/bin/env bash
# Compiles a source with what pkg-config tells of the installed library, and runs it.
# Usage: consume_with_pkg_config.sh <library folder> <source> <program> <compiler> [flag...]
set -euo pipefail
libraries=$1
source=$2
program=$3
shift 3

export PKG_CONFIG_PATH=$libraries/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs orvel)"
"$@" -std=c++20 "$source" -o "$program" "${flags[@]}" "-Wl,-rpath,$libraries"
"$program"
