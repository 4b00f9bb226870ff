// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/protocols/double_pulse.h"

#include "lib/ir/DecodeIR/readers/expected_frame.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 600;
constexpr float kLongMarkUs = 1.5F * kUnitUs;    // marks are rather lengthened ...
constexpr float kLongSpaceUs = 1.42F * kUnitUs;  // ... and spaces shortened
constexpr float kLongestUs = 2.5F * kUnitUs;
constexpr fit_rule kFit{.tolerance_us = 120};

}  // namespace

bool has_double_pulses(const frame& seen) {
  return seen.off_times.largest <= kLongestUs && seen.on_times.second <= kLongestUs;
}

bool is_long_space(float us) {
  return us > kLongSpaceUs;
}

bit_buffer read_double_pulses(const frame& seen, int count) {
  bit_buffer symbols;
  for (int i = 1; i <= count; ++i) {
    symbols.append(seen.on(i) > kLongMarkUs);
    symbols.append(is_long_space(seen.off(i)));
  }
  return symbols;
}

bool double_pulses_fit(const frame& seen, const bit_buffer& symbols, float lead_mark,
                       float lead_space, float unit) {
  const auto units = [&](int bit) { return symbols.getBit(bit) != 0 ? 2 * unit : unit; };
  expected_frame expected;
  expected.mark(lead_mark);
  expected.space(lead_space);
  for (int bit = 0; bit < symbols.size(); bit += 2) {
    expected.mark(units(bit));
    expected.space(units(bit + 1));
  }
  expected.mark(unit);
  return expected.fits(seen, kFit);
}

}  // namespace analysis
