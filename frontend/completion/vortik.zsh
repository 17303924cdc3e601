#compdef vortik
# SPDX-License-Identifier: Apache-2.0
# Completion of vortik for zsh, where it is called _vortik.

_vortik() {
  local curcontext="$curcontext" state
  local -a line commands help force json output
  commands=(
    'new:Make a directory with a case to start from'
    'check:Tell everything that is wrong with a case'
    'build:Make the binary case file of a case'
    'show:Print a binary case file as a readable case'
    'run:Run a case and show what happens'
    'watch:Show a run that is under way, to its end'
    'stop:Stop a run and wait until it has stopped'
    'status:Tell how a run stands, or all that are under way'
    'links:Show the links by which the programs of runs talk to each other'
    'surface:Make the approximate wetted surface of bodies, and tell its figures'
    'airfoil:Look after airfoil tables'
  )
  help=('(- *)'{-h,--help}'[Tell the options, with an example]')
  force=('--force[Replace files that exist]')
  json=('--json[Print JSON, for other programs]')
  output=('(-o --output)'{-o,--output}'[File to write]:file:_files')

  _arguments -C $help '(- *)--version[Tell the version]' '1:command:->command' '*::argument:->argument'
  case "$state" in
  command)
    _describe -t commands command commands
    return
    ;;
  argument) ;;
  *) return ;;
  esac
  case "$words[1]" in
  new)
    _arguments $help $force '1:directory:_files -/' \
      '--example[The case to start from]:name:(sphere robin robin-adaptive wind-turbine)'
    ;;
  check)
    _arguments $help '--keys[List all keys that a case may have]' '1:case:_files'
    ;;
  build)
    _arguments $help $force $output '1:case:_files'
    ;;
  show)
    _arguments $help $json '1:binary case file:_files'
    ;;
  run)
    _arguments $help $json '1:case:_files' \
      '--restart[Go on from the latest restart file]' \
      '--force[Begin in spite of a doubt]' \
      '--detach[Leave the run to itself as soon as it runs]'
    ;;
  watch)
    _arguments $help $json '1:run:_files'
    ;;
  stop)
    _arguments $help $json '1:run:_files'
    ;;
  status)
    _arguments $help $json '1:run:_files'
    ;;
  links)
    _arguments $help '--watch[Show them again every two seconds]'
    ;;
  surface)
    _arguments $help $force $output '*:body or case:_files' \
      '--level[Level of the cells]:level:' \
      '--scale[Factor on the coordinates of body files]:factor:'
    ;;
  airfoil)
    commands=(
      'check:Tell everything that is wrong with a table'
      'clean:Write a table without the lines in front of it'
    )
    _arguments -C $help '1:command:->command' '*::argument:->argument'
    case "$state:$words[1]" in
    command:*)
      _describe -t commands command commands
      ;;
    argument:check)
      _arguments $help '1:airfoil table:_files'
      ;;
    argument:clean)
      _arguments $help $force $output '1:airfoil table:_files'
      ;;
    esac
    ;;
  esac
}

if [ "$funcstack[1]" = _vortik ]; then # called for a completion
  _vortik "$@"
else # read by hand
  compdef _vortik vortik
fi
