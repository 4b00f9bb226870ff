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
constexpr float kFramesGapUs = 40000;  // a longer space parts two frames of one key press
constexpr bi_phase_code kCanalSat{
    .half_bit = {.unit_us = 250}, .coding = bi_phase::mark_first_is_one, .bits = kBits};
constexpr bi_phase_code kCanalSatLd{
    .half_bit = {.unit_us = 320}, .coding = bi_phase::mark_first_is_one, .bits = kBits};

/// Whether the frames right before this one are its like and go back to one with the toggle at
/// zero.
bool follows_start_frame(const reading& read) {
  constexpr unsigned kToggle = 1U << kToggleAt;
  const float* at = read.seen.first;
  int before = read.seen.before;
  while (before > 0) {
    int length = 1;
    while (length < before && at[-2 * length - 1] < kFramesGapUs) ++length;
    at -= 2 * length;
    before -= length;
    bit_buffer earlier;
    if (!read_bi_phase(at, 2 * length - 1, *read.from->wire.phase(), &earlier) ||
        ((earlier.getLsb(0, kBits) ^ read.bits.getLsb(0, kBits)) & ~kToggle) != 0) {
      return false;
    }
    if (earlier.getBit(kToggleAt) == 0) return true;
  }
  return false;
}

bool tell_start(const reading& read, answer* found) {
  if (read.bits.getBit(kToggleAt) != 0 && !follows_start_frame(read)) {
    found->remark = "no start frame";
  }
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
     .finish = tell_start},
    {.name = "CanalSatLD",
     .wire = &kCanalSatLd,
     .msb = true,
     .device = {1, 7},
     .subdevice = {8, 6},
     .function = {16, 6},
     .constants = {{0, 1, 1}, {kZeroAt, 1, 0}},
     .mirrors = {{21, 22, 1}},
     .finish = tell_start},
};
static_assert(are_sound(kRows));

}  // namespace

std::optional<answer> canalsat(const frame& seen) {
  return read_rows(kRows, seen);
}

}  // namespace analysis
