// SPDX-License-Identifier: GPL-3.0-or-later
// The vote that names a signal's protocol before any bits are read. Each analyzer sums up how far
// the durations are from those of its protocol; one that is too far off drops out, and in the end
// the smallest sum wins. Ties go to the one that stands first in the list, which is the order of
// registration until drops rearrange it: a dropped analyzer comes back at the tail.
#pragma once

#include <span>

#include "lib/ir/ir.h"

/// Scores one duration in µs, whose index is ir->count, with every active analyzer. Returns the
/// result byte of the one that leads.
uint8_t analyze_edge(uint32_t duration, ir_t* ir);

/// The same as analyze_edge for each of them with its index, a whole pattern at once. REQUIRES: no
/// more than 255, and none was scored since the last reset.
void analyze_all(std::span<const uint16_t> durations, ir_t* ir);

/// The rc_proto of the winner, 0 when every analyzer has dropped out. REQUIRES: ir->count is the
/// number of durations that were fed.
uint32_t analyze_finish(uint32_t ticks, ir_t* ir);

/// Makes every analyzer ready for the next signal.
void reset_analyzer();

/// The vote on `len` bare durations in µs: an rc_proto.
uint32_t analyze_protocol(const uint16_t* buf, uint8_t len);

/// Prints the names of the analyzers in the order of registration.
void print_all_analyzers();

/// The ticks that end an event, as every caller of analyze_finish passes them.
constexpr uint32_t kFinishTicks = 100;

/// The largest error sum with which an analyzer stays behind the edge of this index. The first
/// edges decide by a fixed limit, later ones by an average per edge, which wraps at 16 bits: from
/// the 82nd edge on it starts again near 0.
constexpr uint16_t drop_limit(uint32_t index) {
  constexpr uint32_t kLastEarlyEdge = 5;
  constexpr uint16_t kEarlyLimitUs = 2000;
  constexpr uint32_t kLimitPerEdgeUs = 800;
  return index <= kLastEarlyEdge ? kEarlyLimitUs : static_cast<uint16_t>(index * kLimitPerEdgeUs);
}

/// What the analyzers share: the error sum with the distance of a duration from the expected one.
constexpr uint16_t with_error(uint16_t acc, uint32_t duration, uint32_t expected) {
  const uint32_t error = duration > expected ? duration - expected : expected - duration;
  return static_cast<uint16_t>(acc + error);
}

/// The analyze and analyze_all of every analyzer, of which expected_us(index, duration) is the
/// rule: the duration expected there, the one that came where any will do.
template <uint32_t (*expected_us)(uint32_t index, uint32_t duration)>
void score(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  self->acc = with_error(self->acc, duration, expected_us(ir->count, duration));
}
template <uint32_t (*expected_us)(uint32_t index, uint32_t duration)>
size_t score_all(std::span<const uint16_t> durations, IR_PROTOCOL_ANALYZER* self) {
  uint16_t acc = self->acc;
  uint32_t index = 0;
  for (const uint16_t duration : durations) {
    acc = with_error(acc, duration, expected_us(index, duration));
    if (acc > drop_limit(index)) break;
    ++index;
  }
  self->acc = acc;
  return index;
}

/// The one of two expected durations that is nearer.
inline uint32_t nearer(uint32_t duration, uint32_t shorter, uint32_t longer) {
  return 2 * duration < shorter + longer ? shorter : longer;
}

/// Every mark has an even index, every space an odd one.
inline bool is_mark(uint32_t index) {
  return index % 2 == 0;
}

/// An analyzer's memory of its last win. A win is remembered over the next decode and forgotten
/// after it, so that a repeat frame can be told from a first one.
struct win_memory {
  uint8_t decodes_left;   // until it is forgotten; 0: nothing remembered
  uint8_t frame_entries;  // of the frame that won
};

/// Remembers a win for this decode and the next.
inline void remember_win(win_memory& memory) {
  memory.decodes_left = 2;
}

/// The reset function of every analyzer whose priv is a win_memory.
void age_win_memory(IR_PROTOCOL_ANALYZER* self);

/// Marks the event as a repeat when the analyzer won lately and the gap before the event is
/// within the window in ms, then remembers this win. The memory is the analyzer's priv.
void note_win(ir_t* ir, IR_PROTOCOL_ANALYZER* self, uint16_t min_gap_ms, uint16_t max_gap_ms);
