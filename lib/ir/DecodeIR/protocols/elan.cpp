// SPDX-License-Identifier: GPL-3.0-or-later
// Elan: two halves, each with a lead-in of its own.
//
// Not modulated, pulse distance, unit 398 µs, most significant bit first; a zero is mark 1, space
// 1, a one mark 1, space 2; a second lead-in stands in the middle. A frame lasts 50 ms with its
// gap.
//
//   <3,-2> DDDDDDDD dddddddd <2,-2> FFFFFFFF ffffffff <1>
//   D device, F function, d and f their complements
//
// Sample, D = 0, F = 0:
//   1194,796,398,398,398,398,398,398,398,398,398,398,398,398,398,398,398,398,398,796,398,796,398,
//   796,398,796,398,796,398,796,398,796,398,796,796,796,398,398,398,398,398,398,398,398,398,398,
//   398,398,398,398,398,398,398,796,398,796,398,796,398,796,398,796,398,796,398,796,398,796,398
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/pulse_width.h"

namespace analysis {
namespace {

constexpr slice_rule kRule{.unit_us = 398, .longest = 3, .lead = 3, .lead_space = 2};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 1, .one_mark = 1, .one_space = 2};
constexpr int kHalf = 16;           // bits before and after the second lead-in
constexpr int kMiddle = 1 + kHalf;  // its burst
constexpr int kBursts = 2 * (1 + kHalf) + 1;

/// Whether the second byte from bit `first` on is the complement of the first.
bool complements(const bit_buffer& bits, int first) {
  return (bits.getMsb(first, 8) ^ bits.getMsb(first + 8, 8)) == 0xFF;
}

}  // namespace

std::optional<answer> elan(const frame& seen) {
  slicer frame;
  if (seen.length != kBursts) return {};
  if (!frame.slice(seen, kRule)) return seen.refused(frame.why());
  if (frame.units(2 * kMiddle) != 2 || frame.units(2 * kMiddle + 1) != 2) {
    return seen.refused({reason::split, kMiddle, seen.burst(kMiddle)});
  }
  bit_buffer bits;
  if (!read_pairs(frame, 1, kHalf, kBit, &bits) ||
      !read_pairs(frame, kMiddle + 1, kHalf, kBit, &bits)) {
    return seen.refused({reason::symbol});
  }
  bits.makeMsb();
  if (!complements(bits, 0) || !complements(bits, kHalf)) return seen.refused({reason::check});
  const auto function = static_cast<int>(bits.getMsb(kHalf, 8));
  return answer{.name = "Elan",
                .device = static_cast<int>(bits.getMsb(0, 8)),
                .function = function,
                .hex = {function},
                .layout = {.lead = 1, .split = kMiddle, .stop = true}};
}

}  // namespace analysis
