// SPDX-License-Identifier: GPL-3.0-or-later
// What the readers of the forms do alike: words, numbers, faults.
#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "companions/formats/pattern.h"

namespace companions {

constexpr int kLongestDurationUs = 0xFFFFFF;  // what the kernel's interface carries
constexpr const char* kTooManyDurations = "a signal of over 1000000 durations";

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kSeparators = " \t\r,";

struct token {
  std::string_view text;
  size_t column;  // counted from 1
};

/// Goes over the words of a line between any of the separators. The line has to outlive it.
class word_reader {
 public:
  word_reader(std::string_view line, std::string_view separators) : line_(line) {
    for (const char c : separators) separates_[static_cast<unsigned char>(c)] = true;
  }
  /// The next word; nothing behind the last.
  std::optional<token> next();

 private:
  [[nodiscard]] bool separates(size_t at) const {
    return separates_[static_cast<unsigned char>(line_[at])];
  }

  std::string_view line_;
  size_t at_ = 0;
  std::array<bool, 256> separates_{};
};

/// All of them.
std::vector<token> split(std::string_view line, std::string_view separators);

/// The whole text as a number in this base, nothing if it is not one or out of an int's range.
std::optional<int> number(std::string_view text, int base = 10);

/// The whole text as a duration.
std::optional<int> duration(std::string_view text);

/// The text with a "?" for every control character, which a terminal would obey.
std::string printable(std::string_view text);

/// A fault of this word, which `what` the word is not.
bad_line no(const token& t, std::string_view what);
bad_line no_duration(const token& t);

/// The durations with this text between them.
void write_list(std::ostream& out, const std::vector<int>& durations, std::string_view between);

/// The same with a sign before each: a mark's and a space's.
void write_signed(std::ostream& out, const std::vector<int>& durations, std::string_view mark,
                  std::string_view space, std::string_view between);

/// A number in so many upper-case hexadecimal digits.
void write_hex(std::ostream& out, uint32_t number, int digits);

/// Adds a mark or a space behind the durations; it lengthens the last one of its own kind, up to
/// the longest there is.
void append(std::vector<int>& durations, bool mark, int us);

}  // namespace companions
