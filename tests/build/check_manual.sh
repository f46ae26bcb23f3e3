#!/usr/bin/env bash
# Holds the manual page and the completion to the program. Usage: check_manual.sh PROGRAM ROOT FOLDER
set -euo pipefail
program=$1 root=$2 folder=$3
export XDG_CONFIG_HOME=$folder
faults=0

fault() {
  echo "$1"
  faults=1
}

# Completes the words of a command line, of which the last is being written.
complete_words() {
  COMP_WORDS=("$program" "$@") COMP_CWORD=$#
  COMPREPLY=()
  _orvel
  printf '%s\n' "${COMPREPLY[@]}"
}

expect() {
  local wanted=$1
  shift
  complete_words "$@" | grep -xF -- "$wanted" >/dev/null || fault "orvel $*: '$wanted' is not completed"
}

# shellcheck source=/dev/null
. "$root/apps/completion/orvel.bash"
mapfile -t verbs < <("$program" --help | sed -n 's/^  \([a-z]\+\) .*/\1/p')
[ ${#verbs[@]} -ge 6 ] || fault "orvel --help names too few commands"
for verb in "${verbs[@]}"; do
  grep -qE "^\.[A-Z]+ \"?$verb\b" "$root/docs/orvel.1" || fault "the manual page lacks '$verb'"
  expect "$verb" "${verb:0:2}"
  # Every long option of the command's help.
  while IFS= read -r option; do
    expect "$option" "$verb" --
  done < <("$program" "$verb" --help | grep -oE '^  ( *-[a-z], | {4})--[a-z-]+' | grep -oE -- '--[a-z-]+')
done
for action in save remove export import; do
  expect "$action" presets ''
  grep -q "presets $action" "$root/docs/orvel.1" || fault "the manual page lacks 'presets $action'"
  while IFS= read -r option; do
    expect "$option" presets "$action" x --
  done < <("$program" presets "$action" --help | grep -oE -- '^ +(-[a-z], )?--[a-z-]+' | grep -oE -- '--[a-z-]+')
done
expect dialog sections d
expect music presets save x --mode m
expect 'Podcast\ Voice' presets export Pod
exit $faults
