// SPDX-License-Identifier: GPL-3.0-or-later
// What a piece of code prints, line numbers of messages replaced by "#".
#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <string>

struct printed {
  std::string out;
  std::string err;
};

/// "[E] help(42): " becomes "[E] help(#): ": line numbers are free to change.
inline std::string without_line_numbers(const std::string& text) {
  static const std::regex location("(\\[[EW]\\] [^\\n(]*)\\([0-9]+\\): ");
  return std::regex_replace(text, location, "$1(#): ");
}

template <typename Code>
printed capture(Code code) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  code();
  std::string out = testing::internal::GetCapturedStdout();
  return {std::move(out), without_line_numbers(testing::internal::GetCapturedStderr())};
}
