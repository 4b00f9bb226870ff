// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts and pattern files, line by line.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "lib/libfile/line_input.h"

/// Reads the lines of one file. A byte-order mark in front of the first is left out.
class line_reader {
 public:
  static constexpr size_t kLongestLine = line_input::kLongestLine;

  /// Opens a file; null stands for standard input, of which every reader goes on where the last
  /// one stopped. Nothing, with the system's reason on standard error, when that fails.
  /// A point of lib/libutil/interrupt.h, as is next().
  static std::optional<line_reader> open(const char* path);

  /// Moves to the next line. False at the end.
  bool next();

  /// The line without its end, until the next one of the same file is read. It may hold zeros.
  [[nodiscard]] const char* line() const { return line_.text.data(); }
  [[nodiscard]] size_t length() const { return line_.text.size(); }
  /// Counted from 1.
  [[nodiscard]] int number() const { return number_; }
  /// Whether the line was longer than kLongestLine. The character behind the cut is lost, what
  /// follows it is the next line.
  [[nodiscard]] bool was_cut() const { return line_.was_cut; }

 private:
  struct leave {
    void operator()(line_input* input) const;
  };

  explicit line_reader(line_input* input) : input_(input) {}

  std::unique_ptr<line_input, leave> input_;
  line_input::line line_ = {};
  int number_ = 0;
};
