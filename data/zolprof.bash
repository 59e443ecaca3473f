# Bash completion of zolprof: its commands, then each command's options and
# the files it reads.

_zolprof() {
  local cur prev words cword
  _init_completion || return

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
      _filedir
      return
      ;;
  esac
  _filedir '@(pfl|PFL|pfd|PFd|PFD|vbp|VBP|vbg|VBG|zle|ini|INI)'
}
complete -F _zolprof zolprof
