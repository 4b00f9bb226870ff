# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of vantrel for fish. A test compares the options with the program's own tables.

complete -c vantrel -f
complete -c vantrel -n __fish_use_subcommand -a decode -d 'Decode IR patterns'
complete -c vantrel -n __fish_use_subcommand -a help -d 'Show the commands, or the options of one'
complete -c vantrel -n __fish_use_subcommand -a listen -d 'Print what the device hears'
complete -c vantrel -n __fish_use_subcommand -a script -d 'Run a file of command lines'
complete -c vantrel -n __fish_use_subcommand -a sendir -d 'Send a pattern'
complete -c vantrel -n __fish_use_subcommand -a shell -d 'Run command lines as they are typed'
complete -c vantrel -n __fish_use_subcommand -a version -d 'Print the version'

complete -c vantrel -n '__fish_seen_subcommand_from decode' -s l -l listen -d 'Decode what the device hears'
complete -c vantrel -n '__fish_seen_subcommand_from decode' -l read -rF -d 'Decode every line of a file'
complete -c vantrel -n '__fish_seen_subcommand_from decode' -l time -x -d 'A comma list of µs'
complete -c vantrel -n '__fish_seen_subcommand_from decode' -l raw -x -d 'A signed list of µs'
complete -c vantrel -n '__fish_seen_subcommand_from decode' -l pronto -x -d 'Pronto hex'
complete -c vantrel -n '__fish_seen_subcommand_from decode' -s e -l elapsed -d 'Show the elapsed time'

complete -c vantrel -n '__fish_seen_subcommand_from listen' -s e -l elapsed -d 'Show the elapsed time'
complete -c vantrel -n '__fish_seen_subcommand_from listen' -s p -l pronto -d 'As Pronto hex'
complete -c vantrel -n '__fish_seen_subcommand_from listen' -s r -l raw -d 'As a signed list'
complete -c vantrel -n '__fish_seen_subcommand_from listen' -s a -l analysir -d 'As an AnalysIR list'
complete -c vantrel -n '__fish_seen_subcommand_from listen' -s c -l comma -d 'As a comma list'
complete -c vantrel -n '__fish_seen_subcommand_from listen' -s d -l distance -d 'Distance'

complete -c vantrel -n '__fish_seen_subcommand_from sendir' -l ik -x -d 'Interkey delay in ms or µs'
complete -c vantrel -n '__fish_seen_subcommand_from sendir' -l repeat -x -d 'Times to send, up to 10'
complete -c vantrel -n '__fish_seen_subcommand_from sendir' -s k -l kill -d 'End a running transmission'
complete -c vantrel -n '__fish_seen_subcommand_from sendir' -l pronto -x -d 'Pronto hex'
complete -c vantrel -n '__fish_seen_subcommand_from sendir' -l raw -x -d 'A signed list of µs'
complete -c vantrel -n '__fish_seen_subcommand_from sendir' -l csv -x -d 'A comma list of µs'

complete -c vantrel -n '__fish_seen_subcommand_from version' -s p -l pretty -d 'With context'
complete -c vantrel -n '__fish_seen_subcommand_from version' -s d -l date -d 'With the build date'
complete -c vantrel -n '__fish_seen_subcommand_from version' -s b -l branch -d 'With the SCM branch'

complete -c vantrel -n '__fish_seen_subcommand_from script' -F
complete -c vantrel -n '__fish_seen_subcommand_from help' -a 'decode help listen script sendir shell version'
