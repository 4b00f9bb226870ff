// SPDX-License-Identifier: GPL-3.0-or-later
// MCIR-2, a keyboard with a mouse, and Nova Pace.
//
// Bi-phase, half bit 300 µs, most significant bit first; a one is a mark and a space.
//
//   MCIR-2-kbd    <9> 00100000 CCCCC 00000000 FFFFFFFF MMMMMMMM            gap 74 ms
//   MCIR-2-mouse  <9> 00001000 CCCCC yyyyyyy xxxxxxx R L FFFFF             gap 10.7 ms
//   Nova Pace     38 kHz, <1,-1> DDDDDDDDDD SSSSSSSS FFFFFFFF T 0          gap 82 ms
//   F function, M modifier keys, x and y movement, R and L buttons, D device, S subdevice, T
//   toggle; C of the keyboard: five parities of bits of F and M, what it is of the mouse nothing
//   says
//
// Sample, Nova Pace, D = 0, S = 0, F = 0, T = 0:
//   300,600,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,300,...
// Facts: public protocol definitions in IRP notation.
#include <iterator>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr bi_phase_code code(int lead, int lead_space, int bits) {
  return {.half_bit = {.unit_us = 300, .longest = lead > 2 ? lead : 2},
          .coding = bi_phase::mark_first_is_one,
          .bits = bits,
          .lead = {lead, lead_space, 0},
          .ordinary_bias = true};
}

constexpr bi_phase_code kKeyboard = code(9, 0, 37);
constexpr bi_phase_code kMouse = code(9, 0, 34);
constexpr bi_phase_code kNovaPace = code(1, 1, 28);

/// The bits of function (the higher byte) and modifier that each of the five parities covers.
constexpr unsigned kCovered[] = {0b11111000'00000000, 0b00000111'00110000, 0b11000111'10001110,
                                 0b00110110'10101101, 0b10101101'10011011};

bool parities_hold(const reading& read) {
  const unsigned key = read.get({21, 16});
  for (int i = 0; i < static_cast<int>(std::size(kCovered)); ++i) {
    if (read.get({8 + i, 1}) != static_cast<unsigned>(parity(key & kCovered[i]))) return false;
  }
  return true;
}

bool tell_movement(const reading& read, answer* found) {
  found->remark.print("C=%u, y=%u, x=%u, R=%u, L=%u", read.get({8, 5}), read.get({13, 7}),
                      read.get({20, 7}), read.get({27, 1}), read.get({28, 1}));
  return true;
}

constexpr row kRows[] = {
    {.name = "MCIR-2-kbd",
     .wire = &kKeyboard,
     .msb = true,
     .function = {21, 8},
     .constants = {{0, 8, 32}, {13, 8, 0}},
     .check_bits = 5,
     .check = parities_hold,
     .extras = {{"M=", {29, 8}}}},
    {.name = "MCIR-2-mouse",
     .wire = &kMouse,
     .msb = true,
     .function = {29, 5},
     .constants = {{0, 8, 8}},
     .finish = tell_movement},
    {.name = "Nova Pace",
     .wire = &kNovaPace,
     .msb = true,
     .device = {0, 10},
     .subdevice = {10, 8},
     .function = {18, 8},
     .constants = {{27, 1, 0}},
     .extras = {{"T=", {26, 1}}}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kMcir2Rows = kRows;

}  // namespace analysis
