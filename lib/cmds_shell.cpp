// SPDX-License-Identifier: GPL-3.0-or-later
// The interactive shell: command lines with editing and history.
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

// readline's header needs FILE before it.
#include <readline/history.h>
#include <readline/readline.h>

#include "lib/libcmds/cmds.h"
#include "lib/libutil/interrupt.h"
#include "lib/libutil/output.h"
#include "lib/libutil/owned.h"
#include "lib/libutil/startup.h"

namespace {

struct termios cooked;  // the terminal before readline touched it

/// Puts the terminal right. readline says something on the way, which may wait for ever on a
/// terminal that takes nothing.
void leave_readline() {
  if (output::has_room()) rl_cleanup_after_signal();
  tcsetattr(STDIN_FILENO, TCSANOW, &cooked);
}

/// The next character for readline; a point of interrupt.h. readline has signal handlers of its
/// own, and gives on what they caught when it is asked to.
int read_key(FILE* in) {
  unsigned char key = 0;
  ssize_t got = 0;
  do {
    interrupt::take_back();
    while (rl_pending_signal() != 0) {
      rl_check_signals();
      interrupt::take_back();
    }
    if (!interrupt::noted()) got = read(fileno(in), &key, 1);
    if (interrupt::noted()) {
      leave_readline();
      interrupt::checkpoint();
    }
  } while (got < 0 && errno == EINTR);
  if (got == 1) return key;
  return got < 0 && RL_ISSTATE(RL_STATE_READCMD) ? READERR : EOF;
}

int shell_handler(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* appdata,
                  dictionary* /*opts*/) {
  tcgetattr(STDIN_FILENO, &cooked);
  rl_getc_function = read_key;
  while (true) {
    const owned_block<char> line(readline("vantrel $ "));
    interrupt::checkpoint();
    if (line == nullptr) break;
    if (*line != '\0') {
      run_cmd_line(line.get(), appdata);
      add_history(line.get());
    }
    if (!output::flush()) break;
  }
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
