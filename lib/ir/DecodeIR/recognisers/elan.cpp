// SPDX-License-Identifier: GPL-3.0-or-later
// Elan and B&O: pulse-distance codes that are more than one lead-in and its bits.
//
// Not modulated, pulse distance, unit 398 µs, most significant bit first; a zero is mark 1, space
// 1, a one mark 1, space 2; a second lead-in stands in the middle. A frame lasts 50 ms with its
// gap.
//
//   <3,-2> DDDDDDDD dddddddd <2,-2> FFFFFFFF ffffffff <1>
//   D device, F function, d and f their complements
//
// B&O: carrier 455 kHz, marks of 200 µs, spaces in units of 3125 µs (mark included), most
// significant bit first, gap 100 ms. A bit like the one before it takes 2 units, a one after a zero
// 3, a zero after a one 1; the first bit counts as one after a zero, or as a zero after a one.
//
//   <1 1 5> DDDDDDDDD FFFFFFFF <4> mark
//
// The 5 of the lead-in is so long that a receiver cuts the signal there and delivers the rest.
//
// Sample of Elan, D = 0, F = 0:
//   1194,796,398,398,398,398,398,398,398,398,398,398,398,398,398,398,398,398,398,796,398,796,398,
//   796,398,796,398,796,398,796,398,796,398,796,796,796,398,398,398,398,398,398,398,398,398,398,
//   398,398,398,398,398,398,398,796,398,796,398,796,398,796,398,796,398,796,398,796,398,796,398
// Facts: public protocol definitions in IRP notation.
#include <cmath>
#include <cstddef>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kRule{.unit_us = 398, .longest = 3, .lead = 3, .lead_space = 2};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 1, .one_mark = 1, .one_space = 2};
constexpr int kHalf = 16;           // bits before and after the second lead-in
constexpr int kMiddle = 1 + kHalf;  // its burst
constexpr int kBursts = 2 * (1 + kHalf) + 1;

constexpr float kStepUs = 3125;
constexpr float kStepToleranceUs = 350;
constexpr float kLongestFlashUs = 420;
constexpr int kLeadBursts = 3;
constexpr int kLeadSteps[kLeadBursts] = {1, 1, 5};
constexpr int kBeoBits = 17;
constexpr int kBeoDeviceBits = 9;
constexpr int kStopSteps = 4;
constexpr int kBodyBursts = kBeoBits + 2;  // with the stop and the last mark
constexpr int kWholeBursts = kLeadBursts + kBodyBursts;

/// The burst's length in steps, 0 when it is no whole number of them.
int steps(const float* burst) {
  const float us = burst[0] + burst[1];
  const int count = static_cast<int>(std::lround(us / kStepUs));
  const bool fits = burst[0] <= kLongestFlashUs &&
                    std::abs(us - static_cast<float>(count) * kStepUs) <= kStepToleranceUs;
  return fits && count <= kLeadSteps[kLeadBursts - 1] ? count : 0;
}

/// The bits from the first burst behind the lead-in on; false where a step is out of place.
bool readDifferential(const float* body, wire_bits* bits) {
  constexpr int kZeroAfterOne = 1;
  constexpr int kSame = 2;
  constexpr int kOneAfterZero = 3;
  bool last = false;
  for (int i = 0; i < kBeoBits; ++i) {
    const int step = steps(body + 2 * static_cast<ptrdiff_t>(i));
    if (step == kZeroAfterOne && (last || i == 0)) {
      last = false;
    } else if (step == kOneAfterZero && !last) {
      last = true;
    } else if (step != kSame || i == 0) {
      return false;
    }
    bits->append(last);
  }
  return steps(body + 2 * static_cast<ptrdiff_t>(kBeoBits)) == kStopSteps;
}

/// The bits of a frame of `bursts`, with its lead-in or without.
bool readBeo(const float* frame, int bursts, wire_bits* bits) {
  if (bursts == kWholeBursts) {
    for (const int lead : kLeadSteps) {
      if (steps(frame) != lead) return false;
      frame += 2;
    }
  }
  return readDifferential(frame, bits);
}

bool complements(const wire_bits& bits) {
  return (bits.msb(0, 8) ^ bits.msb(8, 8)) == 0xFF;
}

}  // namespace

void Signal::tryElan() {
  if (!within(kElanBounds)) return;
  if (frameLength_ == kBodyBursts || frameLength_ == kWholeBursts) {
    wire_bits code;
    if (!readBeo(frame_, frameLength_, &code)) return;
    const int command = static_cast<int>(code.msb(kBeoDeviceBits, kBeoBits - kBeoDeviceBits));
    claim("B&O", static_cast<int>(code.msb(0, kBeoDeviceBits)), -1, command, command);
    return;
  }
  if (frameLength_ != kBursts) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame)) return;
  if (frame.units(2 * kMiddle) != 2 || frame.units(2 * kMiddle + 1) != 2) return;
  wire_bits device;
  wire_bits function;
  if (!readPairs(frame, 1, kHalf, kBit, &device) || !complements(device)) return;
  if (!readPairs(frame, kMiddle + 1, kHalf, kBit, &function) || !complements(function)) return;
  claim("Elan", static_cast<int>(device.msb(0, 8)), -1, static_cast<int>(function.msb(0, 8)),
        static_cast<int>(function.msb(0, 8)));
}
