// SPDX-License-Identifier: GPL-3.0-or-later
// Sunfire.
//
// Carrier 38 kHz, pulse width, unit 558 µs, most significant bit first; a zero is mark 1, space 1,
// a one mark 3, space 1; the space of the last bit lies in the gap of 33 units.
//
//   <16,-8> DDDD FFFFFFFF dddd ffffffff
//   D device, F function, d and f their complements
//
// Sample, D = 1, F = 2:
//   8928,4464,558,558,558,558,558,558,1674,558,558,558,(...),558,558,1674
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr int kLeadMark = 16;
constexpr int kLeadSpace = 8;
constexpr slice_rule kRule{.unit_us = 558, .longest = kLeadMark};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 1, .one_mark = 3, .one_space = 1};
constexpr int kHalfBits = 12;

}  // namespace

void Signal::trySunfire() {
  if (!within(kSunfireBounds)) return;
  slicer frame;
  wire_bits bits;
  if (!sliceFrame(kRule, &frame) || frame.units(1) != kLeadSpace) return;
  if (frame.units(0) != kLeadMark && !frame.firstIsOdd()) return;
  if (!readPairs(frame, 1, 2 * kHalfBits, kBit, &bits)) return;
  if ((bits.msb(0, kHalfBits) ^ bits.msb(kHalfBits, kHalfBits)) != 0xFFF) return;
  const int function = static_cast<int>(bits.msb(4, 8));
  claim("Sunfire", static_cast<int>(bits.msb(0, 4)), -1, function, function);
}
