// SPDX-License-Identifier: GPL-3.0-or-later
// Sunfire, and Rs200's switched sockets.
//
// Carrier 38 kHz, pulse width, unit 558 µs, most significant bit first; a zero is mark 1, space 1,
// a one mark 3, space 1; the space of the last bit lies in the gap of 33 units.
//
//   <16,-8> DDDD FFFFFFFF dddd ffffffff
//   D device, F function, d and f their complements
//
// Rs200: carrier 35.7 kHz, pulse width, most significant bit first; a zero is mark 1400, space
// 3360 µs, a one mark 588, space 3360 µs; gap 32.5 ms.
//
//   011001 HHHHHHHH P DDD FF 00 CCCC
//   H four house dials, P parity of D and F, D device less one, F function, C the sum of 9 and of
//   the nibbles H, H, PD and F x 4
//
// Sample of Sunfire, D = 1, F = 2:
//   8928,4464,558,558,558,558,558,558,1674,558,558,558,558,558,558,558,558,558,558,558,558,558,
//   1674,558,558,558,1674,558,1674,558,1674,558,558,558,1674,558,1674,558,1674,558,1674,558,1674,
//   558,1674,558,558,558,1674
// Facts: public protocol definitions in IRP notation.
#include <cstddef>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr int kLeadMark = 16;
constexpr int kLeadSpace = 8;
constexpr slice_rule kRule{
    .unit_us = 558, .longest = kLeadMark, .lead = kLeadMark, .lead_space = kLeadSpace};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 1, .one_mark = 3, .one_space = 1};
constexpr int kHalfBits = 12;

constexpr int kRsBits = 26;
constexpr float kRsSpaceUs = 3360;
constexpr float kRsToleranceUs = 400;
constexpr float kRsLongestOneUs = 1000;
constexpr unsigned kRsHead = 25;
constexpr unsigned kRsSumStart = 9;

struct rs200_code {
  int device, house, function;
};

/// Reads 26 bursts whose spaces are all alike; false when a check fails.
bool readRs200(const float* frame, rs200_code* code) {
  wire_bits bits;
  for (int i = 0; i < kRsBits; ++i) {
    const float mark = frame[2 * static_cast<ptrdiff_t>(i)];
    if (mark > 2 * kRsLongestOneUs) return false;
    bits.append(mark < kRsLongestOneUs);
  }
  const unsigned device = bits.msb(15, 3);
  const unsigned function = bits.msb(18, 2);
  const unsigned sum =
      kRsSumStart + bits.msb(6, 4) + bits.msb(10, 4) + bits.msb(14, 4) + 4 * function;
  *code = {static_cast<int>(device) + 1, static_cast<int>(bits.msb(6, 8)),
           static_cast<int>(function)};
  return bits.msb(0, 6) == kRsHead && bits.msb(20, 2) == 0 && bits.msb(22, 4) == (sum & 0xF) &&
         parity(bits.msb(14, 6)) == 1;
}

}  // namespace

void Signal::trySunfire() {
  if (!within(kSunfireBounds)) return;
  if (frameLength_ == kRsBits) {
    rs200_code code;
    if (setOff_.smallest >= kRsSpaceUs - kRsToleranceUs &&
        setOff_.largest <= kRsSpaceUs + kRsToleranceUs && readRs200(frame_, &code))
      claim("Rs200", code.device, code.house, code.function, code.function);
    return;
  }
  slicer frame;
  wire_bits bits;
  if (!sliceFrame(kRule, &frame)) return;
  if (!readPairs(frame, 1, 2 * kHalfBits, kBit, &bits)) return;
  if ((bits.msb(0, kHalfBits) ^ bits.msb(kHalfBits, kHalfBits)) != 0xFFF) return;
  const int function = static_cast<int>(bits.msb(4, 8));
  claim("Sunfire", static_cast<int>(bits.msb(0, 4)), -1, function, function);
}
