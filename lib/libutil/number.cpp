// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/number.h"

#include <algorithm>

namespace number {

std::vector<std::string_view> split(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> pieces;
  for (size_t at = 0; (at = text.find_first_not_of(separators, at)) != text.npos;) {
    const size_t end = std::min(text.find_first_of(separators, at), text.size());
    pieces.push_back(text.substr(at, end - at));
    at = end;
  }
  return pieces;
}

}  // namespace number
