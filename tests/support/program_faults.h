// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a program again and again, every time with another fault.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/program_test.h"

/// Lets each allocation of a run fail in turn (the program knows FAIL_ALLOCATION). Every such run
/// must fail with a message of its own, or go on in one of the ways that the program has for it.
inline void expect_failed_allocations_reported(process_options options, const std::string& input) {
  // A missing device, an option that is not stored, or a file that cannot be read by `decode`, is a
  // message and no failure.
  const auto no_failures = {"can't allocate memory\n", "could not allocate new key/value",
                            "handle_longopt(",
                            "could not open script file: ", "could not allocate line buffer: "};
  constexpr int kMostAllocations = 300;
  const bool goes_on = options.argv.size() == 1 || options.argv[1] == "shell";
  const process_result good = run_process(options, input);
  options.env.emplace_back();
  int number = 0;
  for (; number < kMostAllocations; number++) {
    options.env.back() = "FAIL_ALLOCATION=" + std::to_string(number);
    SCOPED_TRACE(testing::PrintToString(options.argv) + " " + options.env.back());
    const process_result result = run_process(options, input);
    if (result.err == good.err) {  // not so many allocations
      EXPECT_EQ(result.out, good.out);
      EXPECT_EQ(result.status, good.status);
      break;
    }
    bool may_succeed = goes_on;
    for (const char* message : no_failures) {
      may_succeed = may_succeed || result.err.find(message) != std::string::npos;
    }
    EXPECT_EQ(result.status, may_succeed && result.status == 0 ? 0 : 1) << result.err;
    EXPECT_EQ(result.err.find("Sanitizer"), std::string::npos) << result.err;
    if (testing::Test::HasFailure()) return;
  }
  EXPECT_GT(number, 0);
  EXPECT_LT(number, kMostAllocations);
}

/// Gives a run a full disk, a reader that went away, and a closed stream for its output. Each must
/// end it, with a message that comes after `before` unless it was the reader.
inline void expect_lost_output_reported(process_options options, const std::string& input,
                                        const std::string& before) {
  SCOPED_TRACE(testing::PrintToString(options.argv));
  const bool is_shell = options.argv.back() == "shell";
  const auto expect_end = [&](const process_result& result, const std::string& cause) {
    // What the line editor could not print shows as a broken stream only.
    const std::string shown = is_shell ? "Input/output error" : cause;
    const std::string message = "[E] close_stdout(#): could not write to standard output: ";
    const std::string err = without_line_numbers(result.err);
    EXPECT_TRUE(err.ends_with(before + message + shown + "\n") ||
                err.ends_with(before + message + cause + "\n"))
        << err;
    EXPECT_EQ(result.status, 1);
  };
  options.stdout_file = "/dev/full";
  expect_end(run_process(options, input), "No space left on device");
  options.stdout_file.clear();
  options.unread = true;
  const process_result unread = run_process(options, input);
  EXPECT_EQ(unread.status, 1);
  for (const char* word : {"standard output", "an error occured"}) {
    EXPECT_EQ(unread.err.find(word), std::string::npos) << unread.err;
  }
  options.unread = false;
  options.closed = {STDOUT_FILENO};
  expect_end(run_process(options, input), "Bad file descriptor");
}
