// SPDX-License-Identifier: GPL-3.0-or-later
// Grundig16.
//
// Carrier 35.7 kHz (Grundig16-30: 30.3 kHz), pulse position, unit 578 µs, most significant bit
// first. Two bits are sent in six units:
//   00 = <-4,2>   01 = <-3,1,-1,1>   10 = <-2,1,-2,1>   11 = <-1,1,-3,1>
//
//   <806us,-2960us,1346us> T FFFFFFFF DDDDDDD    gap 100 units
//   T toggle, F function, D device
//
// Sample, D = 0, F = 0, T = 0:
//   806,2960,1346,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <cmath>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/levels.h"
#include "lib/ir/receiver.h"

namespace analysis {
namespace {

constexpr slice_rule kRule{.unit_us = 578, .longest = 4};
constexpr float kLeadUs[] = {806, 2960, 1346};
constexpr float kLeadToleranceUs = 0.35F * 578;
constexpr float kSettlingUs = receiver::settling(806, 2960);  // may make the first mark longer
constexpr int kSymbols = 8;
constexpr four_phase kCode{6, {0b110000, 0b101000, 0b100100, 0b100010}};

bool lead_fits(const frame& seen) {
  // While the receiver's gain settles the first mark grows at the cost of its space.
  const float later = std::clamp(seen.on(0) - kLeadUs[0], 0.0F, kSettlingUs);
  return std::abs(seen.on(0) - later - kLeadUs[0]) <= kLeadToleranceUs &&
         std::abs(seen.off(0) + later - kLeadUs[1]) <= kLeadToleranceUs &&
         std::abs(seen.on(1) - kLeadUs[2]) <= kLeadToleranceUs;
}

}  // namespace

std::optional<answer> grundig16(const frame& seen) {
  // The body begins behind the second mark, which is no whole number of units.
  slicer frame;
  if (!lead_fits(seen)) {
    return seen.refused(refusal::off(reason::lead_in, 0, seen.on(0), kLeadUs[0], kLeadToleranceUs));
  }
  if (!frame.slice(seen.first + 2, seen.durations() - 2, kRule)) return seen.refused(frame.why());
  bit_buffer levels = frame.bits();
  levels.skip_to(1);
  levels.decodeRaw(kSymbols * kCode.units);
  bit_buffer bits;
  if (!levels.at_end() || !read_phases(levels, 0, kSymbols, kCode, &bits)) {
    return seen.refused({reason::edge});
  }
  bits.makeMsb();
  const auto function = static_cast<int>(bits.getMsb(1, 8));
  answer found{"Grundig16", static_cast<int>(bits.getMsb(9, 7)), -1, function, {function}};
  found.remark.print("T=%u", bits.getMsb(0, 1));
  found.layout.lead = 1;
  return found;
}

}  // namespace analysis
