// SPDX-License-Identifier: GPL-3.0-or-later
// RC5: bi-phase, half bit 889 µs, space then mark = 1, mark then space = 0; highest bit first.
//
//   1 c t ddddd ffffff    start bit, inverted seventh command bit (a second start bit in the
//                         original), toggle, device, function
//
// The first half of the start bit is a space and so never seen; neither is the last half of a
// frame that ends in 0. A half without its counterpart breaks the code: that is the check.
// Sample: 889,889,889,889,… with 27 halves in 13 to 27 durations.
#include "lib/ir/arduino/biphase.h"
#include "lib/ir/arduino/matchers.h"

namespace arduino {
namespace {

constexpr uint16_t kHalfUs = 889;
constexpr int kLongestHalves = 2;
// Remotes have halves of 823 to 937 µs. Shorter ones, of 808 to 818, and longer ones, from 944 on,
// belong to other bi-phase codes.
constexpr biphase kCode = {kHalfUs, kLongestHalves, 0.925, 1.055, true};
constexpr size_t kBits = 14;
constexpr size_t kHalves = 2 * kBits - 1;  // without the unseen first one
constexpr size_t kMostDurations = kHalves;

}  // namespace

bool match_rc5(const frame& f, arduino_result& result) {
  if (f.durations.size() < kBits - 1 || f.durations.size() > kMostDurations) return false;
  if (!f.ends_after(unsigned{kLongestHalves} * kHalfUs)) return false;
  unit_levels halves;
  receiver::distortion found;
  if (!read_units(kCode, f.durations, halves, found)) return false;
  if (halves.count != kHalves && halves.count != kHalves - 1) return false;

  uint32_t value = 0;
  for (size_t second = 2; second < kHalves; second += 2) {
    if (halves.at(second - 1) == halves.at(second)) return false;
    value = value << 1 | halves.at(second);
  }
  result = {"RC5", value, kBits - 1, 0};
  return true;
}

}  // namespace arduino
