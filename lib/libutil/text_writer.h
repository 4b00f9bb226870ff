// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of output put together without printf, which takes longer to read its format than the
// decoders take to find what stands in the line.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// Writes into the caller's room, which has to outlive it. A text that does not fit is cut off, a
/// decimal number left out.
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
    if (value < kFourDigits && room() >= 4) return add_four_digits(value);
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
  static constexpr uint32_t kFourDigits = 10'000;

  // The digits of 0 to 99, the first one in the low byte.
  static constexpr auto kPairs = [] {
    std::array<uint16_t, 100> pairs{};
    for (unsigned i = 0; i < pairs.size(); i++) {
      pairs[i] = static_cast<uint16_t>(('0' + i / 10) | ('0' + i % 10) << 8);
    }
    return pairs;
  }();

  // Durations have three or four digits, which no branch can tell beforehand: to_chars takes twice
  // as long. Always writes four chars; those behind the number are overwritten.
  text_writer& add_four_digits(uint32_t value) {
    constexpr unsigned kCharBits = 8;
    constexpr uint32_t kZeros = 0x30303030;  // '0' four times
    constexpr uint32_t kLast = 1U << 3 * kCharBits;
    const uint32_t high = kPairs[value / 100];
    const uint32_t low = kPairs[value % 100];
    uint32_t digits = high | low << 2 * kCharBits;
    const auto zero_bits = static_cast<unsigned>(std::countr_zero((digits ^ kZeros) | kLast));
    const unsigned zeros = zero_bits / kCharBits;  // in front of the number
    digits >>= zeros * kCharBits;
    for (unsigned i = 0; i < 4; i++) at_[i] = static_cast<char>(digits >> i * kCharBits);
    at_ += 4 - zeros;
    return *this;
  }

  [[nodiscard]] size_t room() const { return static_cast<size_t>(end_ - at_); }

  char* begin_;
  char* at_;
  char* end_;
};
