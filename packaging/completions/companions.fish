# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of vantrel-json and vantrel-plot for fish.

complete -c vantrel-json -s 1 -l first -d 'Stop at the first decoded pattern'
complete -c vantrel-json -s h -l help -d 'Show help'
complete -c vantrel-plot -s s -l svg -r -d 'Write an SVG picture'
complete -c vantrel-plot -s H -l histogram -d 'Show how long marks and spaces are'
complete -c vantrel-plot -s h -l help -d 'Show help'
