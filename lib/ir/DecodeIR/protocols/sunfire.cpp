// SPDX-License-Identifier: GPL-3.0-or-later
// Sunfire.
//
// Carrier 38 kHz, pulse width, unit 558 µs, most significant bit first; a zero is mark 1, space 1,
// a one mark 3, space 1; the space of the last bit lies in the gap of 33 units.
//
//   <16,-8> DDDD FFFFFFFF dddd ffffffff
//   D device, F function, d and f their complements
//
// Sample, D = 1, F = 2:
//   8928,4464,558,558,558,558,558,558,1674,558,558,558,558,558,558,558,558,558,558,558,558,558,
//   1674,558,558,558,1674,558,1674,558,1674,558,558,558,1674,558,1674,558,1674,558,1674,558,1674,
//   558,1674,558,558,558,1674
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr pulse_width kWire{
    .units = {.unit_us = 558, .longest = 16, .lead = 16, .lead_space = 8},
    .pair = {.zero_mark = 1, .zero_space = 1, .one_mark = 3, .one_space = 1},
    .bits = 24,
    .lead = 1};
constexpr row kRows[] = {
    {.name = "Sunfire",
     .wire = &kWire,
     .msb = true,
     .device = {0, 4},
     .function = {4, 8},
     .mirrors = {{0, 12, 12}}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kSunfireRows = kRows;

}  // namespace analysis
