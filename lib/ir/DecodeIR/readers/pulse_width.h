// SPDX-License-Identifier: GPL-3.0-or-later
// Codes whose bits are pairs of a mark and a space in whole units, the longer mark for one of the
// values (pulse width).
#pragma once

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/readers/units.h"

namespace analysis {

/// What a zero and a one are made of, in units.
struct pulse_pair {
  int zero_mark, zero_space;
  int one_mark, one_space;
};

/// How a frame looks on the wire: [lead-in] pairs [stop mark of one unit]. The space of the last
/// mark has merged with the gap.
struct pulse_width {
  slice_rule units;
  pulse_pair pair;
  int bits;
  int lead = 0;             // bursts before the first bit
  bool whole_lead = false;  // whether the first mark may not be damaged
  bool stop = false;

  [[nodiscard]] constexpr int bursts() const { return lead + bits + (stop ? 1 : 0); }
};

/// Reads a frame of wire.bursts() bursts into empty bits. False when it does not fit; `why` then
/// says what stopped it.
bool read_pulse_width(const frame& seen, const pulse_width& wire, bit_buffer* bits, refusal* why);

/// Appends `count` bits from the mark of the burst `first` on. False where a pair is neither, or
/// where the last mark is too damaged to say which.
/// REQUIRES: a further mark follows the last pair where all marks are alike.
bool read_pairs(const slicer& frame, int first, int count, const pulse_pair& pair,
                bit_buffer* bits);

}  // namespace analysis
