# SPDX-License-Identifier: Apache-2.0
# Completion of vortik for fish.

function __vortik_in --description 'Whether these are the commands before the cursor'
    set -l typed
    for word in (commandline -opc)[2..-1]
        string match --quiet -- '-*' $word
        or set --append typed $word
    end
    for i in (seq (count $argv))
        test "$typed[$i]" = "$argv[$i]"
        or return 1
    end
end

function __vortik_has_no_more --description 'Whether only these are the commands before the cursor'
    set -l words
    for word in (commandline -opc)[2..-1]
        string match --quiet -- '-*' $word
        or set --append words $word
    end
    test "$words" = "$argv"
end

complete -c vortik -s h -l help -d 'Tell the options, with an example'

complete -c vortik -n '__vortik_has_no_more' -l version -d 'Tell the version'
complete -c vortik -n '__vortik_has_no_more' -f -a new -d 'Make a directory with a case to start from'
complete -c vortik -n '__vortik_has_no_more' -f -a check -d 'Tell everything that is wrong with a case'
complete -c vortik -n '__vortik_has_no_more' -f -a build -d 'Make the binary case file of a case'
complete -c vortik -n '__vortik_has_no_more' -f -a show -d 'Print a binary case file as a readable case'
complete -c vortik -n '__vortik_has_no_more' -f -a run -d 'Run a case and show what happens'
complete -c vortik -n '__vortik_has_no_more' -f -a watch -d 'Show a run that is under way, to its end'
complete -c vortik -n '__vortik_has_no_more' -f -a stop -d 'Stop a run and wait until it has stopped'
complete -c vortik -n '__vortik_has_no_more' -f -a status -d 'Tell how a run stands, or all that are under way'
complete -c vortik -n '__vortik_has_no_more' -f -a links -d 'Show the links by which the programs of runs talk to each other'
complete -c vortik -n '__vortik_has_no_more' -f -a surface -d 'Make the approximate wetted surface of bodies, and tell its figures'
complete -c vortik -n '__vortik_has_no_more' -f -a airfoil -d 'Look after airfoil tables'
complete -c vortik -n '__vortik_has_no_more airfoil' -f -a check -d 'Tell everything that is wrong with a table'
complete -c vortik -n '__vortik_has_no_more airfoil' -f -a clean -d 'Write a table without the lines in front of it'

complete -c vortik -n '__vortik_in new' -l example -x -a 'sphere robin robin-adaptive wind-turbine' -d 'The case to start from'
complete -c vortik -n '__vortik_in new' -l force -d 'Replace files that exist'
complete -c vortik -n '__vortik_in check' -l keys -d 'List all keys that a case may have'
complete -c vortik -n '__vortik_in build' -s o -l output -r -d 'File to write'
complete -c vortik -n '__vortik_in build' -l force -d 'Replace files that exist'
complete -c vortik -n '__vortik_in show' -l json -d 'Print JSON, for other programs'
complete -c vortik -n '__vortik_in run' -l restart -d 'Go on from the latest restart file'
complete -c vortik -n '__vortik_in run' -l force -d 'Begin in spite of a doubt'
complete -c vortik -n '__vortik_in run' -l detach -d 'Leave the run to itself as soon as it runs'
complete -c vortik -n '__vortik_in run' -l json -d 'Print JSON, for other programs'
complete -c vortik -n '__vortik_in watch' -l json -d 'Print JSON, for other programs'
complete -c vortik -n '__vortik_in stop' -l json -d 'Print JSON, for other programs'
complete -c vortik -n '__vortik_in status' -l json -d 'Print JSON, for other programs'
complete -c vortik -n '__vortik_in links' -f
complete -c vortik -n '__vortik_in links' -l watch -d 'Show them again every two seconds'
complete -c vortik -n '__vortik_in surface' -l level -x -d 'Level of the cells'
complete -c vortik -n '__vortik_in surface' -l scale -x -d 'Factor on the coordinates of body files'
complete -c vortik -n '__vortik_in surface' -s o -l output -r -d 'File to write'
complete -c vortik -n '__vortik_in surface' -l force -d 'Replace files that exist'
complete -c vortik -n '__vortik_in airfoil clean' -s o -l output -r -d 'File to write'
complete -c vortik -n '__vortik_in airfoil clean' -l force -d 'Replace files that exist'
