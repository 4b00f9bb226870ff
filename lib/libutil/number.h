// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers in texts, read as strtoll reads them, but never past the end of the text, the same on
// every platform, and without asking for the locale, which takes most of strtoll's time.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

namespace number {

/// The value of a digit in this base (at most 16), -1 when it is none.
constexpr int digit(char c, int base) {
  const int value = c >= '0' && c <= '9'   ? c - '0'
                    : c >= 'a' && c <= 'f' ? c - 'a' + 10
                    : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                           : base;
  return value < base ? value : -1;
}

/// Reads a number at the start of `text` and removes it: white space, a sign, digits (behind 0x,
/// if that is there, in base 16). What does not fit in 64 bits becomes the largest or smallest
/// number. 0, with `text` as it was, when there is no number.
constexpr int64_t take(std::string_view& text, int base = 10) {
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end && kBlanks.find(*at) != kBlanks.npos) ++at;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  const bool prefixed = base == 16 && end - at > 2 && *at == '0' && (at[1] == 'x' || at[1] == 'X');
  if (prefixed && digit(at[2], base) >= 0) at += 2;
  const char* const digits = at;
  int64_t value = 0;
  bool overflow = false;
  for (int next = 0; at != end && (next = digit(*at, base)) >= 0; ++at) {
    overflow |= __builtin_mul_overflow(value, base, &value);
    overflow |= __builtin_add_overflow(value, next, &value);
  }
  if (at == digits) return 0;
  text.remove_prefix(static_cast<size_t>(at - text.data()));
  using limits = std::numeric_limits<int64_t>;
  if (overflow) return negative ? limits::min() : limits::max();
  return negative ? -value : value;
}

/// The text as one number; nothing when it is none or something stands behind it.
constexpr std::optional<int64_t> whole(std::string_view text, int base = 10) {
  const size_t size = text.size();
  const int64_t value = take(text, base);
  if (!text.empty() || size == 0) return std::nullopt;
  return value;
}

/// The pieces of a text between runs of separators. They are views of `text`.
std::vector<std::string_view> split(std::string_view text, std::string_view separators);

}  // namespace number
