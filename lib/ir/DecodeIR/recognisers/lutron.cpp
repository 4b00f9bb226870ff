// SPDX-License-Identifier: GPL-3.0-or-later
// Lutron.
//
// Carrier 40 kHz, raw levels of 2300 µs (a one is a mark), most significant bit first. Frames
// follow each other without a gap of their own: eight marks, 24 levels, four spaces.
//
//   11111111 X(24) 0000
//   X code; a real one has no long run of equal levels
//
// Trailing zeros of X merge with the four spaces, so a frame has up to four levels less than 32
// before its gap, and the gap makes up for them.
//
// Sample, X = 0xAAAAAA:
//   20700,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,2300,
//   2300,2300,2300,2300,2300
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr float kUnitUs = 2300;
constexpr int kStartLevels = 8;
constexpr int kCodeLevels = 24;
constexpr int kStopLevels = 4;
constexpr int kLongestRun = 4;  // of equal levels in a code
// Levels this long leave no room for jitter, and nothing else tells a code from noise.
constexpr slice_rule kRule{
    .unit_us = kUnitUs, .longest = kStartLevels + kLongestRun, .tolerance = 0.1F, .spread = 0.05F};

/// Whether more than kLongestRun neighbouring bits are ones.
bool hasLongRun(unsigned bits) {
  for (int i = 0; i < kLongestRun; ++i) bits &= bits >> 1;
  return bits != 0;
}

}  // namespace

void Signal::tryLutron() {
  if (!within(kLutronBounds) || on(0) < (kStartLevels - 0.5F) * kUnitUs) return;
  if (setOff_.largest > (kLongestRun + 0.5F) * kUnitUs) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame) || frame.firstIsOdd() || frame.lastIsOdd()) return;
  level_reader reader(frame);
  wire_bits bits{.count = kStartLevels + kCodeLevels};
  reader.levels(bits.count, &bits.value);
  if (!reader.atEnd() || bits.msb(0, kStartLevels) != 0xFF) return;

  const unsigned code = bits.msb(kStartLevels, kCodeLevels);
  if (hasLongRun(code) || hasLongRun(~code & ((1U << kCodeLevels) - 1))) return;
  const auto gap = static_cast<float>(kStopLevels + __builtin_ctz(code));
  if (trailingGap_ < (gap - 0.5F) * kUnitUs) return;
  claim("Lutron", -1, -1, static_cast<int>(code));
}
