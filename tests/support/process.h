// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a program as a terminal or a pipeline would, and sees what it prints.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

struct process_options {
  std::vector<std::string> argv;      // argv[0] is the name the program sees
  std::string file = {};              // the file to run; argv[0] when empty
  std::vector<std::string> env = {};  // NAME=VALUE; DEBUG is unset unless named here
  std::string stdout_file = {};       // where standard output goes instead of to the test
  std::vector<int> closed = {};       // standard streams that the program finds closed
  bool unread = false;                // nobody reads standard output, from the start
  bool terminal = false;              // standard input and output are one terminal
  bool one_screen = false;            // standard output and error are one terminal: all is in `out`
};

struct process_result {
  std::string out;
  std::string err;
  int status;  // the exit status, 128 + the number of a signal that killed it
};

/// One running program. Everything ends after 60 s at most: the program is killed then.
class process {
 public:
  explicit process(const process_options& options);
  ~process();
  process(const process&) = delete;
  process& operator=(const process&) = delete;

  void send(std::string_view text);
  void close_input();
  void signal(int number);

  /// Reads on until one of the outputs holds `text`; false when both end before.
  bool wait_for(std::string_view text);

  /// Reads nothing until no more fits into the program's standard output, a pipe.
  void wait_until_full() const;

  /// Whether the program's terminal is in the mode in which the kernel echoes and edits lines.
  [[nodiscard]] bool terminal_echoes() const;

  /// Closes the program's input, reads to the end and waits. `read_output` false leaves the
  /// standard output unread, as a stuck reader would.
  process_result finish(bool read_output = true);

 private:
  bool read_some(bool read_output);

  pid_t pid_ = -1;
  int in_ = -1, stdout_ = -1, stderr_ = -1;
  std::string out_, err_;
};

/// Runs a program to its end with `input` as its standard input.
process_result run_process(const process_options& options, std::string_view input = {});
