// SPDX-License-Identifier: GPL-3.0-or-later
// Elan.
//
// Not modulated, pulse distance, unit 398 µs, most significant bit first; a zero is mark 1, space
// 1, a one mark 1, space 2; a second lead-in stands in the middle. A frame lasts 50 ms with its
// gap.
//
//   <3,-2> DDDDDDDD dddddddd <2,-2> FFFFFFFF ffffffff <1>
//   D device, F function, d and f their complements
//
// Sample, D = 0, F = 0:
//   1194,796,398,398,(...),398,796,796,796,398,398,(...),398,796,398
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kRule{.unit_us = 398, .longest = 3};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 1, .one_mark = 1, .one_space = 2};
constexpr int kHalf = 16;           // bits before and after the second lead-in
constexpr int kMiddle = 1 + kHalf;  // its burst
constexpr int kBursts = 2 * (1 + kHalf) + 1;

bool complements(const wire_bits& bits) {
  return (bits.msb(0, 8) ^ bits.msb(8, 8)) == 0xFF;
}

}  // namespace

void Signal::tryElan() {
  if (!within(kElanBounds) || frameLength_ != kBursts) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame)) return;
  if ((frame.units(0) != 3 && !frame.firstIsOdd()) || frame.units(1) != 2) return;
  if (frame.units(2 * kMiddle) != 2 || frame.units(2 * kMiddle + 1) != 2) return;
  wire_bits device;
  wire_bits function;
  if (!readPairs(frame, 1, kHalf, kBit, &device) || !complements(device)) return;
  if (!readPairs(frame, kMiddle + 1, kHalf, kBit, &function) || !complements(function)) return;
  claim("Elan", static_cast<int>(device.msb(0, 8)), -1, static_cast<int>(function.msb(0, 8)),
        static_cast<int>(function.msb(0, 8)));
}
