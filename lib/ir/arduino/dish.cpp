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
  if (length < kDish.length() || !repeats(f.durations, kPeriod)) return false;
  if (length == kDish.length()) return match_row(kDish, f, result);
  return match_row(kDish, {f.durations.first(kDish.length()), 0}, result);
}

}  // namespace arduino
