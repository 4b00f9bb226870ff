// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/csv.h"

#include <cstring>
#include <limits>

#include "lib/liblog/logging.h"

namespace {

constexpr size_t kSmallestBuf = 100;

bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Reads one number at `text` and moves past it: blanks, a sign, digits, clamped to 64 bits. This
/// is strtol without the locale, which took most of the time a line takes.
int64_t read_number(const char*& text) {
  const char* at = text;
  while (is_blank(*at)) at++;
  const bool negative = *at == '-';
  if (*at == '-' || *at == '+') at++;
  int64_t value = 0;
  bool overflow = false;
  for (; is_digit(*at); at++) {
    overflow |= __builtin_mul_overflow(value, 10, &value);
    overflow |= __builtin_add_overflow(value, *at - '0', &value);
  }
  text = at;
  using limits = std::numeric_limits<int64_t>;
  if (overflow) return negative ? limits::min() : limits::max();
  return negative ? -value : value;
}

}  // namespace

ssize_t csv_to_buf(const char* line, uint16_t* buf, size_t len) {
  if (line == nullptr || *line == '\0') {
    _log(1, "[E] %s(%d): invalid line buffer, len = %lu\n", __func__, __LINE__, 0UL);
    return -1;
  }
  if (buf == nullptr || len < kSmallestBuf) {
    _log(1, "[E] %s(%d): buf to fill is invalid\n", __func__, __LINE__);
    return -1;
  }
  std::memset(buf, 0, len);
  if (std::strchr(line, ',') == nullptr) {
    _log(1, "[E] %s(%d): worst CSV ever, not a single comma\n", __func__, __LINE__);
    return -1;
  }
  const size_t capacity = len / sizeof(uint16_t);
  size_t stored = 0;
  ssize_t count = 0;
  for (const char* at = line; *at != '\0';) {
    if (stored == capacity) {
      _log(2, "[W] %s(%d): more than %zu entries, the rest is cut\n", __func__, __LINE__, capacity);
      break;
    }
    const auto value = static_cast<uint16_t>(read_number(at));
    // A later 0 shortens the count but keeps its place, so it is the last entries that fall off.
    if (value != 0 || stored == 0) count++;
    buf[stored++] = value;
    while (*at != '\0' && *at != ',') at++;
    if (*at == ',') at++;
  }
  return count;
}
