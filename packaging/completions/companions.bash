# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of the companion programs for bash. A test compares the options with the programs' help.

_vantrel_forms() {
  local forms
  forms=$("${COMP_WORDS[0]}" --help 2>/dev/null | sed -n '/^FORM is/,$s/^  \([a-z0-9-]*\) .*/\1/p')
  mapfile -t COMPREPLY < <(compgen -W "$forms" -- "$1")
}

_vantrel_companion() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local options="--help --version"
  case ${COMP_WORDS[0]##*/} in
    vantrel-convert)
      options+=" --from --to --split"
      if [[ $previous == --from || $previous == --to || $previous == -[ft] ]]; then
        _vantrel_forms "$current"
        return
      fi
      ;;
    vantrel-encode)
      options+=" --repeats --to --send --from-json --list --json --definitions"
      if [[ $previous == --to || $previous == -t ]]; then
        _vantrel_forms "$current"
        return
      fi
      if [[ $COMP_CWORD -eq 1 && $current != -* ]]; then  # names hold blanks and brackets
        local IFS=$'\n'
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -W "$("${COMP_WORDS[0]}" --list 2>/dev/null |
          cut -f1 | sed 's/[][ {}()&]/\\&/g')" -- "$current")
        return
      fi
      ;;
    vantrel-explain) options+=" --protocol" ;;
    vantrel-json) options+=" --first" ;;
    vantrel-plot) options+=" --svg --histogram --bytes --msb" ;;
    vantrel-remote)
      options+=" --with"
      local words=""
      if [[ $previous == --with || $previous == -w ]]; then
        words="vantrel ir-ctl"
      elif [[ $COMP_CWORD -eq 1 && $current != -* ]]; then
        words="learn list send watch"
      fi
      if [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
        return
      fi
      ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _vantrel_companion vantrel-convert vantrel-encode vantrel-explain vantrel-json \
  vantrel-plot vantrel-remote
