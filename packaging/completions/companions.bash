# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of vantrel-json and vantrel-plot for bash.

_vantrel_companion() {
  local current=${COMP_WORDS[COMP_CWORD]} options="--first --help"
  [[ ${COMP_WORDS[0]##*/} == vantrel-plot ]] && options="--svg --histogram --help"
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _vantrel_companion vantrel-json vantrel-plot
