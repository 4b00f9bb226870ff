// SPDX-License-Identifier: GPL-3.0-or-later
// F12, F12x, F32, arctech and Elunevision: pulse-width codes of bursts that are all alike.
//
// A zero is mark 1, space 3, a one mark 3, space 1; the space of the last bit merges with the gap.
//
//   F12          37.9 kHz, unit 422 µs, lsb first:  DDD S FFFFFFFF
//     F12        gaps of 80 units, every frame sent twice
//     F12-0, -1  (S is the number) two frames 34 units apart
//     F12x       gaps of 16 units; the last frame carries E in place of F
//   F32          37.9 kHz, unit 422 µs, msb first:  DDDDDDDD SSSSSSSS FFFFFFFF EEEEEEEE
//   arctech      unit 388 µs, lsb first; the bits of the two dials are sent as 0 x:
//                                                   0D0D0D0D 0S0S0S0S 0001010 F 0
//   Elunevision  unit 358 µs, msb first:            <10,-3> F48080(24) FFFFFFFF
//   D device, S subdevice, F function, E the last function (F12x) or a fourth byte (F32)
//
// Nothing but the equal bursts, their number and the gaps checks an F12 frame.
//
// Sample, F12, D = 3, S = 1, F = 2:
//   1266,422,1266,422,422,1266,1266,422,422,1266,1266,422,422,1266,422,1266,422,1266,422,1266,422,
//   1266,422
// Facts: public protocol definitions in IRP notation.
#include <span>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 422;
constexpr int kF12Bits = 12;
constexpr int kDeviceBits = 3;
constexpr int kAddressBits = 4;  // device and subdevice
constexpr int kDialBits = 4;
constexpr pulse_pair kPair{.zero_mark = 1, .zero_space = 3, .one_mark = 3, .one_space = 1};
constexpr pulse_width kF12{
    .units = {.unit_us = kUnitUs, .longest = 3}, .pair = kPair, .bits = kF12Bits};
constexpr pulse_width kF32{.units = {.unit_us = kUnitUs, .longest = 3}, .pair = kPair, .bits = 32};
constexpr pulse_width kArctech{.units = {.unit_us = 388, .longest = 3}, .pair = kPair, .bits = 25};
constexpr pulse_width kElunevision{
    .units = {.unit_us = 358, .longest = 10, .lead = 10, .lead_space = 3},
    .pair = kPair,
    .bits = 32,
    .lead = 1,
    .whole_lead = true};

// The gap behind a frame includes the space of its last bit, 1 or 3 units.
constexpr float kF12xGapUs = 20 * kUnitUs;  // the longest one between the frames of F12x
constexpr float kPairGapUs = 38 * kUnitUs;  // ... of F12-0 and F12-1

/// The function of the last of the frames that follow those of the press at the short gap of F12x.
void tell_last_function(const press& whole, answer* found) {
  const auto address = static_cast<unsigned>(found->device | found->subdevice << kDeviceBits);
  int function = found->function;
  std::span<const float> rest = whole.end;
  while (rest.size() >= 4 * kF12Bits && rest[2 * kF12Bits - 1] <= kF12xGapUs) {
    rest = rest.subspan(2 * kF12Bits);
    slicer frame;
    bit_buffer bits;
    if (!frame.slice(rest.data(), 2 * kF12Bits - 1, kF12.units) ||
        !read_pairs(frame, 0, kF12Bits, kPair, &bits) || bits.getLsb(0, kAddressBits) != address) {
      break;
    }
    function = bits.lsb_number(kAddressBits, kF12Bits - kAddressBits);
  }
  if (function != found->function) found->remark.print("E = %d", function);
}

/// The gap tells the variants apart.
bool name_f12(const reading& read, answer* found) {
  const float gap = read.seen.framing_gap;
  if (gap > kPairGapUs) return true;
  if (gap > kF12xGapUs) {
    found->name.print("-%d", found->subdevice);
    return true;
  }
  found->name.add("x");
  found->tell_press = tell_last_function;
  return true;
}

/// Every bit of the two dials comes behind a zero.
bool dials_hold(const reading& read) {
  for (int bit = 0; bit < 4 * kDialBits; bit += 2) {
    if (read.bits.getBit(bit) != 0) return false;
  }
  return true;
}

/// The position of an arctech dial, 1 to 16.
int dial(const reading& read, int first) {
  unsigned position = 0;
  for (int i = 0; i < kDialBits; ++i) position |= read.bits.getBit(first + 2 * i + 1) << i;
  return static_cast<int>(position) + 1;
}

bool read_dials(const reading& read, answer* found) {
  found->device = dial(read, 0);
  found->subdevice = dial(read, 2 * kDialBits);
  found->hex = {};
  return true;
}

constexpr row kRows[] = {
    {.name = "F12",
     .wire = &kF12,
     .device = {0, 3},
     .subdevice = {3, 1},
     .function = {4, 8},
     .finish = name_f12},
    {.name = "arctech",
     .wire = &kArctech,
     .function = {23, 1},
     .constants = {{16, 7, 40}, {24, 1, 0}},
     .check_bits = 2 * kDialBits,
     .check = dials_hold,
     .finish = read_dials},
    {.name = "F32",
     .wire = &kF32,
     .msb = true,
     .device = {0, 8},
     .subdevice = {8, 8},
     .function = {16, 8},
     .extras = {{"E = ", {24, 8}}}},
    {.name = "Elunevision",
     .wire = &kElunevision,
     .msb = true,
     .function = {24, 8},
     .constants = {{0, 24, 0xF48080}}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kF12Rows = kRows;

}  // namespace analysis
