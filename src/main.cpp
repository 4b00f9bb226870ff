// SPDX-License-Identifier: GPL-3.0-or-later
// The entry: hooks around the commands that the start name and the arguments choose.
#include <fcntl.h>
#include <libgen.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/interrupt.h"
#include "lib/libutil/output.h"
#include "lib/libutil/owned.h"
#include "src/prepost.h"

namespace {

constexpr const char* kProgramName = "vantrel";

// Run when the program starts under its own name without arguments.
constexpr std::array default_cmds = {"version --pretty", "help"};

void set_loglevel_from_environment() {
  constexpr int kEverything = 5;
  constexpr int kWarnings = 2;
  const char* const debug = std::getenv("DEBUG");
  if (debug == nullptr) return;
  set_loglevel(std::strcmp(debug, "true") == 0 ? kEverything : kWarnings);
}

/// Gives a closed standard stream a descriptor that cannot be used, so that no file or device
/// opened later takes its number and receives the program's output.
void occupy_standard_streams() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; fd++) {
    if (fcntl(fd, F_GETFD) != -1) continue;
    const int wrong_way = fd == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", wrong_way) == -1) return;
  }
}

/// The exit status: `status`, or 1 when standard output could not take all that was printed.
int close_stdout(int status) {
  if (output::flush()) return status;
  if (!output::reader_has_gone()) {
    _log(1, "[E] %s(%d): could not write to standard output: %s\n", __func__, __LINE__,
         std::strerror(output::error()));
  }
  return EXIT_FAILURE;
}

/// Ends the line that may stand unfinished and says what happens, unless nobody takes it.
void announce_cleanup() {
  constexpr char kText[] = "\nCleaning up....\n";
  if (output::has_room()) (void)!write(STDOUT_FILENO, kText, sizeof kText - 1);
}

}  // namespace

/// Ends the program that SIGINT interrupted, in the program's own code and time.
static void ex_program(int /*sig*/) {
  std::fflush(stdout);  // a write that nobody takes is cut short
  announce_cleanup();
  interrupt::let_waits_be();
  const int failed = run_hooks(postcmdfuncs, &apppriv);
  if (failed >= 0) {
    _log(1, "[E] %s(%d): post-command function %d returned error\n", __func__, __LINE__, failed);
  }
  _exit(EXIT_FAILURE);
}

int main(int argc, const char** argv) {
  occupy_standard_streams();
  interrupt::install(ex_program);
  std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone is an error, which ends what prints
  set_loglevel_from_environment();

  const owned_block<char> path(strdup(argc > 0 ? argv[0] : ""));
  if (path == nullptr) {
    _log(1, "[E] %s(%d): Could not allocate arg0", __func__, __LINE__);
    return EXIT_FAILURE;
  }
  const char* const name = basename(path.get());
  if (name == nullptr) {
    _log(1, "[E] %s(%d): Could not get basename of command", __func__, __LINE__);
    return EXIT_FAILURE;
  }

  const int failed_pre = run_hooks(precmdfuncs, &apppriv);
  interrupt::checkpoint();
  if (failed_pre >= 0) {
    _log(1, "[E] %s(%d): pre-command function %d returned error\n", __func__, __LINE__, failed_pre);
    return EXIT_FAILURE;
  }

  int result = 0;
  if (std::strcmp(name, kProgramName) != 0) {
    result = run_cmd(name, argc - 1, argv + 1, &apppriv);
  } else if (argc == 1) {
    for (const char* line : default_cmds) run_cmd_line(line, &apppriv);
  } else {
    result = run_cmds(argc - 1, argv + 1, &apppriv);
  }
  interrupt::checkpoint();
  // A failed command leaves the device open; the end of the process closes it.
  if (result != 0) return close_stdout(EXIT_FAILURE);

  const int failed_post = run_hooks(postcmdfuncs, &apppriv);
  interrupt::checkpoint();
  if (failed_post >= 0) {
    _log(1, "[E] %s(%d): post-command function %d returned error\n", __func__, __LINE__,
         failed_post);
    return EXIT_FAILURE;
  }
  return close_stdout(EXIT_SUCCESS);
}
