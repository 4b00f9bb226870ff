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
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/units.h"

namespace analysis {
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
bool has_long_run(unsigned bits) {
  for (int i = 0; i < kLongestRun; ++i) bits &= bits >> 1;
  return bits != 0;
}

}  // namespace

std::optional<answer> lutron(const frame& seen) {
  if (seen.on(0) < (kStartLevels - 0.5F) * kUnitUs) return {};
  if (seen.off_times.largest > (kLongestRun + 0.5F) * kUnitUs) return {};
  slicer frame;
  if (!frame.slice(seen, kRule)) return seen.refused(frame.why());
  if (frame.first_damaged() || frame.last_damaged()) return seen.refused({reason::damage});
  bit_buffer bits = frame.bits();
  bits.decodeRaw(kStartLevels + kCodeLevels);
  if (!bits.at_end() || bits.getLsb(0, kStartLevels) != 0xFF) return {};
  bits.makeMsb();
  const unsigned code = bits.getMsb(kStartLevels, kCodeLevels);
  if (has_long_run(code) || has_long_run(~code & ((1U << kCodeLevels) - 1))) return {};
  const auto gap = static_cast<float>(kStopLevels + __builtin_ctz(code));
  if (seen.trailing_gap < (gap - 0.5F) * kUnitUs) return {};
  return answer{.name = "Lutron", .function = static_cast<int>(code)};
}

}  // namespace analysis
