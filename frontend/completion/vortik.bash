# SPDX-License-Identifier: Apache-2.0
# Completion of vortik for bash.

_vortik() {
  local word=${COMP_WORDS[COMP_CWORD]} last=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]:-}
  local words=""
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    words="new check build show run watch stop status links surface airfoil --help --version"
  elif [ "$last" = --example ]; then
    words="sphere robin robin-adaptive wind-turbine"
  elif [ "$command" = airfoil ] && [ "$COMP_CWORD" -eq 2 ]; then
    words="check clean --help"
  elif [ "${word:0:1}" = - ]; then
    case "$command" in
    new) words="--example --force --help" ;;
    check) words="--keys --help" ;;
    build) words="-o --output --force --help" ;;
    show) words="--json --help" ;;
    run) words="--restart --detach --json --force --help" ;;
    watch | stop | status) words="--json --help" ;;
    links) words="--watch --help" ;;
    surface) words="--level --scale -o --output --force --help" ;;
    airfoil)
      words="--help"
      [ "${COMP_WORDS[2]}" != clean ] || words="-o --output --force --help"
      ;;
    esac
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
    compopt -o filenames 2>/dev/null || true
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _vortik vortik
