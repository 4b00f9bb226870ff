// SPDX-License-Identifier: GPL-3.0-or-later
// Dish Network: pulse distance, lead-in 400/6100 µs, mark 400, space 2840 = 0, 1630 = 1
// (often given as 2800 and 1700; remotes send the former), 16 bits.
//
//   L ffffff uuuuu ddddd m    f function, u unit, d device, m the last mark
//
// The frame repeats while the key is held. The gap between two copies is the lead-in's space, and
// the last mark of one copy is the lead-in's mark of the next, so all copies arrive in one pattern:
//   400 6100 (16 symbols) 400 6100 (16 symbols) 400 …
// Sample: 400,6100,400,1630,400,2840,…,400 is one copy of 35 durations.
#include "lib/ir/arduino/mark_space.h"

namespace arduino {
namespace {

constexpr mark_space kDish = {
    "DISH", {1, {{{400, 6100}}}}, {400, 2840}, {400, 1630}, ending::stop_mark,
    16,     {0.93, 1.07},         nullptr};
constexpr size_t kPeriod = kDish.length() - 1;  // from copy to copy, which share a mark

}  // namespace

bool match_dish(const frame& f, arduino_result& result) {
  const size_t length = f.durations.size();
  if (length < kDish.length() || length % kPeriod != 1) return false;
  for (size_t from = 0; from + 1 < length; from += kPeriod) {
    const bool last = from + kPeriod + 1 == length;
    const frame copy = {f.durations.subspan(from, kDish.length()), last ? f.tail : 0};
    arduino_result found;
    if (!match_row(kDish, copy, found)) return false;
    if (from > 0 && found.value != result.value) return false;
    result = found;
  }
  return true;
}

}  // namespace arduino
