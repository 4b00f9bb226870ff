#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# tab_test.sh SHELL PREFIX COMPANION...: types command lines into an interactive bash, zsh or fish, presses
# Tab and reads what the terminal shows. The shell finds the completions in PREFIX as it finds those of a
# system.
set -euo pipefail
shell=$1 prefix=$2 companions=("${@:3}")
for program in tmux "$shell"; do
  command -v "$program" >/dev/null || { echo "skipped: no $program"; exit 77; }
done
helper=/usr/share/bash-completion/bash_completion
[[ $shell != bash || -e $helper ]] || { echo "skipped: no bash-completion"; exit 77; }

work=$(mktemp -d)
export HOME=$work TMUX_TMPDIR=$work LC_ALL=C.UTF-8
clean_up() {  # a shell that is being ended may still write into its folder
  tmux kill-server 2>/dev/null || true
  for _ in $(seq 50); do
    ! rm -rf "$work" 2>/dev/null || return 0
    sleep 0.1
  done
}
trap clean_up EXIT
touch "$work/captures.csv"
export PATH=$prefix/bin:$PATH XDG_DATA_DIRS=$prefix/share:/usr/share XDG_CONFIG_HOME=$work
case $shell in
  bash)
    printf "PS1='ready> '\nsource %s\nbind 'set bell-style none'\n" "$helper" > "$work/rc"
    start="bash --noprofile --rcfile '$work/rc'" ;;
  zsh)
    printf "PS1='ready> '\nfpath=('%s' \$fpath)\nautoload -Uz compinit\ncompinit -u\n" \
      "$prefix/share/zsh/site-functions" > "$work/.zshrc"
    start=zsh ;;
  fish)
    mkdir "$work/fish"
    printf "function fish_prompt; echo -n 'ready> '; end\nset -g fish_greeting\n" > "$work/fish/config.fish"
    start=fish ;;
esac
tmux -f /dev/null new-session -d -x 200 -y 50 -c "$work" "$start"

# wait_for PATTERN: until the screen shows it, at most for twenty seconds.
wait_for() {
  for _ in $(seq 200); do
    ! tmux capture-pane -p | grep -q -- "$1" || return 0
    sleep 0.1
  done
  return 1
}

failures=0
# completes TYPED PATTERN: after TYPED and Tab the screen shows PATTERN, and none of vantrel's commands
# with a companion.
completes() {
  [[ $shell != fish ]] || tmux send-keys C-c  # leaves the list of answers
  tmux send-keys C-u C-l
  wait_for '^ready> *$' || true
  tmux send-keys -l "$1"
  tmux send-keys Tab
  [[ $2 == ^* ]] || tmux send-keys Tab  # bash lists the answers at the second
  if ! wait_for "$2"; then
    printf 'FAILED: %s<Tab> does not show %s\n' "$1" "$2"
    tmux capture-pane -p | grep . || true
    failures=$((failures + 1))
  elif [[ $1 == vantrel-* ]] && tmux capture-pane -p | grep -qw sendir; then
    printf 'FAILED: %s<Tab> shows commands of vantrel\n' "$1"
    failures=$((failures + 1))
  else
    echo "ok: $1<Tab>"
  fi
}

wait_for '^ready> *$' || { echo "no prompt"; tmux capture-pane -p; exit 1; }
completes "vantrel lis" '^ready> vantrel listen'
completes "vantrel decode --ela" '^ready> vantrel decode --elapsed'
completes "vantrel decode --read=cap" '^ready> vantrel decode --read=captures.csv'
completes "vantrel script cap" '^ready> vantrel script captures.csv'
for companion in "${companions[@]}"; do
  completes "$companion --hel" "^ready> $companion --help"
done
completes "vantrel-json cap" '^ready> vantrel-json captures.csv'
completes "vantrel sendir --" 'repeat'
exit $((failures > 0))
