# SPDX-License-Identifier: GPL-3.0-or-later
# Puts the day and the program into the heading of a manual page, and drops the paragraph macros of
# scdoc that stand beside a heading or before the end of an indented block (they move behind it),
# which checkers of manual pages take for mistakes.
/^\.TH/ { sub(/"[0-9-]*" "[a-z]*"/, "\"" day "\" \"vantrel\"") }
/^\.PP?$/ { paragraph = !after_break; next }
/^\.RE/ { print; next }
/^\.(SH|SS)/ { paragraph = 0 }
paragraph { print ".PP"; paragraph = 0 }
{ print; after_break = /^\.(SH|SS)/ }
