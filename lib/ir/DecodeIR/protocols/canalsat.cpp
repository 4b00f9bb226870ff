// SPDX-License-Identifier: GPL-3.0-or-later
// CanalSat and CanalSatLD.
//
// Bi-phase, most significant bit first, a one is a mark and a space; a start bit of one.
//
//   CanalSat    55.5 kHz, half bit 250 µs:  1 DDDDDDD SSSSSS T 0 FFFFFFF     gap 89 ms
//   CanalSatLD  56 kHz, half bit 320 µs:    1 DDDDDDD SSSSSS T 0 FFFFFF f    gap 85 ms
//   D device, S subdevice, T toggle, F function, f the complement of F's last bit
//
// The toggle is zero in the first frame of a key press and one in its repeats, so a press caught
// late shows "no start frame".
//
// Sample, CanalSat, D = 0, S = 0, F = 0, T = 0:
//   250,500,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,
//   250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr int kBits = 23;  // with the start bit
constexpr int kToggleAt = 14;
constexpr int kZeroAt = 15;
constexpr bi_phase_code kCanalSat{
    .half_bit = {.unit_us = 250}, .coding = bi_phase::mark_first_is_one, .bits = kBits};
constexpr bi_phase_code kCanalSatLd{
    .half_bit = {.unit_us = 320}, .coding = bi_phase::mark_first_is_one, .bits = kBits};

void tell_start(const press& whole, answer* found) {
  if (!whole.has_first) found->remark = "no start frame";
}

bool note_part(const reading& read, answer* found) {
  found->part = read.bits.getBit(kToggleAt) == 0 ? press_part::first : press_part::middle;
  found->tell_press = tell_start;
  return true;
}

constexpr row kRows[] = {
    {.name = "CanalSat",
     .wire = &kCanalSat,
     .msb = true,
     .device = {1, 7},
     .subdevice = {8, 6},
     .function = {16, 7},
     .constants = {{0, 1, 1}, {kZeroAt, 1, 0}},
     .finish = note_part},
    {.name = "CanalSatLD",
     .wire = &kCanalSatLd,
     .msb = true,
     .device = {1, 7},
     .subdevice = {8, 6},
     .function = {16, 6},
     .constants = {{0, 1, 1}, {kZeroAt, 1, 0}},
     .mirrors = {{21, 22, 1}},
     .finish = note_part},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kCanalSatRows = kRows;

}  // namespace analysis
