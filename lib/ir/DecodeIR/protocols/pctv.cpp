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

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/units.h"

namespace analysis {
namespace {

constexpr int kDataBits = 16;
constexpr int kByte = 0xFF;
constexpr unsigned kLead = 0b11000000001;  // mark 2, space 8, mark 1
constexpr int kLeadLevels = 11;
constexpr unsigned kStop = 0b11;
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
constexpr float kOnesErrorUs = 350;  // a clock of 1 or 2 %, and the bias
constexpr float kOnesUs = kRule.longest * kRule.unit_us;

/// Whether a mark behind the lead-in is that of ones alone, which a receiver may have cut. It is
/// all that the frame has, so the lead-in must be the right one.
bool are_ones(const frame& seen) {
  return seen.on(1) >= frame::kLongestInsideUs && seen.on(1) <= kOnesUs + kOnesErrorUs &&
         std::abs(seen.on(0) - kRule.lead * kRule.unit_us) <= kOnesErrorUs;
}

}  // namespace

std::optional<answer> pctv(const frame& seen) {
  if (seen.on(0) < kShortestLeadMarkUs || seen.on(0) > kLongestLeadMarkUs) return {};
  if (std::abs(seen.burst(0) - kLeadUs) > kLeadToleranceUs) return {};
  answer found{"PCTV", kByte, -1, kByte, {kByte}};
  found.layout.lead = 1;
  if (seen.length == 2 && are_ones(seen)) return found;
  slicer frame;
  if (!frame.slice(seen, kRule)) return seen.refused(frame.why());
  bit_buffer bits = frame.bits();
  bits.decodeRaw(kLeadLevels + kDataBits + kStopLevels);
  if (!bits.at_end() || msb(bits.getLsb(0, kLeadLevels), kLeadLevels) != kLead ||
      bits.getLsb(kLeadLevels + kDataBits, kStopLevels) != kStop) {
    return seen.refused({reason::edge});
  }
  found.device = bits.lsb_number(kLeadLevels, 8);
  found.function = bits.lsb_number(kLeadLevels + 8, 8);
  found.hex.first = bits.msb_number(kLeadLevels + 8, 8);
  return found;
}

}  // namespace analysis
