// SPDX-License-Identifier: GPL-3.0-or-later
// TDC, OrtekMCE, Amino and Zaptor: bi-phase codes with lead-ins of their own.
//
//              carrier      half bit  lead-in  bits  a one is      gap
//   TDC-38     38 kHz       315 µs    1,-1     17    mark, space   89 ms
//   TDC-56     56.3 kHz     213 µs    1,-1     17    mark, space   89 ms
//   OrtekMCE   38.6 kHz     480 µs    4,-1     17    space, mark   48 ms
//   Amino      37.3, 56 kHz 268 µs    7,-6,3   32    mark, space   79 ms
//   Zaptor     36, 56 kHz   330 µs    8,-6,2   32    mark, space   74 ms
// Layout (one letter per bit, in the order sent; most significant first, OrtekMCE least):
//   TDC        DDDDD SSSSS FFFFFFF
//   OrtekMCE   DDDDD PP FFFFFF CCCC                     P: 0 first, 1 middle, 2 last frame
//   Amino      DDDD 1 T 01 00000000 FFFFFFFF 1111 CCCC  T: 1 in the first frame of a press
//   Zaptor     DDDDDDDD T SSSSSSS FFFFFFFF EEEE CCCC    T: 1 in the last frame of a press
// Checks: an edge in the middle of each bit, the number of bits, the fixed bits; C of OrtekMCE is
//   3 + the one bits of D, P and F, of Amino and Zaptor the sum of the nibbles before it.
// Sample (OrtekMCE, device 0, P 0, function 0), µs:
//   1920,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,
//   480,480,480,480,960,480,480,960,480,480
// Facts: public protocol definitions in IRP notation.
#include <bit>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr int k56kHz = 47000;  // between the carriers of a pair
constexpr float kClockError = 0.06F;

constexpr bi_phase_code code(float half_bit_us, int longest, int lead_space,
                             std::array<int, 3> lead, int bits, bi_phase coding) {
  return {.half_bit = {.unit_us = half_bit_us,
                       .longest = longest,
                       .clock_error = kClockError,
                       .lead = lead[0],
                       .lead_space = lead_space},
          .coding = coding,
          .bits = bits,
          .lead = lead,
          .ordinary_bias = true,
          .length_error = kClockError};
}

constexpr auto kMarkFirst = bi_phase::mark_first_is_one;
constexpr bi_phase_code kTdc38 = code(315, 2, 0, {1, 1, 0}, 17, kMarkFirst);
constexpr bi_phase_code kTdc56 = code(213, 2, 0, {1, 1, 0}, 17, kMarkFirst);
constexpr bi_phase_code kOrtek = code(480, 4, 0, {4, 1, 0}, 17, bi_phase::space_first_is_one);
constexpr bi_phase_code kAmino = code(268, 7, 6, {7, 6, 3}, 32, kMarkFirst);
constexpr bi_phase_code kZaptor = code(330, 8, 6, {8, 6, 2}, 32, kMarkFirst);

/// P is a place, and C the number of ones before it and three.
bool ortek_sum(const reading& read) {
  const auto ones = static_cast<unsigned>(std::popcount(read.bits.getLsb(0, 13)));
  return read.get({5, 2}) < 3 && read.get({13, 4}) == (3 + ones) % 16;
}

/// The last nibble is the sum of those before it.
bool nibble_sum(const reading& read) {
  unsigned sum = 0;
  for (int at = 0; at < 28; at += 4) sum += read.get({at, 4});
  return sum % 16 == read.get({28, 4});
}

const char* missing(const press& whole) {
  if (whole.frames == 1 && whole.has_first) return "only start frame";
  if (whole.frames == 1 && whole.has_last) return "only end frame";
  if (!whole.has_first && !whole.has_last) return "no start and end frames";
  if (!whole.has_first) return "no start frame";
  return whole.has_last ? "" : "no end frame";
}

bool finish_ortek(const reading& read, answer* found) {
  constexpr press_part kParts[] = {press_part::first, press_part::middle, press_part::last};
  found->part = kParts[read.get({5, 2})];
  found->tell_press = [](const press& whole, answer* told) { told->remark = missing(whole); };
  return true;
}

void name_by_carrier(const reading& read, const char* usual, answer* found) {
  found->name.add(read.seen.carrier_hz >= k56kHz ? "-56" : usual);
}

bool finish_amino(const reading& read, answer* found) {
  name_by_carrier(read, "", found);
  found->part = read.get({5, 1}) == 1 ? press_part::first : press_part::middle;
  found->tell_press = [](const press& whole, answer* told) {
    told->remark.print("T=%d", whole.has_first ? 1 : 0);
  };
  return true;
}

bool finish_zaptor(const reading& read, answer* found) {
  name_by_carrier(read, "-36", found);
  return true;
}

constexpr row tdc_row(const char* name, const bi_phase_code* wire) {
  return {.name = name,
          .wire = wire,
          .msb = true,
          .device = {0, 5},
          .subdevice = {5, 5},
          .function = {10, 7}};
}

constexpr row kRows[] = {
    tdc_row("TDC-38", &kTdc38),
    tdc_row("TDC-56", &kTdc56),
    {.name = "OrtekMCE",
     .wire = &kOrtek,
     .device = {0, 5},
     .function = {7, 6},
     .check_bits = 4,
     .check = ortek_sum,
     .finish = finish_ortek},
    {.name = "Amino",
     .wire = &kAmino,
     .msb = true,
     .device = {0, 4},
     .function = {16, 8},
     .constants = {{4, 1, 1}, {6, 10, 0x100}, {24, 4, 15}},
     .check_bits = 4,
     .check = nibble_sum,
     .finish = finish_amino},
    {.name = "Zaptor",
     .wire = &kZaptor,
     .msb = true,
     .device = {0, 8},
     .subdevice = {9, 7},
     .function = {16, 8},
     .check_bits = 4,
     .check = nibble_sum,
     .finish = finish_zaptor,
     .extras = {{"E = ", {24, 4}}}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kTdcRows = kRows;

}  // namespace analysis
