// SPDX-License-Identifier: GPL-3.0-or-later
// Somfy: a pulse-width code whose bursts are all equally long.
//
// Modulation: 35.7 kHz; 0 = mark 308, space 881 µs; 1 = mark 669, space 520 µs
// Frame: lead-in 2072,-484, nine bits, gap 2300 µs behind the space of the last bit
// Layout (one letter per bit, least significant first): FF DDD CCCC
// Check: C = 4 F + D + 3, modulo 16
// Sample (device 2, function 1), µs:
//   2072,484,669,520,308,881,308,881,669,520,308,881,669,520,308,881,308,881,669
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/frame_fit.h"
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kZeroMarkUs = 308;
constexpr float kOneMarkUs = 669;
constexpr float kBurstUs = 1189;
constexpr float kLeadMarkUs = 2072;
constexpr float kLeadSpaceUs = 484;
constexpr float kBetweenMarksUs = 530;  // marks are rather lengthened
constexpr int kBits = 9;
constexpr fit_rule kFit{.tolerance_us = 80, .checked = true};

}  // namespace

void Signal::trySomfy() {
  if (!within(kSomfyBounds) || on(0) < 0.8F * kLeadMarkUs || on(0) > 1.25F * kLeadMarkUs) return;
  if (setOff_.largest > kBurstUs) return;
  expected_frame expected;
  expected.mark(kLeadMarkUs);
  expected.space(kLeadSpaceUs);
  unsigned bits = 0;
  for (int i = 0; i < kBits; ++i) {
    const bool one = on(i + 1) > kBetweenMarksUs;
    const float mark = one ? kOneMarkUs : kZeroMarkUs;
    expected.mark(mark);
    expected.space(kBurstUs - mark);
    bits |= static_cast<unsigned>(one) << i;
  }
  const unsigned function = bits & 3;
  const unsigned device = bits >> 2 & 7;
  if (bits >> 5 != (4 * function + device + 3) % 16 || !expected.fits(frame_, kFit)) return;
  claim("Somfy", static_cast<int>(device), -1, static_cast<int>(function),
        static_cast<int>(msb(function, 2)));
}
