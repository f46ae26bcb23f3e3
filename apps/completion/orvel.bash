# Completion of the command orvel for bash.

# The names of the presets, each shown as the shell would have to read it.
_orvel_presets() {
  "$1" presets --json 2>/dev/null | sed -n 's/^\t\t"name": "\(.*\)",*\r*$/\1/p' | sort -u
}

_orvel() {
  local cur prev words cword
  if declare -F _init_completion >/dev/null; then
    _init_completion || return
  else
    cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}
    words=("${COMP_WORDS[@]}") cword=$COMP_CWORD
  fi
  local -r modes="$("${words[0]}" modes 2>/dev/null | cut -d ' ' -f 1)"
  local verb=${words[1]:-} action=
  [ "$verb" = presets ] && action=${words[2]:-}
  COMPREPLY=()

  case $prev in
    --mode | -m) mapfile -t COMPREPLY < <(compgen -W "$modes" -- "$cur"); return ;;
    --prefs) mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    --log | --output | -o | --report | --picture) mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
  esac
  if [ "$cword" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'analyze render modes sections presets templates session --help --version' -- "$cur")
    return
  fi
  if [[ $cur == -* ]]; then
    local options='--help --quiet --prefs --log'
    case "$verb $action" in
      render*) options+=' --json --output --mode --template --preset --set --report --picture --jobs --dry-run --force' ;;
      sections*) options+=' --json --template' ;;
      'presets save') options+=' --json --mode --from --set --template --force' ;;
      'presets remove') options+=' --json --mode --template' ;;
      'presets export') options+=' --mode --template --force --output' ;;
      'presets import') options+=' --json --force' ;;
      *) options+=' --json' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
    return
  fi
  case "$verb $action" in
    'presets remove' | 'presets export' | 'presets save')
      if [ "$cword" -eq 3 ] || [ "$prev" = --from ]; then
        local IFS=$'\n' name
        while IFS= read -r name; do
          [[ $name == "${cur//\\/}"* ]] && COMPREPLY+=("$(printf %q "$name")")
        done < <(_orvel_presets "${words[0]}")
      fi
      ;;
    'presets import' | analyze* | render* | session*) mapfile -t COMPREPLY < <(compgen -f -- "$cur") ;;
    presets*)
      [ "$cword" -eq 2 ] &&
        mapfile -t COMPREPLY < <(compgen -W "$modes save remove export import" -- "$cur")
      ;;
    sections* | templates*) [ "$cword" -eq 2 ] && mapfile -t COMPREPLY < <(compgen -W "$modes" -- "$cur") ;;
  esac
}

complete -F _orvel orvel
