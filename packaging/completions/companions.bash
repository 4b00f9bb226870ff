# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of the companion programs for bash. A test compares the options with the programs' help.

_vantrel_companion() {
  local current=${COMP_WORDS[COMP_CWORD]} options="--help --version"
  case ${COMP_WORDS[0]##*/} in
    vantrel-json) options+=" --first" ;;
    vantrel-plot) options+=" --svg --histogram" ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _vantrel_companion vantrel-json vantrel-plot
