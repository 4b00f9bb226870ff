// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of output put together without printf, which takes longer to read its format than the
// decoders take to find what stands in the line.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// Writes into the caller's room, which has to outlive it; what does not fit is cut off.
/// The room is not a member, so that the compiler can keep the place to write at in a register.
class text_writer {
 public:
  explicit text_writer(std::span<char> room)
      : begin_(room.data()), at_(begin_), end_(begin_ + room.size()) {}

  text_writer& add(char c) {
    if (at_ != end_) *at_++ = c;
    return *this;
  }

  text_writer& add(std::string_view text) {
    at_ += text.copy(at_, room());
    return *this;
  }

  /// The text, and blanks behind it up to this width.
  text_writer& add_padded(std::string_view text, size_t width) {
    add(text);
    const size_t blanks = std::min(width - std::min(text.size(), width), room());
    at_ = std::fill_n(at_, blanks, ' ');
    return *this;
  }

  text_writer& add_decimal(uint32_t value) {
    const auto [end, error] = std::to_chars(at_, end_, value);
    if (error == std::errc()) at_ = end;
    return *this;
  }

  /// Upper case, at least so many digits.
  text_writer& add_hex(uint32_t value, int digits) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    constexpr int kBits = 4;
    int shift = kBits * (digits - 1);
    while (value >> shift > 0xF) shift += kBits;
    for (; shift >= 0; shift -= kBits) add(kDigits[value >> shift & 0xF]);
    return *this;
  }

  /// What was written since the start or the last clear().
  [[nodiscard]] std::string_view text() const {
    return {begin_, static_cast<size_t>(at_ - begin_)};
  }
  void clear() { at_ = begin_; }

 private:
  [[nodiscard]] size_t room() const { return static_cast<size_t>(end_ - at_); }

  char* begin_;
  char* at_;
  char* end_;
};
