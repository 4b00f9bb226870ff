# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of vantrel for bash. A test compares the options with the program's own tables.

_vantrel() {
  local commands="decode help listen script sendir shell version"
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command="" word
  COMPREPLY=()
  # The last command name before the cursor: several may follow each other.
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    [[ " $commands " == *" $word "* && $command != help ]] && command=$word
  done

  # bash cuts --read=FILE at the "=".
  if [[ $current == "=" || $previous == "=" ]]; then
    [[ $current == "=" ]] && current=""
    local option=${COMP_WORDS[COMP_CWORD - 1]}
    [[ $option == "=" ]] && option=${COMP_WORDS[COMP_CWORD - 2]}
    if [[ $option == --read ]]; then
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
    return
  fi

  local options=""
  case $command in
    decode) options="--listen --read= --time= --raw= --pronto= --elapsed" ;;
    listen) options="--elapsed --pronto --raw --analysir --comma --distance" ;;
    sendir) options="--ik= --repeat= --kill --pronto= --raw= --csv=" ;;
    version) options="--pretty --date --branch" ;;
    script)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace 2>/dev/null
  else
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
  fi
}
complete -F _vantrel vantrel
