# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of the companion programs for fish. A test compares the options with the programs' help.

for companion in vantrel-convert vantrel-json vantrel-plot
    complete -c $companion -s h -l help -d 'Show help'
    complete -c $companion -s V -l version -d 'Show the version'
end
set -l forms '(vantrel-convert --help | sed -n "/^FORM is/,\$s/^  \([a-z0-9-]*\) .*/\1/p")'
complete -c vantrel-convert -s f -l from -x -a $forms -d 'The form to read'
complete -c vantrel-convert -s t -l to -x -a $forms -d 'The form to write'
complete -c vantrel-convert -s s -l split -d 'Make a signal of every part between gaps'
complete -c vantrel-json -s 1 -l first -d 'Stop at the first decoded pattern'
complete -c vantrel-plot -s s -l svg -r -d 'Write an SVG picture'
complete -c vantrel-plot -s H -l histogram -d 'Show how long marks and spaces are'
