// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/csv.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "lib/liblog/logging.h"
#include "lib/libutil/number.h"

namespace {

constexpr size_t kSmallestBuf = 100;

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
  for (std::string_view rest = line; !rest.empty();) {
    if (stored == capacity) {
      _log(1, "[E] %s(%d): more than %zu entries, the rest is cut\n", __func__, __LINE__, capacity);
      break;
    }
    const auto value = static_cast<uint16_t>(number::take(rest));
    // A later 0 shortens the count but keeps its place, so it is the last entries that fall off.
    if (value != 0 || stored == 0) count++;
    buf[stored++] = value;
    const auto* const comma = std::find(rest.begin(), rest.end(), ',');  // most often the first
    rest = {comma == rest.end() ? comma : comma + 1, rest.end()};
  }
  return count;
}
