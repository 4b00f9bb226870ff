// SPDX-License-Identifier: GPL-3.0-or-later
// Reads infrared signals in every text form, and tells the forms apart.
//
// Lines that begin with "#", empty lines, and what else vantrel says between patterns (decoders'
// lines, a device that left or came back) are skipped. What cannot be read is a fault with its
// place, never a different pattern.
#pragma once

#include <array>
#include <istream>

#include "companions/formats/form.h"

namespace companions {

/// Reads a text pattern by pattern, as its lines arrive, in memory that depends on the longest
/// signal only.
class pattern_reader {
 public:
  static constexpr size_t kLongestLine = size_t{1} << 22;  // characters; longer ones are a fault

  /// `from` is the form of the whole text; null where every line may tell its own.
  explicit pattern_reader(std::istream& text, const form* from = nullptr)
      : text_(text), from_(from) {}
  /// The next pattern or fault; nothing at the end of the text.
  std::optional<read_result> next();
  /// Characters read so far.
  [[nodiscard]] size_t position() const { return position_; }

 private:
  /// Reads what is there, at least a character; false at the end of the text.
  bool fill();
  /// Whether there was a line; `fits` says whether it is within kLongestLine.
  bool next_line(bool& fits);
  void read_line(bool fits);
  void end_open();

  std::istream& text_;
  const form* from_;
  static constexpr std::streamsize kBlock = 4096;
  std::array<char, kBlock> block_;
  size_t at_ = 0, filled_ = 0;  // of the block
  std::string line_;
  size_t number_ = 0;
  size_t position_ = 0;
  std::unique_ptr<form_reader> open_;  // of the last line's form
  findings found_;
};

}  // namespace companions
