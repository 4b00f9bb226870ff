// SPDX-License-Identifier: GPL-3.0-or-later
// Sejin-1: infrared keyboards; pulse position, two bits tell in which quarter of a symbol the mark
// lies.
//
// Modulation: 38.8 or 56.3 kHz, unit 310 µs; 0 = mark in the first of four units .. 3 = in the last
// Frame: lead-in mark of 3 units, a symbol 3, sixteen symbols; gap 77 units
// Layout (one letter per bit, most significant first): DDDDDDDD FFFFFFFF SSSSSSSS EEEE CCCC
// Checks: one mark per symbol; C = sum of all nibbles before it, modulo 16
// The pointer devices of the family (Sejin-2) send the same frame; how they divide it is not
// public, so they are told by the numbers of Sejin-1.
// Sample (device 0, function 0, subdevice 0), µs:
//   930,930,620,930,310,930,310,930,310,930,310,930,310,930,310,930,310,930,310,930,310,930,310,
//   930,310,930,310,930,310,930,310,930,310
// Facts: public protocol definitions in IRP notation.
#include <cstdint>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/slicer.h"

namespace {

constexpr int kLeadUnits = 3;
constexpr slice_rule kSlot{.unit_us = 310,
                           .longest = 6,
                           .clock_error = 0.06F,
                           .lead = kLeadUnits,
                           .lead_space = kLeadUnits};
constexpr int kLeadSymbol = 3;
constexpr int kSymbolUnits = 4;
constexpr int kSymbols = 16;
constexpr int kMostUnits = kLeadUnits + kSymbolUnits * (kSymbols + 1);
constexpr float kShortestUs = 0.93F * (kMostUnits - 3) * kSlot.unit_us;
constexpr float kLongestUs = 1.07F * kMostUnits * kSlot.unit_us;
constexpr int k56kHz = 47000;  // between the two carriers

/// The next symbol, -1 when it has not exactly one mark.
int readSymbol(level_reader* levels) {
  uint64_t slots = 0;
  levels->levels(kSymbolUnits, &slots);
  switch (slots) {
    case 8:
      return 0;
    case 4:
      return 1;
    case 2:
      return 2;
    case 1:
      return 3;
    default:
      return -1;
  }
}

}  // namespace

void Signal::trySejin() {
  if (!within(kSejinBounds) || totalDuration_ < kShortestUs || totalDuration_ > kLongestUs) return;
  slicer sliced;
  if (!sliced.slice(frame_, 2 * frameLength_ - 1, kSlot) || !sliced.biasIsOrdinary(kSlot)) return;
  level_reader levels(sliced);
  if (!levels.mark(kLeadUnits) || readSymbol(&levels) != kLeadSymbol) return;
  uint32_t bits = 0;
  for (int i = 0; i < kSymbols; ++i) {
    const int symbol = readSymbol(&levels);
    if (symbol < 0) return;
    bits = bits << 2 | static_cast<unsigned>(symbol);
  }
  if (!levels.atEnd()) return;
  unsigned sum = 0;
  for (int shift = 4; shift < 32; shift += 4) sum += bits >> shift & 15;
  if (sum % 16 != (bits & 15)) return;
  const int function = static_cast<int>(bits >> 16 & 0xFF);
  remark("E = %u", bits >> 4 & 15);
  claim(frameFreq_ >= k56kHz ? "Sejin-1-56" : "Sejin-1-38", static_cast<int>(bits >> 24),
        static_cast<int>(bits >> 8 & 0xFF), function, function);
}
