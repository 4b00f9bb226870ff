// SPDX-License-Identifier: GPL-3.0-or-later
// Bits in the order they were sent, and the reader for codes whose bits are pairs of a mark and a
// space (pulse width).
#pragma once

#include <array>
#include <cstdint>

#include "lib/ir/DecodeIR/slicer.h"

/// Up to 64 bits; bit 0 is the first one sent.
struct wire_bits {
  uint64_t value = 0;  // the first bit sent is the most significant one
  int count = 0;

  void append(bool bit) {
    value = value << 1 | (bit ? 1U : 0U);
    ++count;
  }
  [[nodiscard]] unsigned bit(int n) const {
    return static_cast<unsigned>(value >> (count - 1 - n)) & 1U;
  }
  /// `width` bits from bit `first`, the first one as the most significant (msb) or least
  /// significant (lsb). REQUIRES: first + width <= count, width <= 32.
  [[nodiscard]] unsigned msb(int first, int width) const {
    return static_cast<unsigned>(value >> (count - first - width) & ((uint64_t{1} << width) - 1));
  }
  [[nodiscard]] unsigned lsb(int first, int width) const {
    unsigned field = 0;
    for (int i = width - 1; i >= 0; --i) field = field << 1 | bit(first + i);
    return field;
  }
};

/// What a zero and a one are made of, in units.
struct pulse_pair {
  int zero_mark, zero_space;
  int one_mark, one_space;
};

/// Reads `count` bits from the mark of the burst `first` on. The space after the frame's last mark
/// has merged with the gap and is not looked at. False where a pair is neither, or where the last
/// mark is too odd to say which.
inline bool readPairs(const slicer& frame, int first, int count, const pulse_pair& pair,
                      wire_bits* bits) {
  if (frame.lastIsOdd() && 2 * (first + count) > frame.count()) return false;
  for (int burst = first; burst < first + count; ++burst) {
    const int mark = frame.units(2 * burst);
    const bool one = mark == pair.one_mark;
    if (!one && mark != pair.zero_mark) return false;
    if (2 * burst + 1 < frame.count()) {
      const int space = frame.units(2 * burst + 1);
      const bool oneSpace = space == pair.one_space;
      if (!oneSpace && space != pair.zero_space) return false;
      if (pair.one_mark == pair.zero_mark) {
        bits->append(oneSpace);
        continue;
      }
      if (space != (one ? pair.one_space : pair.zero_space)) return false;
    }
    bits->append(one);
  }
  return true;
}

/// The levels (mark = 1, the first sent is the highest bit) of the symbols 0 to 3 of a four-phase
/// code, which carry two bits each.
struct four_phase {
  int units;
  std::array<uint64_t, 4> levels;
};

/// Reads `count` symbols; false where the levels are none.
inline bool readPhases(level_reader* reader, int count, const four_phase& code, wire_bits* bits) {
  for (; count > 0; --count) {
    uint64_t levels = 0;
    reader->levels(code.units, &levels);
    unsigned value = 0;
    while (value < 4 && levels != code.levels[value]) ++value;
    if (value == 4) return false;
    bits->append((value & 2) != 0);
    bits->append((value & 1) != 0);
  }
  return true;
}
