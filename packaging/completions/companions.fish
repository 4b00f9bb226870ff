# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of the companion programs for fish. A test compares the options with the programs' help.

for companion in vantrel-convert vantrel-encode vantrel-json vantrel-plot vantrel-remote
    complete -c $companion -s h -l help -d 'Show help'
    complete -c $companion -s V -l version -d 'Show the version'
end
set -l forms '(vantrel-convert --help | sed -n "/^FORM is/,\$s/^  \([a-z0-9-]*\) .*/\1/p")'
complete -c vantrel-convert -s f -l from -x -a $forms -d 'The form to read'
complete -c vantrel-convert -s t -l to -x -a $forms -d 'The form to write'
complete -c vantrel-convert -s s -l split -d 'Make a signal of every part between gaps'
complete -c vantrel-encode -n 'test (count (commandline -opc)) -eq 1' -f -a '(command -q vantrel-encode; and vantrel-encode --list | cut -f1)'
complete -c vantrel-encode -s n -l repeats -x -d 'Hold the key for more frames'
complete -c vantrel-encode -s t -l to -x -a $forms -d 'The form to write'
complete -c vantrel-encode -s s -l send -d 'Run vantrel sendir'
complete -c vantrel-encode -s f -l from-json -d 'Send what vantrel-json decoded'
complete -c vantrel-encode -s l -l list -d 'Show all protocols'
complete -c vantrel-encode -s j -l json -d 'Show them as JSON'
complete -c vantrel-encode -s d -l definitions -r -d 'Read further protocols'
complete -c vantrel-json -s 1 -l first -d 'Stop at the first decoded pattern'
complete -c vantrel-plot -s s -l svg -r -d 'Write an SVG picture'
complete -c vantrel-plot -s H -l histogram -d 'Show how long marks and spaces are'
complete -c vantrel-plot -s b -l bytes -d 'Show the bytes and what differs'
complete -c vantrel-plot -s m -l msb -d 'Show bytes with the highest bit first'
complete -c vantrel-remote -s w -l with -x -a 'vantrel ir-ctl' -d 'The program that hears and sends'
complete -c vantrel-remote -n __fish_use_subcommand -f -a learn -d 'Learn keys into an .ir file'
complete -c vantrel-remote -n __fish_use_subcommand -f -a list -d 'Show the keys of a file'
complete -c vantrel-remote -n __fish_use_subcommand -f -a send -d 'Send keys of a file by name'
complete -c vantrel-remote -n __fish_use_subcommand -f -a watch -d 'Print a JSON line for every press'
