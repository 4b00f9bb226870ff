// SPDX-License-Identifier: GPL-3.0-or-later
// Humax 4Phase.
//
// Carrier 56 kHz, four-phase, unit 105 µs, most significant bit first. Two bits take four units:
//   00 = <-2,2>   01 = <-3,1>   10 = <1,-3>   11 = <2,-2>
// A frame lasts 95 ms with its gap.
//
//   <2,-2> DDDDDD SSSSSS TT FFFFFFF f
//   D device, S subdevice, T 0 in the first frame and 1 in repeats, F function, f the complement of
//   F's last bit
//
// Sample, D = 0, S = 0, F = 0, T = 0:
//   210,420,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,315,105
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <cmath>
#include <iterator>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/levels.h"

namespace analysis {
namespace {

constexpr slice_rule kRule{
    .unit_us = 105, .longest = 6, .tolerance = 0.4F, .spread = 0.2F, .lead = 2};
// The unit is so short that a receiver's bias can look like one unit more or less.
constexpr float kBiases[] = {0, 0.65F, -0.65F};  // units
constexpr float kLeadMarkUs = 2 * 105;
constexpr float kLeadToleranceUs = 130;
constexpr int kSymbols = 11;
constexpr four_phase kCode{4, {0b1100, 0b1000, 0b0001, 0b0011}};
constexpr unsigned kLead = 0b0011;

/// The bits behind the lead-in; false when the frame is no whole number of symbols.
bool read_frame(const frame& seen, const slice_rule& rule, bit_buffer* bits) {
  slicer frame;
  if (!frame.slice(seen, rule)) {
    seen.refused(frame.why());
    return false;
  }
  bit_buffer levels = frame.bits();
  levels.decodeRaw((1 + kSymbols) * kCode.units);
  bits->cleanup();
  if (levels.at_end() && levels.getLsb(0, kCode.units) == kLead &&
      read_phases(levels, kCode.units, kSymbols, kCode, bits)) {
    return true;
  }
  seen.refused({reason::edge});
  return false;
}

}  // namespace

std::optional<answer> humax(const frame& seen) {
  if (std::abs(seen.on(0) - kLeadMarkUs) > kLeadToleranceUs) {
    return seen.refused(
        refusal::off(reason::lead_in, 0, seen.on(0), kLeadMarkUs, kLeadToleranceUs));
  }
  bit_buffer bits;
  if (!std::any_of(std::begin(kBiases), std::end(kBiases), [&](float bias) {
        slice_rule rule = kRule;
        rule.bias = bias;
        return read_frame(seen, rule, &bits);
      })) {
    return {};
  }
  bits.makeMsb();
  const unsigned toggle = bits.getMsb(12, 2);
  if (bits.getMsb(20, 1) == bits.getMsb(21, 1) || toggle > 1) return seen.refused({reason::check});
  const auto function = static_cast<int>(bits.getMsb(14, 7));
  answer found{"Humax 4Phase",
               static_cast<int>(bits.getMsb(0, 6)),
               static_cast<int>(bits.getMsb(6, 6)),
               function,
               {function}};
  found.aside.print("T=%u", toggle);
  found.layout.lead = 1;
  return found;
}

}  // namespace analysis
