// SPDX-License-Identifier: GPL-3.0-or-later
// Pulse distance: every symbol is a mark of fixed length and a space whose length carries one bit.
//
// A receiver lengthens marks at the cost of the spaces, so a bit is read from mark + space. The
// remote's clock is estimated from the burst lengths and the receiver's bias from the marks, and
// then every duration is held to narrow bounds; one duration of a frame may be damaged.
#pragma once

#include <algorithm>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/refusal.h"
#include "lib/ir/receiver.h"

namespace analysis {

/// A mark and the space after it, in units of a coding.
struct burst_units {
  float on = 0;
  float off = 0;
};

/// A burst among the data bursts that is no symbol: the gap between two halves, a second lead-in.
struct split_burst {
  int at = -1;  // symbols before it, -1 for none
  burst_units burst;
};

constexpr float kGapUs = 9000;
constexpr float kGapBeforeUs = 5000;
constexpr float kAnyUs = 2e9F;

/// How a frame looks on the wire: [lead-in] symbols, with at most one split, and a stop mark.
struct pulse_distance {
  float unit;             // µs
  burst_units lead = {};  // {0, 0}: no lead-in
  float mark;             // units, of every symbol
  float zero, one;        // units, the spaces of the two symbols
  int bits;               // symbols
  split_burst split = {};
  float stop = 0;                   // units of the stop mark, 0 for `mark`
  float min_gap = kGapUs;           // µs of space after the frame
  float min_before = kGapBeforeUs;  // µs of space before it
  float max_before = kAnyUs;
  float fastest = 0.9F;  // range of the remote's clock against `unit`
  float slowest = 1.1F;
  float shortest_mark = 0;  // µs, range of the mean mark, where only that tells two codes apart
  float longest_mark = kAnyUs;
  float more_skew =
      0;  // by which the clocks of zeros and ones may differ beyond what jitter explains
  bool any_mark = false;  // a mark as long or short as that may stand for the nominal one

  [[nodiscard]] constexpr pulse_distance gaps(float after, float before,
                                              float most_before = kAnyUs) const {
    pulse_distance changed = *this;
    changed.min_gap = after;
    changed.min_before = before;
    changed.max_before = most_before;
    return changed;
  }
  [[nodiscard]] constexpr pulse_distance clock(float from, float to) const {
    pulse_distance changed = *this;
    changed.fastest = from;
    changed.slowest = to;
    return changed;
  }
  [[nodiscard]] constexpr pulse_distance marks(float shortest, float longest) const {
    pulse_distance changed = *this;
    changed.shortest_mark = shortest;
    changed.longest_mark = longest;
    return changed;
  }

  /// For codes whose marks carry nothing beside much longer spaces: receivers for another carrier
  /// lengthen them to twice their length and more, or leave only a spike.
  [[nodiscard]] constexpr pulse_distance any_marks(float longest) const {
    pulse_distance changed = marks(0, longest);
    changed.any_mark = true;
    return changed;
  }

  /// For codes whose rows prove much: learning remotes round marks and spaces to a few lengths.
  [[nodiscard]] constexpr pulse_distance uneven() const {
    pulse_distance changed = *this;
    changed.more_skew = 0.05F;
    return changed;
  }

  /// What is wrong with marks of `mean` µs on average; reason::none when a receiver may have made
  /// them of those that were sent.
  [[nodiscard]] constexpr refusal mark_refusal(float mean, float scale) const {
    const float sent = mark * unit;
    const float shortest =
        std::max(any_mark ? 0 : receiver::kShortestOfMark * scale * sent, shortest_mark);
    if (mean < shortest || mean > longest_mark) {
      return {reason::mark, -1, mean, shortest, longest_mark};
    }
    const float bias = mean - scale * sent;
    const float least = receiver::kLeastBiasUs;
    const float most =
        std::min({receiver::kMostBiasUs,
                  std::max(receiver::kMostBiasOfMark * sent, receiver::kMostFlashBiasUs),
                  receiver::kMostBiasOfSpace * std::min(zero, one) * unit});
    if (any_mark || (bias >= least && bias <= most)) return {};
    return {reason::bias, -1, bias, least, most};
  }
  /// By how much the clocks that the two symbols tell may differ.
  [[nodiscard]] constexpr float most_skew() const {
    const float shorter = (mark + std::min(zero, one)) * unit;
    return receiver::kMostSkew + more_skew + std::min(receiver::kSkewUs, mark * unit) / shorter;
  }
  [[nodiscard]] constexpr bool has_lead() const { return lead.on > 0; }
  /// Bursts of a frame, lead-in and stop mark included.
  [[nodiscard]] constexpr int bursts() const {
    return bits + 1 + static_cast<int>(has_lead()) + static_cast<int>(split.at >= 0);
  }
};

/// How a frame fits a coding.
struct distance_fit {
  float scale = 1;       // the remote's clock, as a fraction of the coding's unit
  float bias = 0;        // µs that the receiver adds to a mark
  float skew = 0;        // the clock by the zeros less that by the ones; 0 without both
  int loose = 0;         // symbols beyond the bounds for frames without checks
  bool damaged = false;  // the lead-in or a symbol is out of line
  bool noisy = false;    // the symbols' clocks tell little
  refusal why = {};      // it does not fit
  int unsure_bit = -1;   // of a symbol so far out of line that it may be the other; -1: none
};

/// Reads the bursts of `frame`, which number wire.bursts(), into empty bits. False when they don't
/// fit.
bool read_pulse_distance(const pulse_distance& wire, const float* frame, bit_buffer* bits,
                         distance_fit* fit);

/// The same for a frame that read_pulse_distance refuses, through a bad receiver. `loose` counts
/// the symbols that more than jitter has changed; bits that are guesses are not read.
bool read_noisy_distance(const pulse_distance& wire, const float* frame, bit_buffer* bits,
                         distance_fit* fit);

/// A short frame that says "the key is still held": a lead-in, some symbols, a stop mark.
struct ditto {
  burst_units lead;
  int bits = 0;

  [[nodiscard]] constexpr int bursts() const { return 2 + bits; }
};

/// Whether the bursts at `at`, which reach to `end`, begin with this ditto.
bool is_ditto(const pulse_distance& wire, const ditto& form, const float* at, const float* end,
              float scale, float bias);

}  // namespace analysis
