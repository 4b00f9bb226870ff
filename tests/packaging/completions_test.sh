#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# completions_test.sh BUILD_DIR PACKAGING_DIR COMPANION...: the completions and the manual pages know
# every command and option that the programs' own help shows, and no other.
set -euo pipefail
build=$(realpath "$1")
vantrel=$build/vantrel
cd "$2"
companions=("${@:3}")
failures=0

same() {  # same WHAT WANTED GOT
  [ "$2" = "$3" ] && return
  printf '%s\n--- help:\n%s\n--- file:\n%s\n' "$1" "$2" "$3"
  failures=$((failures + 1))
}

words() { tr -d = | sort -u; }

# Lines "  -l, --long   text" of the help.
options_of() { "$vantrel" help "$1" | sed -n 's/^  \(-., \)\?--\([a-z]\+\) .*/--\2/p' | words; }

bash_replies() {  # bash_replies WORD...: what bash offers for the last word
  COMP_WORDS=(vantrel "$@")
  COMP_CWORD=$#
  _vantrel || true  # compopt fails outside of a real completion
  printf '%s\n' "${COMPREPLY[@]}" | words
}

# shellcheck disable=SC1091
source completions/vantrel.bash
commands=$("$vantrel" help | sed -n 's/^  \([a-z]\+\) .*/\1/p')
same "bash, commands" "$commands" "$(bash_replies '')"
same "zsh, commands" "$commands" "$(sed -n "s/^    '\([a-z]*\):.*/\1/p" completions/_vantrel)"
same "fish, commands" "$commands" \
  "$(sed -n 's/.*__fish_use_subcommand -a \([a-z]*\) .*/\1/p' completions/vantrel.fish)"
same "manual, commands" "$commands" "$(sed -n 's/^\.SS \([a-z]*\).*/\1/p' man/vantrel.1)"

for command in $commands; do
  options=$(options_of "$command")
  [ -n "$options" ] || continue
  same "bash, $command" "$options" "$(bash_replies "$command" --)"
  same "zsh, $command" "$options" \
    "$(sed -n "/^    $command)/,/;;/p" completions/_vantrel | grep -o -- '--[a-z]*' | words)"
  same "fish, $command" "$options" \
    "$(sed -n "s/.*_from $command' .*-l \([a-z]*\) .*/--\1/p" completions/vantrel.fish | words)"
  same "manual, $command" "$options" \
    "$(sed -n "/^\.SS $command/,/^\.S[SH] [^d]/p" man/vantrel.1 | sed 's/\\-/-/g' |
      sed -n '/^\.BR -/s/.*\(--[a-z]*\).*/\1/p' | words)"
done

# The companions: what bash and fish themselves offer, what the other files say.
# shellcheck disable=SC1091
source completions/companions.bash
for companion in "${companions[@]}"; do
  options=$("$build/$companion" --help | sed -n 's/^  \(-[^-]*\)\?\(--[a-z-]\+\).*/\2/p' | words)
  COMP_WORDS=("$companion" --)
  COMP_CWORD=1
  _vantrel_companion
  same "bash, $companion" "$options" "$(printf '%s\n' "${COMPREPLY[@]}" | words)"
  same "zsh, $companion" "$options" \
    "$(sed -n "/^_vantrel_companion()/,/^}/p; /^  $companion)/,/;;/p" completions/_vantrel |
      grep -o -- '--[a-z-]*' | words)"
  same "fish, $companion" "$options" "$(fish --no-config -c \
    "source completions/companions.fish; complete -C '$companion --'" | cut -f1 | words)"
  same "manual, $companion" "$options" "$(sed -n '/^# OPTIONS/,/^# [^O]/s/^\*.*\(--[a-z-]*\).*/\1/p' \
    "man/$companion.1.scd" | words)"
done
exit "$failures"
