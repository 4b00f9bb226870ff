# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of the companion programs for fish. A test compares the options with the programs' help.

for companion in vantrel-json vantrel-plot
    complete -c $companion -s h -l help -d 'Show help'
    complete -c $companion -s V -l version -d 'Show the version'
end
complete -c vantrel-json -s 1 -l first -d 'Stop at the first decoded pattern'
complete -c vantrel-plot -s s -l svg -r -d 'Write an SVG picture'
complete -c vantrel-plot -s H -l histogram -d 'Show how long marks and spaces are'
