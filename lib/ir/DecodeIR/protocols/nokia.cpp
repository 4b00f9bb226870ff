// SPDX-License-Identifier: GPL-3.0-or-later
// Nokia12, Nokia (24 bits) and Nokia32: two bits in the length of a burst.
//
// Modulation: 36 kHz, unit one carrier period (27.8 µs); 0 = 6,-10  1 = 6,-16  2 = 6,-22  3 = 6,-28
// Frame: lead-in 15,-10, six, twelve or sixteen symbols, stop mark 6; frames 100 ms apart
// Layout (one letter per bit, most significant first):
//   Nokia12  DDDD FFFFFFFF
//   Nokia    DDDDDDDD SSSSSSSS FFFFFFFF
//   Nokia32  DDDDDDDD SSSSSSSS T XXXXXXX FFFFFFFF      T: toggle
// Checks: none but lead-in, symbols and their number.
// Sample (Nokia12, device 8, function 65), µs:
//   417,278,167,611,167,278,167,444,167,278,167,278,167,444,167
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/pair_code.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr float kPeriodUs = 1000.0F / 36;
constexpr pair_code kNokia{
    .symbols = {.base_us = 16 * kPeriodUs, .step_us = 6 * kPeriodUs, .most = 3},
    .lead_mark_us = 15 * kPeriodUs,
    .lead_space_us = 10 * kPeriodUs,
    .mark_us = 6 * kPeriodUs};
constexpr int kNokia12Bits = 12;
constexpr int kNokiaBits = 24;
constexpr int kNokia32Bits = 32;

}  // namespace

std::optional<answer> nokia(const frame& seen) {
  const int count = 2 * (seen.length - 2);
  if (count != kNokia12Bits && count != kNokiaBits && count != kNokia32Bits) return {};
  bit_buffer bits;
  if (!read_pair_code(seen, kNokia, &bits)) return {};
  const auto number = [&](int first, int width) {
    return static_cast<int>(bits.getMsb(first, width));
  };
  const int function = number(count - 8, 8);
  answer found{.function = function,
               .hex = {function},
               .layout = {.lead = 1, .stop = true, .bits_per_burst = 2}};
  if (count == kNokia12Bits) {
    found.name = "Nokia12";
    found.device = number(0, 4);
    return found;
  }
  found.name = count == kNokiaBits ? "Nokia" : "Nokia32";
  found.device = number(0, 8);
  found.subdevice = number(8, 8);
  if (count == kNokia32Bits) found.remark.print("X=%d T=%d", number(17, 7), number(16, 1));
  return found;
}

}  // namespace analysis
