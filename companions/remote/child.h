// SPDX-License-Identifier: GPL-3.0-or-later
// Another program, run as a child.
#pragma once

#include <sys/types.h>

#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace companions {

/// A running program whose standard output is read here. It ends at the latest with this object,
/// and is interrupted when this process dies.
class child {
 public:
  /// Throws std::system_error when no process can be made; a program that cannot be run ends at
  /// once with status 127 and says so on standard error.
  explicit child(const std::vector<std::string>& argv);
  ~child();
  child(const child&) = delete;
  child& operator=(const child&) = delete;

  [[nodiscard]] std::istream& output() { return *output_; }
  /// Waits for the program's end: its exit status, or 128 and the number of the signal that ended
  /// it.
  int wait();

 private:
  pid_t pid_;
  std::unique_ptr<std::istream> output_;
};

/// Runs a program to its end, with `input` as its standard input and the output of this process.
/// Returns and throws as child does.
int run_program(const std::vector<std::string>& argv, std::string_view input = {});

}  // namespace companions
