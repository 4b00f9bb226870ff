// SPDX-License-Identifier: GPL-3.0-or-later
// DirecTV: two bits per burst, one in the length of the mark and one in that of the space.
//
// Modulation: 38, 40 or 57 kHz, unit 600 µs; 0 = 1,-1  1 = 1,-2  2 = 2,-1  3 = 2,-2
// Frame: lead-in 10,-2 in the first frame of a press and 5,-2 in its repeats, eight symbols, stop
//   mark; gap 15 units (9 ms) or 50 units (30 ms)
// Layout (one letter per bit, most significant first): DDDDFFFF FFFFCCCC
// Check: C = 7 x F7F6 + 5 x F5F4 + 3 x F3F2 + F1F0, modulo 16
// "Parm" is the variant P0 to P5: carrier (40, 38, 57 kHz) and gap (short, long). It is only known
// when a gap follows that is not the end of the signal, so the first frame of a press tells it.
// Sample (device 12, function 3):
//   6000,1200,1200,1200,600,600,600,600,600,600,600,600,1200,1200,600,600,1200,1200,600
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/double_pulse.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 600;
constexpr float kRepeatLeadMaxUs = 7.5F * kUnitUs;
constexpr float kLeadMinUs = 3.5F * kUnitUs;
constexpr float kLeadMaxUs = 13 * kUnitUs;
constexpr float kFirstLeadUs = 10 * kUnitUs;
constexpr float kRepeatLeadUs = 5 * kUnitUs;
constexpr float kLeadSpaceUs = 2 * kUnitUs;
constexpr float kShortestLead = 0.88F;  // of the lead-in's burst; Sony's has 0.83
constexpr int kSymbols = 8;
constexpr int kBursts = kSymbols + 2;

constexpr float kLongGapUs = 19500;  // between 9 and 30 ms
constexpr float kNoGapUs = 900000;   // the end of the signal
constexpr int k57Hz = 48500;         // between the carriers
constexpr int k40Hz = 39000;

unsigned check(unsigned function) {
  return (7 * (function >> 6) + 5 * (function >> 4 & 3) + 3 * (function >> 2 & 3) +
          (function & 3)) %
         16;
}

int parm(int carrier, float gap) {
  const int pair = carrier >= k57Hz ? 4 : carrier >= k40Hz ? 0 : 2;
  return pair + (gap > kLongGapUs ? 1 : 0);
}

}  // namespace

std::optional<answer> directv(const frame& seen) {
  if (seen.length != kBursts || !has_double_pulses(seen)) return {};
  if (seen.on(0) < kLeadMinUs || seen.on(0) > kLeadMaxUs) return {};
  const float lead = seen.on(0) < kRepeatLeadMaxUs ? kRepeatLeadUs : kFirstLeadUs;
  if (seen.burst(0) < kShortestLead * (lead + kLeadSpaceUs)) return {};
  bit_buffer bits = read_double_pulses(seen, kSymbols);
  if (!double_pulses_fit(seen, bits, lead, kLeadSpaceUs, kUnitUs)) return {};
  bits.makeMsb();
  const unsigned code = bits.getMsb(4, 8);
  if (bits.getMsb(12, 4) != check(code)) return {};
  const auto function = static_cast<int>(code);
  answer found{"DirecTV", static_cast<int>(bits.getMsb(0, 4)), -1, function, {function}};
  if (seen.trailing_gap < kNoGapUs) {
    found.aside.print("Parm = %d", parm(seen.carrier_hz, seen.trailing_gap));
  }
  found.layout = {.lead = 1, .stop = true, .bits_per_burst = 2};
  return found;
}

}  // namespace analysis
