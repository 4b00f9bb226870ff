// SPDX-License-Identifier: GPL-3.0-or-later
// Sejin-1: infrared keyboards; pulse position, two bits tell in which quarter of a symbol the mark
// lies.
//
// Modulation: 38.8 or 56.3 kHz, unit 310 µs; 0 = mark in the first of four units .. 3 = in the last
// Frame: lead-in mark of 3 units, a symbol 3, sixteen symbols; gap 77 units
// Layout (one letter per bit, most significant first): DDDDDDDD FFFFFFFF SSSSSSSS EEEE CCCC
// Checks: one mark per symbol; C = sum of all nibbles before it, modulo 16
// The pointer devices of the family (Sejin-2) send the same frame; how they divide it is not
// public, so they are told by the numbers of Sejin-1.
// Sample (device 0, function 0, subdevice 0), µs:
//   930,930,620,930,310,930,310,930,310,930,310,930,310,930,310,930,310,930,310,930,310,930,310,
//   930,310,930,310,930,310,930,310,930,310
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <array>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/levels.h"

namespace analysis {
namespace {

constexpr int kLeadUnits = 3;
constexpr slice_rule kSlot{.unit_us = 310,
                           .longest = 6,
                           .clock_error = 0.06F,
                           .lead = kLeadUnits,
                           .lead_space = kLeadUnits};
constexpr four_phase kCode{4, {0b0001, 0b0010, 0b0100, 0b1000}};
constexpr unsigned kLead = 0b1000111;  // the mark and the symbol 3
constexpr int kLeadLevels = kLeadUnits + kCode.units;
constexpr int kSymbols = 16;
constexpr int kMostUnits = kLeadLevels + kCode.units * kSymbols;
constexpr float kShortestUs = 0.93F * (kMostUnits - 3) * kSlot.unit_us;
constexpr float kLongestUs = 1.07F * kMostUnits * kSlot.unit_us;
constexpr int k56kHz = 47000;  // between the two carriers

}  // namespace

std::optional<answer> sejin(const frame& seen) {
  if (seen.total_us < kShortestUs || seen.total_us > kLongestUs) {
    return seen.refused({reason::length, -1, seen.total_us, kShortestUs, kLongestUs});
  }
  slicer frame;
  if (!frame.slice(seen, kSlot)) return seen.refused(frame.why());
  if (!frame.has_ordinary_bias(kSlot)) return seen.refused({reason::bias, -1, frame.bias()});
  bit_buffer levels = frame.bits();
  levels.decodeRaw(kMostUnits);
  bit_buffer bits;
  if (!levels.at_end() || levels.getLsb(0, kLeadLevels) != kLead ||
      !read_phases(levels, kLeadLevels, kSymbols, kCode, &bits)) {
    return seen.refused({reason::edge});
  }
  bits.makeMsb();
  unsigned sum = 0;
  for (int nibble = 0; nibble < 28; nibble += 4) sum += bits.getMsb(nibble, 4);
  if (sum % 16 != bits.getMsb(28, 4)) return seen.refused({reason::check});
  const auto function = static_cast<int>(bits.getMsb(8, 8));
  answer found{seen.carrier_hz >= k56kHz ? "Sejin-1-56" : "Sejin-1-38",
               static_cast<int>(bits.getMsb(0, 8)),
               static_cast<int>(bits.getMsb(16, 8)),
               function,
               {function}};
  found.remark.print("E = %u", bits.getMsb(24, 4));
  found.layout.lead = 1;
  return found;
}

}  // namespace analysis
