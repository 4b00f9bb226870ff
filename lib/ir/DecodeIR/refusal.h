// SPDX-License-Identifier: GPL-3.0-or-later
// Why a reader refuses a frame, and what speaks for one that it takes. Readers note the reason
// where they give up, which costs a few stores and nothing otherwise; recognisers pass it on to the
// listener of the frame, when it has one.
#pragma once

#include <cstdint>

namespace analysis {

/// What stopped a reading, in the order in which readers look: a later one came closer.
enum class reason : uint8_t {
  none,
  bursts,      // the number of bursts is another
  gap_before,  // the space before the frame
  gap_behind,  // the space behind it
  length,      // how long it lasts
  lead_in,     // the first burst
  unit,        // a duration is no whole number of units
  symbol,      // a burst is none of the code's symbols
  clock,       // all durations together, as a factor: the remote's clock
  skew,        // the symbols tell two clocks; the difference of two factors
  bias,        // what the receiver adds to all marks
  mark,
  split,  // the burst between two halves
  stop,   // the last mark
  edge,   // a bit has no edge in its middle, or levels are none of the code's
  check,  // constants, complements, sums
  damage  // fits but for a damaged duration, for which too little is checked
};

/// What was found and what would have been taken: in µs but for clock and skew (factors) and bursts
/// (a number). least and most are 0 where a reader has no range, all three where it has no number:
/// for edge, check and damage.
struct refusal {
  reason why = reason::none;
  int burst = -1;  // 0 the first, -1: the frame as a whole
  float found = 0;
  float least = 0, most = 0;

  [[nodiscard]] constexpr bool given() const { return why != reason::none; }
  /// One that is to be `wanted`, within the tolerance.
  static constexpr refusal off(reason why, int burst, float found, float wanted, float tolerance) {
    return {why, burst, found, wanted - tolerance, wanted + tolerance};
  }
};

/// What speaks for a frame that has been read, beside durations in their limits.
struct proof {
  int bits = 0;
  int checked = 0;    // of them, which say nothing new
  float clock = 0;    // of the remote as a fraction of the nominal one, 0: not told
  float bias_us = 0;  // by which marks are longer; 0 with the clock
};

struct frame;

class refusal_listener {
 public:
  virtual ~refusal_listener() = default;
  /// A recogniser looks at this frame of a search.
  virtual void asked(const frame&) {}
  /// A row has read the frame.
  virtual void proved(const proof&) {}
  /// `protocol` is the name of a row, or null for what the recogniser itself reads.
  virtual void refused(const char* protocol, const refusal& why) = 0;
};

}  // namespace analysis
