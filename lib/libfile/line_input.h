// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of an open file, without stdio: each is there when its end has come, and none is
// copied.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

class line_input {
 public:
  static constexpr size_t kLongestLine = 1023;

  struct line {
    std::string_view text;  // a zero follows it; until the next line is read
    bool was_cut;           // it was longer: the next char is lost, what follows is the next line
  };

  /// Takes over an open descriptor.
  explicit line_input(int fd) : fd_(fd) {}
  ~line_input();
  line_input(const line_input&) = delete;
  line_input& operator=(const line_input&) = delete;

  /// Reads the line that fgetline would read into a buffer of kLongestLine + 1 bytes. False where
  /// it would return -1. What fgetline looks for behind a line's end, the second character that it
  /// may have, is left to the next call. A point of lib/libutil/interrupt.h.
  bool next(line& found);

  /// Leaves what is unread to whoever reads the file after us, if files of its kind allow that.
  void give_back();

 private:
  static constexpr size_t kMostInSight = kLongestLine + 1;  // the last one is what a cut loses
  static constexpr size_t kBlock = 4096;

  [[nodiscard]] std::string_view in_sight() const {
    return {chars_.data() + begin_, std::min(end_ - begin_, kMostInSight)};
  }
  bool has_more() { return begin_ != end_ || read_on(); }
  bool read_on();
  void skip_partner();

  int fd_;
  bool at_end_ = false;         // for good: a terminal would go on
  char partner_ = '\0';         // second half of a line end: passed over if it comes next
  size_t begin_ = 0, end_ = 0;  // what is unread
  std::array<char, kLongestLine + kBlock + 1> chars_;
};
