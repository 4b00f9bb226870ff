// SPDX-License-Identifier: GPL-3.0-or-later
// Reads infrared patterns in every text form that vantrel writes, and tells the forms apart:
//
//   comma      9045,4456,610               before it, optionally, "40 ms"
//   analysir   0,9045, 4456, 610           before it, optionally, ":e:40"
//   raw        +9045 -4456 +610            before it, optionally, "+40000" (µs)
//   pronto     0000 006D 0022 0002 0157 …
//
// Lines that begin with "#", empty lines, and what else vantrel says between patterns (decoders'
// lines, a device that left or came back) are skipped. What cannot be read is an error with its
// place, never a different pattern.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace companions {

/// What a Pronto text says beyond its durations.
struct pronto_header {
  int carrier_hz;
  int once_pairs;
  int repeat_pairs;
};

/// One pattern: durations in µs, mark and space in turn, a mark first.
struct pattern {
  std::string_view form;  // "comma", "analysir", "raw" or "pronto"
  std::vector<int> durations;
  std::vector<int> repeat;  // the repeat sequence of a Pronto text, if any
  std::optional<int> elapsed_ms;
  std::optional<pronto_header> pronto;
};

/// Why a line is no pattern; column counts characters from 1.
struct bad_line {
  size_t column;
  std::string what;
};

/// A line that only says how long ago the last pattern ended.
struct elapsed_line {
  int ms;
};

/// Reads one line without its end. REQUIRES: it is neither empty nor a comment.
std::variant<pattern, elapsed_line, bad_line> read_line(std::string_view line);

/// Whether this is one of the lines that vantrel prints beside its patterns.
bool says_something_else(std::string_view line);

/// One pattern or fault of a text, with the number of its line, counted from 1.
struct read_result {
  size_t line;
  std::variant<pattern, bad_line> what;
};

/// Reads a text pattern by pattern, as its lines arrive.
class pattern_reader {
 public:
  static constexpr size_t kLongestLine = size_t{1} << 16;  // characters; longer ones are a fault

  explicit pattern_reader(std::istream& text) : text_(text) {}
  /// The next pattern or fault; nothing at the end of the text.
  std::optional<read_result> next();
  /// Characters read so far.
  [[nodiscard]] size_t position() const { return position_; }

 private:
  /// Whether there was a line; `fits` says whether it is within kLongestLine.
  bool next_line(bool& fits);

  std::istream& text_;
  std::string line_;
  size_t number_ = 0;
  size_t position_ = 0;
  std::optional<int> elapsed_ms_;
};

}  // namespace companions
