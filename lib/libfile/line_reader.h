// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts and pattern files, line by line.
#pragma once

#include <cstddef>
#include <optional>

#include "lib/libutil/owned.h"

/// Reads the lines of one file. A byte-order mark in front of the first is left out.
class line_reader {
 public:
  static constexpr size_t kLongestLine = 1023;

  /// Opens a file; null stands for standard input. Nothing, with the system's reason on standard
  /// error, when that fails. A point of lib/libutil/interrupt.h, as is next().
  static std::optional<line_reader> open(const char* path);

  /// Moves to the next line. False at the end.
  bool next();

  /// The line without its end. It may hold zeros.
  [[nodiscard]] const char* line() const { return line_; }
  [[nodiscard]] size_t length() const { return length_; }
  /// Counted from 1.
  [[nodiscard]] int number() const { return number_; }
  /// Whether the line was longer than kLongestLine. The character behind the cut is lost, what
  /// follows it is the next line.
  [[nodiscard]] bool was_cut() const { return was_cut_; }

 private:
  line_reader(owned_file file, owned_block<char> buffer);

  owned_file file_;
  owned_block<char> buffer_;
  const char* line_ = nullptr;
  size_t length_ = 0;
  int number_ = 0;
  bool was_cut_ = false;
};
