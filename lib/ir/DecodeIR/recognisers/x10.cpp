// SPDX-License-Identifier: GPL-3.0-or-later
// X10: pulse width, bursts of equal length, a very long end mark.
//
// Modulation: 38 to 41 kHz, unit 565 to 570 µs; 0 = 2,-12  1 = 7,-7 units
// Layout (one letter per bit, least significant first, N most significant first); > is a lead-in
// like a one, E the end 21,-7:
//   start frame  FFFFF NNNN E             sent once, at the start of a press
//   repeat       > FFFFF fffff E          f: complement of F; follows without a pause
//   house code   > HHHH hhhh E            h: complement of H
// F is command + 16 or a device. N counts presses.
// Checks: the complements; a start frame has none, but its repeat has to send the same F.
// Sample (repeat, function 17), µs:
//   3990,3990,3990,3990,1140,6840,1140,6840,1140,6840,3990,3990,1140,6840,3990,3990,3990,3990,
//   3990,3990,1140,6840,11970
// Facts: public protocol definitions in IRP notation.
#include <array>
#include <cstdio>

#include "lib/ir/DecodeIR/frame_fit.h"
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kUnitUs = 567;
constexpr float kShortMark = 2;
constexpr float kLongMark = 7;
constexpr float kBurst = 14;
constexpr float kEndMark = 21;
constexpr float kLongMarkMinUs = 4.5F * kUnitUs;
constexpr float kEndMarkMinUs = 17 * kUnitUs;
constexpr fit_rule kFit{.tolerance_us = 130};

constexpr int kStartBursts = 10;
constexpr int kRepeatBursts = 12;
constexpr unsigned kFunctionMask = 31;

/// Reads `bursts` bursts, the last one the end mark; the first bit sent is the lowest.
bool readBits(const float* frame, int bursts, unsigned* bits) {
  if (frame[2 * (bursts - 1)] < kEndMarkMinUs) return false;
  expected_frame expected;
  *bits = 0;
  for (int i = 0; i < bursts - 1; ++i) {
    const bool one = frame[2 * i] > kLongMarkMinUs;
    const float mark = one ? kLongMark : kShortMark;
    expected.mark(mark * kUnitUs);
    expected.space((kBurst - mark) * kUnitUs);
    *bits |= static_cast<unsigned>(one) << i;
  }
  expected.mark(kEndMark * kUnitUs);
  return expected.fits(frame, kFit);
}

/// Reads a repeat and checks its complement.
bool readRepeat(const float* frame, unsigned* function) {
  unsigned bits = 0;
  if (!readBits(frame, kRepeatBursts, &bits) || (bits & 1) == 0) return false;
  *function = bits >> 1 & kFunctionMask;
  return bits >> 6 == (~*function & kFunctionMask);
}

}  // namespace

void Signal::tryX10() {
  if (!within(kX10Bounds)) return;
  unsigned function = 0;
  if (frameLength_ == kRepeatBursts && readRepeat(frame_, &function)) {
    claim("X10", -1, -1, static_cast<int>(function), static_cast<int>(msb(function, 5)));
    return;
  }

  unsigned bits = 0;
  if (frameLength_ != kStartBursts || !readBits(frame_, kStartBursts, &bits)) return;
  unsigned repeated = 0;
  const bool hasRepeat = burstsFromFrame() >= kStartBursts + kRepeatBursts &&
                         readRepeat(frame_ + 2 * kStartBursts, &repeated);
  const unsigned house = bits >> 1 & 15;
  if (!hasRepeat && (bits & 1) != 0 && bits >> 5 == (~house & 15)) {
    claim("X10-house", -1, -1, static_cast<int>(house), static_cast<int>(msb(house, 4)));
    return;
  }
  function = bits & kFunctionMask;
  std::array<char, 8> name{};
  std::snprintf(name.data(), name.size(), "X10:%d", static_cast<int>(msb(bits >> 5, 4)));
  if (hasRepeat && repeated != function) std::snprintf(error_, 15, "invalid signal");
  nameVariant_ = true;
  remark("only start frame");
  claim(name.data(), -1, -1, static_cast<int>(function), static_cast<int>(msb(function, 5)));
}
