// SPDX-License-Identifier: GPL-3.0-or-later
// Grundig16.
//
// Carrier 35.7 kHz (Grundig16-30: 30.3 kHz), pulse position, unit 578 µs, most significant bit
// first. Two bits are sent in six units:
//   00 = <-4,2>   01 = <-3,1,-1,1>   10 = <-2,1,-2,1>   11 = <-1,1,-3,1>
//
//   <806us,-2960us,1346us> T FFFFFFFF DDDDDDD    gap 100 units
//   T toggle, F function, D device
//
// Sample, D = 0, F = 0, T = 0:
//   806,2960,1346,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156,2312,1156
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <cmath>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kRule{.unit_us = 578, .longest = 4};
constexpr float kLeadUs[] = {806, 2960, 1346};
constexpr float kLeadToleranceUs = 0.35F * 578;
constexpr float kSettlingUs = 0.25F * 806;  // by which the first mark may be longer still
constexpr int kSymbols = 8;
constexpr four_phase kCode{6, {0b000011, 0b000101, 0b001001, 0b010001}};

}  // namespace

void Signal::tryGrundig16() {
  if (!within(kGrundig16Bounds)) return;
  // While the receiver's gain settles the first mark grows at the cost of its space.
  const float later = std::clamp(on(0) - kLeadUs[0], 0.0F, kSettlingUs);
  if (std::abs(on(0) - later - kLeadUs[0]) > kLeadToleranceUs ||
      std::abs(off(0) + later - kLeadUs[1]) > kLeadToleranceUs ||
      std::abs(on(1) - kLeadUs[2]) > kLeadToleranceUs)
    return;
  // The body begins behind the second mark, which is no whole number of units.
  slicer frame;
  if (!frame.slice(frame_ + 2, 2 * frameLength_ - 3, kRule)) return;
  level_reader reader(frame, 1);
  wire_bits bits;
  if (!readPhases(&reader, kSymbols, kCode, &bits)) return;
  if (!reader.atEnd()) return;
  const int function = static_cast<int>(bits.msb(1, 8));
  claim("Grundig16", static_cast<int>(bits.msb(9, 7)), -1, function, function);
  remark("T=%u", bits.bit(0));
}
