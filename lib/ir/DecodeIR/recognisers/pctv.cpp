// SPDX-License-Identifier: GPL-3.0-or-later
// PCTV.
//
// Carrier 38.4 kHz, raw levels of 832 µs (a one is a mark), least significant bit first.
//
//   <2,-8,1> DDDDDDDD FFFFFFFF <2>    gap 100 ms
//   D device, F function
//
// 29 levels in all: their number, the lead-in and the stop mark are what can be checked.
//
// Sample, D = 1, F = 2:
//   1664,6656,1664,6656,832,4992,1664
// Facts: public protocol definitions in IRP notation.
#include <cmath>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr int kDataBits = 16;
constexpr int kByte = 0xFF;
constexpr int kLead = 0b11000000001;  // mark 2, space 8, mark 1
constexpr int kLeadLevels = 11;
constexpr int kStop = 0b11;
constexpr int kStopLevels = 2;
constexpr slice_rule kRule{.unit_us = 832,
                           .longest = 1 + kDataBits + kStopLevels,
                           .tolerance = 0.2F,
                           .spread = 0.1F,
                           .lead = 2,
                           .lead_space = 8};
constexpr float kLeadUs = (kRule.lead + kRule.lead_space) * kRule.unit_us;
constexpr float kLeadToleranceUs = 0.05F * kLeadUs;
constexpr float kShortestLeadMarkUs = 1.6F * kRule.unit_us;
constexpr float kLongestLeadMarkUs = 2.9F * kRule.unit_us;

}  // namespace

void Signal::tryPCTV() {
  if (!within(kPctvBounds)) return;
  if (on(0) < kShortestLeadMarkUs || on(0) > kLongestLeadMarkUs) return;
  if (std::abs(burst(0) - kLeadUs) > kLeadToleranceUs) return;
  if (frameLength_ == 2 && on(1) >= kLongestInsideUs) {
    // Of ones alone: the receiver may have cut the last mark, which is all that the frame has.
    claim("PCTV", kByte, -1, kByte, kByte);
    return;
  }
  slicer frame;
  if (!sliceFrame(kRule, &frame)) return;
  level_reader reader(frame);
  wire_bits bits{.count = kLeadLevels + kDataBits + kStopLevels};
  reader.levels(bits.count, &bits.value);
  if (!reader.atEnd() || bits.msb(0, kLeadLevels) != kLead ||
      bits.msb(kLeadLevels + kDataBits, kStopLevels) != kStop)
    return;
  claim("PCTV", static_cast<int>(bits.lsb(kLeadLevels, 8)), -1,
        static_cast<int>(bits.lsb(kLeadLevels + 8, 8)),
        static_cast<int>(bits.msb(kLeadLevels + 8, 8)));
}
