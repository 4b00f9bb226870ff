// SPDX-License-Identifier: GPL-3.0-or-later
// Zenith5 to Zenith8: a bit-doubled code of short and long spaces.
//
// Modulation: 40 kHz, unit 520 µs; a level 0 is sent as 1,-10, a level 1 as 1,-1,1,-8 units
// Frame: E level, then each function bit as two levels, 01 for 0 and 10 for 1, most significant
//   bit first; gap 90 ms
// Layout (one letter per bit): E F..F, five to eight F
// Checks: the two levels of a bit differ; marks all alike; the number of marks is
//   1 + E + 3 x bits, so it tells both how many bits there are and what E must be.
// Sample (Zenith5, E 0, function 18), µs:
//   520,5200,520,520,520,4160,520,5200,520,5200,520,520,520,4160,520,5200,520,520,520,4160,520,
//   520,520,4160,520,5200,520,5200,520,520,520
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/frame_fit.h"
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kUnitUs = 520;
constexpr float kShortBurstUs = 4 * kUnitUs;  // 2 units or else 9 and more
constexpr float kLongestMarkUs = 2 * kUnitUs;
constexpr float kLongestBurstUs = 13 * kUnitUs;
constexpr fit_rule kFit{.tolerance_us = 100, .clock_error = 0.12F, .checked = true};

}  // namespace

void Signal::tryZenith() {
  if (!within(kZenithBounds) || setOn_.largest > kLongestMarkUs) return;
  if (setOff_.largest > kLongestBurstUs) return;
  const int bits = (frameLength_ - 1) / 3;
  const int extra = (frameLength_ - 1) % 3;
  if (extra > 1) return;

  expected_frame expected;
  int at = 0;
  // The last mark stands for a level 0: its long space is part of the gap.
  const auto takeLevel = [&] {
    const bool one = at < frameLength_ - 1 && burst(at) < kShortBurstUs;
    expected.mark(kUnitUs);
    if (one) {
      expected.space(kUnitUs);
      expected.mark(kUnitUs);
    }
    expected.space(one ? 8 * kUnitUs : 10 * kUnitUs);
    at += one ? 2 : 1;
    return one ? 1 : 0;
  };

  if (takeLevel() != extra) return;
  int function = 0;
  for (int i = 0; i < bits; ++i) {
    const int first = takeLevel();
    if (at >= frameLength_ || takeLevel() == first) return;
    function = function << 1 | first;
  }
  if (at != frameLength_ || !expected.fits(frame_, kFit)) return;
  remark("E=%X", static_cast<unsigned>(extra));
  claim("Zenith", bits, extra, function, function);
}
