// SPDX-License-Identifier: GPL-3.0-or-later
// GXB.
//
// Carrier 38.3 kHz, pulse width, unit 520 µs, most significant bit first; a zero is mark 1, space
// 3, a one mark 3, space 1. A frame lasts 100 ms with its gap.
//
//   <1,-1> DDDD FFFFFFFF P <1>
//   D device, F function, P odd parity of F
//
// The name carries the twelve bits and the parity bit.
//
// Sample, D = 1, F = 3, P = 1:
//   520,520,520,1560,520,1560,520,1560,1560,520,520,1560,520,1560,520,1560,520,1560,520,1560,520,
//   1560,1560,520,1560,520,1560,520,520
// Facts: public protocol definitions in IRP notation.
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kRule{.unit_us = 520, .longest = 3, .lead = 1, .lead_space = 1};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 3, .one_mark = 3, .one_space = 1};
constexpr int kDeviceBits = 4;
constexpr int kFunctionBits = 8;
constexpr int kCodeBits = kDeviceBits + kFunctionBits;
constexpr int kBursts = 1 + kCodeBits + 1 + 1;  // lead-in, code, parity, stop mark

}  // namespace

void Signal::tryGXB() {
  if (!within(kGxbBounds) || frameLength_ != kBursts) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame)) return;
  if (frame.units(0) != 1 || frame.units(frame.count() - 1) != 1) return;
  wire_bits bits;
  if (!readPairs(frame, 1, kCodeBits + 1, kBit, &bits)) return;
  const unsigned function = bits.msb(kDeviceBits, kFunctionBits);
  const unsigned parityBit = bits.bit(kCodeBits);
  if (parity(function << 1 | parityBit) == 0) return;

  char name[kMostNameChars + 1];
  std::snprintf(name, sizeof name, "GXB-%03X.%u", bits.msb(0, kCodeBits), parityBit);
  claim(name, static_cast<int>(bits.msb(0, kDeviceBits)), -1, static_cast<int>(function),
        static_cast<int>(function));
}
