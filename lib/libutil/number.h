// SPDX-License-Identifier: GPL-3.0-or-later
// Numbers in texts, read as strtoll reads them, but never past the end of the text, the same on
// every platform, and without asking for the locale, which takes most of strtoll's time.
#pragma once

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace number {

/// White space as strtoll skips it.
constexpr bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// `take` for the many numbers that are a few digits and nothing else. False, with everything as it
/// was, for any other.
inline bool take_digits(std::string_view& text, int64_t& value) {
  constexpr size_t kMostDigits = 18;  // of which any number fits in 64 bits
  const char* const begin = text.data();
  const char* const end = begin + std::min(text.size(), kMostDigits + 1);
  const char* at = begin;
  uint64_t sum = 0;  // also of a digit more
  for (; at != end; ++at) {
    const unsigned digit = static_cast<unsigned char>(*at) - unsigned{'0'};
    if (digit > 9) break;
    sum = 10 * sum + digit;
  }
  const auto digits = static_cast<size_t>(at - begin);
  if (digits == 0 || digits > kMostDigits) return false;
  text.remove_prefix(digits);
  value = static_cast<int64_t>(sum);
  return true;
}

/// Reads a number at the start of `text` and removes it: white space, a sign, digits (behind 0x,
/// if that is there, in base 16). What does not fit in 64 bits becomes the largest or smallest
/// number. 0, with `text` as it was, when there is no number.
inline int64_t take(std::string_view& text, int base = 10) {
  if (int64_t value = 0; base == 10 && take_digits(text, value)) return value;
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end && is_blank(*at)) ++at;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  const bool prefixed = base == 16 && end - at > 2 && *at == '0' && (at[1] == 'x' || at[1] == 'X');
  if (prefixed && std::isxdigit(static_cast<unsigned char>(at[2])) != 0) at += 2;

  uint64_t value = 0;
  const auto [stop, error] = std::from_chars(at, end, value, base);
  if (stop == at) return 0;
  text = {stop, end};
  using limits = std::numeric_limits<int64_t>;
  const bool fits = error == std::errc() && value <= uint64_t{limits::max()};
  if (!fits) return negative ? limits::min() : limits::max();
  return negative ? -static_cast<int64_t>(value) : static_cast<int64_t>(value);
}

/// The text as one number; nothing when it is none or something stands behind it.
inline std::optional<int64_t> whole(std::string_view text, int base = 10) {
  const size_t size = text.size();
  const int64_t value = take(text, base);
  if (!text.empty() || size == 0) return std::nullopt;
  return value;
}

/// The pieces of a text between runs of separators. They are views of `text`.
std::vector<std::string_view> split(std::string_view text, std::string_view separators);

}  // namespace number
