// SPDX-License-Identifier: GPL-3.0-or-later
// Xiaomi: two bits in the length of a burst.
//
// Modulation: 36 kHz, unit 290 µs; 0 = 2,-2  1 = 2,-3  2 = 2,-4  3 = 2,-5
// Frame: lead-in 1000 µs, -2, ten symbols, stop mark 2; frames 30 ms apart
// Layout (most significant first): DDDDDDDD FFFFFFFF CCCC, C = exclusive-or of the four nibbles
// Sample (device 154, function 66), µs:
//   1000,580,580,1160,580,870,580,1160,580,1160,580,870,580,580,580,580,580,1160,580,870,580,870,
//   580
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/pair_code.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 290;
constexpr pair_code kXiaomi{.symbols = {.base_us = 4 * kUnitUs, .step_us = kUnitUs, .most = 3},
                            .lead_mark_us = 1000,
                            .lead_space_us = 2 * kUnitUs,
                            .mark_us = 2 * kUnitUs};
constexpr int kBursts = 10 + 2;

}  // namespace

std::optional<answer> xiaomi(const frame& seen) {
  bit_buffer bits;
  if (seen.length != kBursts || !read_pair_code(seen, kXiaomi, &bits)) return {};
  unsigned sum = 0;
  for (int nibble = 0; nibble < 20; nibble += 4) sum ^= bits.getMsb(nibble, 4);
  if (sum != 0) return {};
  const auto function = static_cast<int>(bits.getMsb(8, 8));
  return answer{.name = "Xiaomi",
                .device = static_cast<int>(bits.getMsb(0, 8)),
                .function = function,
                .hex = {function},
                .layout = {.lead = 1, .stop = true, .bits_per_burst = 2}};
}

}  // namespace analysis
