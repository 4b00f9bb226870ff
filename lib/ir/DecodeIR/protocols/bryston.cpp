// SPDX-License-Identifier: GPL-3.0-or-later
// Bryston.
//
// Carrier 38 kHz, pulse width, unit 315 µs, least significant bit first; a zero is mark 1, space 6,
// a one mark 6, space 1; the space of the last bit lies in the gap of 18 ms.
//
//   DDDDDDDDDD FFFFFFFF
//   D device, F function
//
// There is no check: bursts of one length, their number and the gaps stand for it.
//
// Sample, D = 1, F = 2:
//   1890,315,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,1890,315,
//   1890,1890,315,315,1890,315,1890,315,1890,315,1890,315,1890,315
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr pulse_width kWire{
    // The other pair is five units away, so a duration of six may be off by half a unit.
    .units = {.unit_us = 315, .longest = 6, .tolerance = 0.5F, .spread = 0.25F},
    .pair = {.zero_mark = 1, .zero_space = 6, .one_mark = 6, .one_space = 1},
    .bits = 18};
constexpr row kRows[] = {
    {.name = "Bryston", .wire = &kWire, .device = {0, 10}, .function = {10, 8}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kBrystonRows = kRows;

}  // namespace analysis
