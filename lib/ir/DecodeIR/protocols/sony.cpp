// SPDX-License-Identifier: GPL-3.0-or-later
// Sony's SIRC with 8, 12, 15 and 20 bits.
//
// Carrier 40 kHz, pulse width, unit 600 µs, least significant bit first. A zero is mark 1, space 1,
// a one mark 2, space 1; the space of the last bit lies in the gap. Frames start every 45 ms.
//
//   <4,-1> FFFFFFFF                     Sony8, the short pieces of the SonyDSP sequence
//   <4,-1> FFFFFFF DDDDD                Sony12
//   <4,-1> FFFFFFF DDDDDDDD             Sony15; SonyDSP begins with D = 36, F = 96
//   <4,-1> FFFFFFF DDDDD SSSSSSSS       Sony20
//   F function, D device, S subdevice
//
// There is no check: the lead-in, equal spaces, the exact number of bits and the gaps stand for it.
//
// Sample, Sony12, D = 1, F = 21:
//   2400,600,1200,600,600,600,1200,600,600,600,1200,600,600,600,600,600,1200,600,600,600,600,600,
//   600,600,600
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr pulse_width sony(int bits) {
  return {.units = {.unit_us = 600, .longest = 4, .lead = 4, .lead_space = 1},
          .pair = {.zero_mark = 1, .zero_space = 1, .one_mark = 2, .one_space = 1},
          .bits = bits,
          .lead = 1,
          .whole_lead = true};
}

constexpr pulse_width kSony8 = sony(8);
constexpr pulse_width kSony12 = sony(12);
constexpr pulse_width kSony15 = sony(15);
constexpr pulse_width kSony20 = sony(20);
constexpr row kRows[] = {
    {.name = "Sony8", .wire = &kSony8, .function = {0, 8}},
    {.name = "Sony12", .wire = &kSony12, .device = {7, 5}, .function = {0, 7}},
    {.name = "Sony15", .wire = &kSony15, .device = {7, 8}, .function = {0, 7}},
    {.name = "Sony20",
     .wire = &kSony20,
     .device = {7, 5},
     .subdevice = {12, 8},
     .function = {0, 7}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kSonyRows = kRows;

}  // namespace analysis
