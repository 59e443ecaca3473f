# Bash completion of zolprof: its commands, then each command's options and
# the files it reads. Uses the helpers of bash-completion when they are
# loaded, and plain compgen when they are not.

_zolprof_files() {
  if declare -F _filedir >/dev/null; then
    _filedir "$@"
  else
    COMPREPLY=($(compgen -f -- "$cur"))
  fi
}

_zolprof() {
  local cur prev words cword
  if declare -F _init_completion >/dev/null; then
    _init_completion || return
  else
    words=("${COMP_WORDS[@]}")
    cword=$COMP_CWORD
    cur="${COMP_WORDS[COMP_CWORD]}"
    prev="${COMP_WORDS[COMP_CWORD - 1]}"
  fi

  local commands="diff dump export filter flow live load merge report scan sessions source table tree version"
  local command="" i
  for ((i = 1; i < cword; i++)); do
    if [[ " $commands " == *" ${words[i]} "* ]]; then
      command="${words[i]}"
      break
    fi
  done

  if [[ -z "$command" ]]; then
    if [[ "$cur" == -* ]]; then
      COMPREPLY=($(compgen -W "--help --version" -- "$cur"))
    else
      COMPREPLY=($(compgen -W "$commands" -- "$cur"))
    fi
    return
  fi

  if [[ "$cur" == -* ]]; then
    # The options of the command, as its own help lists them.
    local options
    options=$("${words[0]}" "$command" --help 2>/dev/null |
      grep -oE '(^|[ ,])--?[A-Za-z][-A-Za-z0-9]*' | tr -d ' ,' | sort -u)
    COMPREPLY=($(compgen -W "$options" -- "$cur"))
    return
  fi

  case "$prev" in
    -o | --output | --record | --replay | --project | --csv | --txt | --socket)
      _zolprof_files
      return
      ;;
  esac
  _zolprof_files '@(pfl|PFL|pfd|PFd|PFD|vbp|VBP|vbg|VBG|zle|ini|INI)'
}
complete -F _zolprof zolprof
