// SPDX-License-Identifier: GPL-3.0-or-later
// Fixtures of tests that run the whole program.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/process.h"

using words = std::vector<std::string>;

/// A program with its arguments; it sees `name` as its own.
inline process_options with(const char* program, words arguments, std::string name = "vantrel") {
  arguments.insert(arguments.begin(), std::move(name));
  return {.argv = std::move(arguments), .file = program};
}

/// Expects what a run prints and returns; line numbers in messages are "#".
inline void expect_run(const process_options& options, const process_result& expected,
                       const std::string& input = {}) {
  const process_result result = run_process(options, input);
  const std::string title = testing::PrintToString(options.argv);
  EXPECT_EQ(result.out, expected.out) << title;
  EXPECT_EQ(without_line_numbers(result.err), expected.err) << title;
  EXPECT_EQ(result.status, expected.status) << title;
}

/// Runs with files in a folder of their own.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest() { std::filesystem::create_directory(folder_); }
  ~ProgramTest() override { std::filesystem::remove_all(folder_); }

  /// The path of a file with this text.
  std::string file(const std::string& name, const std::string& text) {
    std::ofstream(folder_ / name) << text;
    return folder_ / name;
  }

  const std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("vantrel-test-" + std::to_string(getpid()));
};

/// Runs on a simulated bus, and the library calls that they made. The library stands in
/// `library_folder`.
class DeviceProgramTest : public ProgramTest {
 protected:
  DeviceProgramTest(const char* program, const char* library_folder)
      : program_(program), libraries_(std::string("LD_LIBRARY_PATH=") + library_folder) {}

  process_options options(const std::string& script, words arguments) {
    process_options result = with(program_, std::move(arguments));
    const std::string trace = file("calls", "");
    result.env = {libraries_, "FAKE_USB=" + script, "FAKE_USB_TRACE=" + trace};
    return result;
  }

  process_result run(const std::string& script, words arguments, std::string_view input = {}) {
    process_result result = run_process(options(script, std::move(arguments)), input);
    result.err = without_line_numbers(result.err);
    return result;
  }

  /// How often the last run made a call.
  [[nodiscard]] std::ptrdiff_t count(std::string_view call) const {
    const words all = calls();
    return std::count(all.begin(), all.end(), call);
  }

  /// Whether these were the last library calls of the run.
  [[nodiscard]] bool ended_with(const words& expected) const {
    const words all = calls();
    return all.size() >= expected.size() &&
           std::equal(expected.rbegin(), expected.rend(), all.rbegin());
  }

  /// Whether closing the device was the last thing that the run did.
  [[nodiscard]] bool closed_the_device() const { return ended_with({"close", "exit"}); }

 private:
  [[nodiscard]] words calls() const {
    words result;
    std::ifstream trace(folder_ / "calls");
    for (std::string line; std::getline(trace, line);) result.push_back(line);
    return result;
  }

  const char* program_;
  const std::string libraries_;
};
