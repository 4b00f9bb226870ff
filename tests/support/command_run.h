// SPDX-License-Identifier: GPL-3.0-or-later
// Commands, run with a closer look at what their handlers return than a program takes.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

#include "lib/libcmds/cmds.h"

/// Runs a command that takes options alone: 1 when it fails, else 0. What it returns is the number
/// of words that it took, so that the command behind it in a word list is not skipped, or -1.
inline int run_command(const char* name, int argc, const char** argv, void* appdata) {
  const cmd* const command = find_cmd(name);
  unsigned taken = 0;
  const std::unique_ptr<dictionary, decltype(&delete_dict)> options(
      cmd_getopt(command, argc, argv, &taken), delete_dict);
  const int result = command->handler(argc - static_cast<int>(taken), argv + taken, command,
                                      appdata, options.get());
  EXPECT_TRUE(result == 0 || result == -1) << name << ": " << result;
  return result < 0 ? 1 : 0;
}

/// The same with a line.
inline int run_command(std::string line, void* appdata) {
  std::array<const char*, kMaxWords + 1> words{};
  const auto count = static_cast<int>(tokenize_cmd_string(line.data(), words.data()));
  return run_command(words[0], count - 1, words.data() + 1, appdata);
}
