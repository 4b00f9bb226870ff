// SPDX-License-Identifier: GPL-3.0-or-later
// Codes that send levels of one unit: bi-phase (a bit is a mark and a space of equal length, in one
// order or the other), four-phase (two bits are one of four patterns of levels) and raw levels,
// which bit_buffer::decodeRaw reads.
#pragma once

#include <array>
#include <cstdint>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/readers/units.h"

namespace analysis {

/// Which half of a one comes first.
enum class bi_phase { mark_first_is_one, space_first_is_one };

/// Reads a sliced frame level by level. Behind the last mark the space goes on without end, so a
/// last half bit that merged with the gap reads like any other.
class level_reader {
 public:
  /// Starts at the beginning of the duration `from` (0: the first mark).
  explicit level_reader(const slicer& frame, int from = 0);

  /// Takes `width` units of one level: 1 a mark, 0 a space, -1 when the level changes inside.
  int level(int width = 1);
  /// Takes `count` bi-phase bits, each half `width` units wide. False when a bit has no edge in its
  /// middle, or when all marks are read before.
  bool bits(int count, bi_phase coding, bit_buffer* to, int width = 1);
  /// Takes the bits up to the frame's end, at most `most`. False also when there are more.
  bool rest(int most, bi_phase coding, bit_buffer* to);
  /// The burst of the next level.
  [[nodiscard]] int burst() const { return at_ / 2; }
  /// Whether every mark has been read.
  [[nodiscard]] bool at_end() const { return at_ >= frame_.count(); }

 private:
  void take(int units);

  const slicer& frame_;
  int at_;    // the current duration
  int left_;  // its units not yet taken
};

/// How a bi-phase frame looks on the wire: [lead-in] bits. The last half bit may be a space and so
/// part of the gap.
struct bi_phase_code {
  slice_rule half_bit;
  bi_phase coding;
  int bits;
  std::array<int, 3> lead = {};  // units of its mark, space and mark; 0 for none
  bool ordinary_bias = false;    // whether only that of an ordinary receiver is believed
  float length_error = 0;        // of the whole frame, as a fraction; 0: what the units say

  /// Half bits of a frame.
  [[nodiscard]] constexpr int units() const { return lead[0] + lead[1] + lead[2] + 2 * bits; }
  /// Between which two lengths a frame lies, without its gap.
  [[nodiscard]] float shortest_us() const {
    const int fewest = units() - 1;
    return length_error == 0 ? half_bit.shortest_us(fewest)
                             : (1 - length_error) * static_cast<float>(fewest) * half_bit.unit_us;
  }
  [[nodiscard]] float longest_us() const {
    return length_error == 0 ? half_bit.longest_us(units())
                             : (1 + length_error) * static_cast<float>(units()) * half_bit.unit_us;
  }
  [[nodiscard]] bool fits_length(float total_us) const {
    return total_us > shortest_us() && total_us < longest_us();
  }
  /// Whether the first mark of a frame may be its lead-in; not said where the space behind it may
  /// pay for a mark that is too short.
  [[nodiscard]] float shortest_lead_us() const {
    return half_bit.lead_space == 0 ? half_bit.shortest_first_us(lead[0]) : 0;
  }
  /// Bursts of the shortest and the longest frame.
  [[nodiscard]] constexpr int fewest_bursts() const { return bits / 2; }
  [[nodiscard]] constexpr int most_bursts() const { return bits + (lead[2] > 0 ? 2 : 1); }
};

/// Reads a frame into empty bits. False when it is not one; `why` then says what stopped it.
bool read_bi_phase(const frame& seen, const bi_phase_code& wire, bit_buffer* bits, refusal* why);

/// The levels of the symbols 0 to 3 of a four-phase code, which carry two bits each; the first
/// level sent is the lowest bit, a mark is a one.
struct four_phase {
  int units;
  std::array<unsigned, 4> levels;
};

/// Takes `count` symbols from the levels in `raw`, from bit `first` on, and appends their bits, the
/// higher one first. False where the levels are none of the four.
bool read_phases(const bit_buffer& raw, int first, int count, const four_phase& code,
                 bit_buffer* to);

}  // namespace analysis
