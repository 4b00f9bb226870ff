// SPDX-License-Identifier: GPL-3.0-or-later
// What a piece of code prints, line numbers of messages replaced by "#".
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

struct printed {
  std::string out;
  std::string err;
};

/// "[E] help(42): " becomes "[E] help(#): ": line numbers are free to change.
inline std::string without_line_numbers(std::string text) {
  constexpr std::string_view kDigits = "0123456789";
  for (size_t open = text.find('('); open != std::string::npos; open = text.find('(', open + 1)) {
    const size_t end = text.find_first_not_of(kDigits, open + 1);
    const bool is_location = end != std::string::npos && end > open + 1 &&
                             std::string_view(text).substr(end).starts_with("): ");
    if (is_location) text.replace(open + 1, end - open - 1, "#");
  }
  return text;
}

/// A text, so many times.
inline std::string repeated(std::string_view part, int count) {
  std::string text;
  for (int i = 0; i < count; i++) text += part;
  return text;
}

template <typename Code>
printed capture(Code code) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  code();
  std::string out = testing::internal::GetCapturedStdout();
  return {std::move(out), without_line_numbers(testing::internal::GetCapturedStderr())};
}
