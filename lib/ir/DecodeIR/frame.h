// SPDX-License-Identifier: GPL-3.0-or-later
// What a recogniser sees of a signal: a candidate frame, and what stands around it.
//
// A signal is a list of bursts; a burst is a mark (on-time) and the space (off-time) after it, both
// in µs. A candidate frame is a run of 2 to 100 bursts; the space of its last burst is the gap
// behind it.
#pragma once

#include <algorithm>
#include <optional>
#include <span>

#include "lib/ir/DecodeIR/refusal.h"
#include "lib/ir/DecodeIR/statistics.h"
#include "lib/ir/receiver.h"

namespace analysis {

struct frame {
  static constexpr int kMostBursts = 100;
  static constexpr float kLongestInsideUs = 14000;  // a longer mark begins a frame
  static constexpr float kSilenceUs = 1e9F;         // the gap before the signal

  const float* first = nullptr;  // the on-time of its first burst; the bursts are the caller's
  int length = 2;                // bursts
  int before = 0;                // bursts of the signal before it
  int reach = 0;                 // bursts from its first one to the last of the signal
  int sent = 0;                  // the same without the second copy of a repeat part
  float gap_before = 0;          // µs, kSilenceUs before the first burst
  float trailing_gap = 0;        // µs
  float cut_us = kSilenceUs;     // the space that the signal was cut in, if it reaches there
  float framing_gap = 0;         // µs, the smaller of the two gaps
  float total_us = 0;            // without the trailing gap
  float largest_us = 0;          // its longest mark or space, the trailing gap excluded
  int carrier_hz = 0;            // 0: not known, or not modulated
  int preempt_level = 0;         // of a claim that this frame begins inside of
  refusal_listener* listener = nullptr;  // whom refusals are told; the caller's
  setOn on_times;
  setOff off_times;  // without the trailing gap

  frame() = default;
  /// All of a signal as one frame between silences: durations in µs, mark first, an even number of
  /// at most 2 * kMostBursts, which have to outlive the frame.
  explicit frame(std::span<const float> signal, int carrier = 0);

  /// Durations of the i-th burst, 0 the first. REQUIRES: -before <= i < reach.
  [[nodiscard]] float on(int i) const { return first[2 * i]; }
  [[nodiscard]] float off(int i) const { return first[2 * i + 1]; }
  [[nodiscard]] float burst(int i) const { return on(i) + off(i); }
  /// The space behind the frame, which is no gap where the signal was cut inside it.
  [[nodiscard]] float gap_behind() const { return std::min(trailing_gap, cut_us); }
  /// Durations without the trailing gap.
  [[nodiscard]] int durations() const { return 2 * length - 1; }

  /// Whether an infrared link can carry it.
  [[nodiscard]] bool is_possible() const {
    return on_times.largest >= receiver::kShortestMarkUs &&
           off_times.smallest >= receiver::kShortestSpaceUs;
  }
  /// Whether a pulse of t µs spans less than half a carrier cycle.
  [[nodiscard]] bool unmodulated(float t) const {
    return static_cast<float>(carrier_hz) * t < 500000.0F;
  }
  [[nodiscard]] bool framedLeft(float t) const { return gap_before >= t; }
  [[nodiscard]] bool framed(float t) const { return framing_gap >= t; }
  /// Whether the frame's first burst may be a lead-in: its length, its mark and its space lie in
  /// these limits, and at least `extra` µs of the frame follow it.
  [[nodiscard]] bool lead_in(float minTotal, float maxTotal, float maxOn, float minOff,
                             float extra) const;

  /// The lengths of its bursts, without the last one. Costs a sort: nothing keeps them up to date.
  [[nodiscard]] setBurst burst_lengths() const;

  /// For recognisers: tells the listener, if there is one, and is no answer.
  std::nullopt_t refused(const refusal& why, const char* protocol = nullptr) const {
    if (listener != nullptr) listener->refused(protocol, why);
    return std::nullopt;
  }

  /// For rows that have read the frame: tells the listener what speaks for them.
  void proved(const proof& by) const {
    if (listener != nullptr) listener->proved(by);
  }

  /// How the search lets a frame grow: from `bursts` bursts at `at`, `gap` µs behind what is before
  /// it, to as many as it likes.
  void begin(const float* at, int bursts, float gap);
  void grow_to(int bursts);

 private:
  void take_gaps();
  [[nodiscard]] bool is_gap(float space) const;

  int begun_ = 2;           // bursts that it began with
  float space_before_ = 0;  // µs, to whatever is before it
};

/// What a frame must at least be before a recogniser looks closer. Cheap to test, so most
/// candidates end here.
struct frame_bounds {
  int min_bursts = 2;
  int max_bursts = frame::kMostBursts;
  float min_gap = 0;          // µs of trailing gap
  float min_gap_before = 0;   // µs of gap before the frame
  bool ends_in_data = false;  // whether a signal may end in the last bit's space, without a gap

  [[nodiscard]] bool hold(const frame& seen) const {
    const float behind = ends_in_data ? seen.trailing_gap : seen.gap_behind();
    return behind >= min_gap && seen.gap_before >= min_gap_before && seen.length >= min_bursts &&
           seen.length <= max_bursts;
  }
};

}  // namespace analysis
