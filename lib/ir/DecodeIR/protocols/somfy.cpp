// SPDX-License-Identifier: GPL-3.0-or-later
// Somfy: a pulse-width code whose bursts are all equally long.
//
// Modulation: 35.7 kHz; 0 = mark 308, space 881 µs; 1 = mark 669, space 520 µs
// Frame: lead-in 2072,-484, nine bits, gap 2300 µs behind the space of the last bit
// Layout (one letter per bit, least significant first): FF DDD CCCC
// Check: C = 4 F + D + 3, modulo 16
// Sample (device 2, function 1), µs:
//   2072,484,669,520,308,881,308,881,669,520,308,881,669,520,308,881,308,881,669
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/expected_frame.h"

namespace analysis {
namespace {

constexpr float kZeroMarkUs = 308;
constexpr float kOneMarkUs = 669;
constexpr float kBurstUs = 1189;
constexpr float kLeadMarkUs = 2072;
constexpr float kLeadSpaceUs = 484;
constexpr float kBetweenMarksUs = 530;  // marks are rather lengthened
constexpr int kBits = 9;
constexpr fit_rule kFit{.tolerance_us = 80, .checked = true};

bool fits(const frame& seen, const bit_buffer& bits) {
  expected_frame expected;
  expected.mark(kLeadMarkUs);
  expected.space(kLeadSpaceUs);
  for (int i = 0; i < kBits; ++i) {
    const float mark = bits.getBit(i) != 0 ? kOneMarkUs : kZeroMarkUs;
    expected.mark(mark);
    expected.space(kBurstUs - mark);
  }
  return expected.fits(seen, kFit);
}

}  // namespace

std::optional<answer> somfy(const frame& seen) {
  if (seen.on(0) < 0.8F * kLeadMarkUs || seen.on(0) > 1.25F * kLeadMarkUs) {
    return seen.refused({reason::lead_in, 0, seen.on(0), 0.8F * kLeadMarkUs, 1.25F * kLeadMarkUs});
  }
  if (seen.off_times.largest > kBurstUs) return {};
  bit_buffer bits(seen.first, 2 * seen.length);
  bits.threshold = kBetweenMarksUs;
  bits.skip_to(2);
  bits.decodeX(kBits);
  const unsigned function = bits.getLsb(0, 2);
  const unsigned device = bits.getLsb(2, 3);
  if (bits.getLsb(5, 4) != (4 * function + device + 3) % 16) return seen.refused({reason::check});
  if (!fits(seen, bits)) return {};
  return answer{.name = "Somfy",
                .device = bits.lsb_number(2, 3),
                .function = bits.lsb_number(0, 2),
                .hex = {bits.msb_number(0, 2)},
                .layout = {.lead = 1}};
}

}  // namespace analysis
