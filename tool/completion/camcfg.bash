# shellcheck shell=bash
# Completes command lines of camcfg in bash. The tool itself knows what may be typed; where it says
# that a file or a directory is meant, bash's own completion takes over.
_camcfg() {
  local -a answer
  mapfile -t answer < <(
    "$1" complete bash -- "${COMP_LINE:0:COMP_POINT}" "$COMP_WORDBREAKS" 2>/dev/null
  )
  COMPREPLY=()
  case ${answer[0]-} in
    words) COMPREPLY=("${answer[@]:1}") ;;
    files) compopt -o default ;;
    directories) compopt -o dirnames ;;
  esac
}

complete -F _camcfg camcfg
