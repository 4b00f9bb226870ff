// SPDX-License-Identifier: GPL-3.0-or-later
// GXB.
//
// Carrier 38.3 kHz, pulse width, unit 520 µs, most significant bit first; a zero is mark 1, space
// 3, a one mark 3, space 1. A frame lasts 100 ms with its gap.
//
//   <1,-1> DDDD FFFFFFFF P <1>
//   D device, F function, P odd parity of F
//
// The name carries the twelve bits and the parity bit.
//
// Sample, D = 1, F = 3, P = 1:
//   520,520,520,1560,520,1560,520,1560,1560,520,520,1560,520,1560,520,1560,520,1560,520,1560,520,
//   1560,1560,520,1560,520,1560,520,520
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr pulse_width kWire{
    .units = {.unit_us = 520, .longest = 3, .lead = 1, .lead_space = 1},
    .pair = {.zero_mark = 1, .zero_space = 3, .one_mark = 3, .one_space = 1},
    .bits = 13,
    .lead = 1,
    .whole_lead = true,
    .stop = true};

bool has_odd_parity(const reading& read) {
  return parity(read.get({4, 9})) == 1;
}

bool name_by_bits(const reading& read, answer* found) {
  found->name.print("-%03X.%u", read.get({0, 12}), read.get({12, 1}));
  return true;
}

constexpr row kRows[] = {
    {.name = "GXB",
     .wire = &kWire,
     .msb = true,
     .device = {0, 4},
     .function = {4, 8},
     .check_bits = 1,
     .check = has_odd_parity,
     .finish = name_by_bits},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kGxbRows = kRows;

}  // namespace analysis
