// SPDX-License-Identifier: GPL-3.0-or-later
// Sony's SIRC with 8, 12, 15 and 20 bits.
//
// Carrier 40 kHz, pulse width, unit 600 µs, least significant bit first. A zero is mark 1, space 1,
// a one mark 2, space 1; the space of the last bit lies in the gap. Frames start every 45 ms.
//
//   <4,-1> FFFFFFFF                     Sony8, the short pieces of the SonyDSP sequence
//   <4,-1> FFFFFFF DDDDD                Sony12
//   <4,-1> FFFFFFF DDDDDDDD             Sony15; SonyDSP begins with D = 36, F = 96
//   <4,-1> FFFFFFF DDDDD SSSSSSSS       Sony20
//   F function, D device, S subdevice
//
// There is no check: the lead-in, equal spaces, the exact number of bits and the gaps stand for it.
//
// Sample, Sony12, D = 1, F = 21:
//   2400,600,1200,600,600,600,1200,600,600,600,1200,600,600,600,600,600,1200,600,600,600,600,600,
//   600,600,600
// Facts: public protocol definitions in IRP notation.
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr int kLeadMark = 4;
constexpr slice_rule kRule{
    .unit_us = 600, .longest = kLeadMark, .lead = kLeadMark, .lead_space = 1};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 1, .one_mark = 2, .one_space = 1};
constexpr int kFunctionBits = 7;
constexpr int kDeviceBits = 5;

}  // namespace

void Signal::trySony() {
  if (!within(kSonyBounds)) return;
  const int count = frameLength_ - 1;
  if (count != 8 && count != 12 && count != 15 && count != 20) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame) || frame.units(0) != kLeadMark) return;
  wire_bits bits;
  if (!readPairs(frame, 1, count, kBit, &bits)) return;

  char name[kMostNameChars + 1];
  std::snprintf(name, sizeof name, "Sony%d", count);
  const int functionBits = count == 8 ? 8 : kFunctionBits;
  const int deviceBits = count == 15 ? 8 : kDeviceBits;
  const int function = static_cast<int>(bits.lsb(0, functionBits));
  const int device = count == 8 ? -1 : static_cast<int>(bits.lsb(functionBits, deviceBits));
  const int subDevice = count == 20 ? static_cast<int>(bits.lsb(12, 8)) : -1;
  claim(name, device, subDevice, function, static_cast<int>(bits.msb(0, functionBits)));
}
