// SPDX-License-Identifier: GPL-3.0-or-later
// Bryston.
//
// Carrier 38 kHz, pulse width, unit 315 µs, least significant bit first; a zero is mark 1, space 6,
// a one mark 6, space 1; the space of the last bit lies in the gap of 18 ms.
//
//   DDDDDDDDDD FFFFFFFF
//   D device, F function
//
// There is no check: bursts of one length, their number and the gaps stand for it.
//
// Sample, D = 1, F = 2:
//   1890,315,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,
//   1890,1890,315,315,1890,315,1890,315,1890,315,1890,315,1890,315
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kRule{.unit_us = 315, .longest = 6};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 6, .one_mark = 6, .one_space = 1};
constexpr int kDeviceBits = 10;
constexpr int kFunctionBits = 8;
constexpr int kBursts = kDeviceBits + kFunctionBits;

}  // namespace

void Signal::tryBryston() {
  if (!within(kBrystonBounds) || frameLength_ != kBursts) return;
  slicer frame;
  wire_bits bits;
  if (!sliceFrame(kRule, &frame) || !readPairs(frame, 0, kBursts, kBit, &bits)) return;
  claim("Bryston", static_cast<int>(bits.lsb(0, kDeviceBits)), -1,
        static_cast<int>(bits.lsb(kDeviceBits, kFunctionBits)),
        static_cast<int>(bits.msb(kDeviceBits, kFunctionBits)));
}
