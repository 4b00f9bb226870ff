// SPDX-License-Identifier: GPL-3.0-or-later
// Ad Notam and RTI_Relay.
//
// Bi-phase, most significant bit first; a zero is a mark and a space, a one a space and a mark.
//
//   Ad Notam   35.7 kHz, half bit 895 µs, a frame lasts 114 ms:  <1,-2,1> DDDDDD FFFFFF
//   RTI_Relay  40.2 kHz, half bit 398 µs, gap 19.5 ms:
//              <1> 7FE08080(31) F FFFFFFFF DDDDDDDD(23) DDDDDDDD 0000
//   D device, F function (of RTI_Relay 0 or 1, both times)
//
// Sample, D = 0, F = 0:
//   895,1790,1790,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,
//   895,895
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr bi_phase_code kAdNotam{.half_bit = {.unit_us = 895, .lead = 1, .lead_space = 2},
                                 .coding = bi_phase::space_first_is_one,
                                 .bits = 12,
                                 .lead = {1, 2, 1}};
constexpr bi_phase_code kRelay{.half_bit = {.unit_us = 398},
                               .coding = bi_phase::space_first_is_one,
                               .bits = 31 + 1 + 8 + 23 + 8 + 4,
                               .lead = {1, 0, 0}};

/// The function is sent as 1 and 8 bits, the device as 23 and 8.
bool sends_both_twice(const reading& read) {
  return read.get({31, 1}) == read.get({32, 8}) && read.get({40, 23}) == read.get({63, 8});
}

constexpr row kRows[] = {
    {.name = "Ad Notam", .wire = &kAdNotam, .msb = true, .device = {0, 6}, .function = {6, 6}},
    {.name = "RTI_Relay",
     .wire = &kRelay,
     .msb = true,
     .device = {63, 8},
     .function = {32, 8},
     .constants = {{0, 31, 0x7FE08080}, {71, 4, 0}},
     .check_bits = 1 + 23,
     .check = sends_both_twice},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kAdNotamRows = kRows;

}  // namespace analysis
