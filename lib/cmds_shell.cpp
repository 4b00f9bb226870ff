// SPDX-License-Identifier: GPL-3.0-or-later
// The interactive shell: command lines with editing and history.
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

// readline's header needs FILE before it.
#include <readline/history.h>
#include <readline/readline.h>

#include "lib/libcmds/cmds.h"
#include "lib/libutil/interrupt.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"

namespace {

struct termios cooked;  // the terminal before readline touched it

/// readline puts the terminal right itself when the signal finds it reading; this is for the
/// moments before it has its own handler in place. Only system calls.
void restore_cooked() {
  if (!RL_ISSTATE(RL_STATE_TERMPREPPED)) return;
  constexpr char kPasteBracketsOff[] = "\033[?2004l";
  tcsetattr(STDIN_FILENO, TCSANOW, &cooked);
  if (isatty(STDOUT_FILENO) != 0) {
    (void)!write(STDOUT_FILENO, kPasteBracketsOff, sizeof kPasteBracketsOff - 1);
  }
}

/// A line in a block of its own that the caller frees, null at the end of input.
char* read_line() {
  const interrupt::wait waiting;
  return readline("vantrel $ ");
}

int shell_handler(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
                  dictionary* /*opts*/) {
  if (tcgetattr(STDIN_FILENO, &cooked) == 0) interrupt::set_terminal_restorer(restore_cooked);
  for (char* line = read_line(); line != nullptr; line = read_line()) {
    if (*line != '\0') {
      run_cmd_line(line, appdata);
      add_history(line);
    }
    std::free(line);
    if (!output::flush()) break;
  }
  interrupt::set_terminal_restorer(nullptr);
  std::printf("\n");
  return 0;
}

const cmd cmd_entry_shell = {
    .name = "shell",
    .handler = shell_handler,
    .summary = "enter into shell mode",
    .help = "usage: shell",
    .priv = nullptr,
    .options = nullptr,
};

cmd_mgr shell_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__shell() {
  shell_mgr.cmd = &cmd_entry_shell;
  _register_cmd(&shell_mgr);
}

}  // namespace
