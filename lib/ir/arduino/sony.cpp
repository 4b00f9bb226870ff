// SPDX-License-Identifier: GPL-3.0-or-later
// Sony: pulse width, unit 600 µs: lead-in 4 units mark, 1 space; a mark of 1 unit = 0, of 2 units
// = 1; a space of 1 unit between the marks and none after the last one.
//
//   L fffffff ddddd              12 bits: function, device, lowest bit first
//   L fffffff dddddddd           15 bits
//   L fffffff ddddd ssssssss     20 bits, s the subdevice
//
// There is no check, so the bit count and the tight fit have to do.
// Sample: 2400,600,1200,600,600,600,…,600 with 25, 31 or 41 durations.
#include "lib/ir/arduino/mark_space.h"

namespace arduino {
namespace {

constexpr uint16_t kUnitUs = 600;

constexpr mark_space sony(unsigned bits) {
  return {"SONY",
          {1, {{{4 * kUnitUs, kUnitUs}}}},
          {kUnitUs, kUnitUs},
          {2 * kUnitUs, kUnitUs},
          ending::last_symbol,
          bits,
          {0.92, 1.09},
          nullptr};
}

constexpr mark_space kRows[] = {sony(12), sony(15), sony(20)};

}  // namespace

bool match_sony(const frame& f, arduino_result& result) {
  return match_any(kRows, f, result);
}

}  // namespace arduino
