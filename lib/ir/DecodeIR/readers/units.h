// SPDX-License-Identifier: GPL-3.0-or-later
// Durations in whole units: what bi-phase, four-phase, raw-level and pulse-width codes are read
// from.
//
// A receiver lengthens every mark and shortens every space by the same few µs (the bias), and a
// remote's clock is off by a per cent or two; both hold for a whole frame. So they are estimated
// from the frame itself and each duration is then tested tightly, rather than tested loosely
// without. One damaged duration is forgiven, the first or the last, which may be cut. While its
// gain settles a receiver may also lengthen the first mark at the cost of the space behind it; the
// edge between the two is then put where the rest of the frame says it belongs.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/frame.h"
#include "lib/ir/receiver.h"

namespace analysis {

/// What the durations of a code are made of.
struct slice_rule {
  float unit_us;              // half a bit, or the length of one level
  int longest = 2;            // units of the longest duration inside a frame
  float tolerance = 0.3F;     // of one duration once bias and clock are known, in units
  float spread = 0.12F;       // root mean square over the frame, in units
  float clock_error = 0.03F;  // +-, as a fraction
  float bias = 0;             // assumed at first, in units; more than half a unit is not found
  int lead = 0;               // units of the first mark ...
  int lead_space = 0;         // ... and of the space behind it, 0 where they vary

  static constexpr float kMostClockError = 0.08F;  // of all units together
  static constexpr int kEndUnits = 4;              // at most that the ends gain or lose

  /// The shortest first mark that counts as so many units, whatever the clock and the bias.
  [[nodiscard]] float shortest_first_us(int units) const {
    return (static_cast<float>(units) - 0.5F) * unit_us * (1 - clock_error) - most_bias();
  }
  /// How long a frame of so many units lasts, its gap excluded: between these, even with a damaged
  /// end, an end that is too long, and the bias.
  [[nodiscard]] constexpr float shortest_us(int units) const {
    return (1 - kMostClockError) * static_cast<float>(units - kEndUnits) * unit_us;
  }
  [[nodiscard]] constexpr float longest_us(int units) const {
    return (1 + kMostClockError) * static_cast<float>(units + kEndUnits) * unit_us;
  }

  /// How far a receiver may shift an edge pair: what marks gain and spaces lose.
  [[nodiscard]] float most_bias() const {
    return std::min(receiver::kMostUnitBias * unit_us, receiver::kMostUnitBiasUs);
  }
};

/// One frame expressed in units. Storage is fixed, nothing is allocated.
class slicer {
 public:
  static constexpr int kMostDurations = 2 * frame::kMostBursts - 1;

  /// Expresses the frame in units of the rule, its trailing gap excluded; refuses by the statistics
  /// first. False when it is not made of such units, or does not begin with the lead-in of the
  /// rule; what the slicer holds is then meaningless.
  bool slice(const frame& seen, const slice_rule& rule);
  /// The same for `count` durations (µs, mark first).
  bool slice(const float* durations, int count, const slice_rule& rule);

  [[nodiscard]] int count() const { return count_; }
  /// Units of the i-th duration, at least 1; even i are marks. REQUIRES: 0 <= i < count().
  [[nodiscard]] int units(int i) const { return static_cast<int>(units_[static_cast<size_t>(i)]); }
  /// An empty bit buffer that reads these units. The slicer has to outlive it.
  [[nodiscard]] bit_buffer bits() const {
    bit_buffer empty(units_.data(), count_);
    empty.threshold = 1;
    return empty;
  }
  /// Whether the first or the last duration is damaged: its units are the nearest whole number.
  [[nodiscard]] bool first_damaged() const { return first_damaged_; }
  [[nodiscard]] bool last_damaged() const { return last_damaged_; }
  [[nodiscard]] float bias() const { return bias_; }    // µs by which marks are longer
  [[nodiscard]] float scale() const { return scale_; }  // µs of this frame per µs of the rule
  /// Why the last slice failed.
  [[nodiscard]] const refusal& why() const { return why_; }
  /// Whether the bias is one of an ordinary receiver, for codes that have few checks.
  [[nodiscard]] bool has_ordinary_bias(const slice_rule& rule) const {
    return bias_ >= -0.4F * rule.unit_us && bias_ <= 0.5F * rule.unit_us;
  }

 private:
  bool refuse(const refusal& why) {
    why_ = why;
    return false;
  }
  struct fit_range {
    int first, end;  // durations that the estimate rests on
  };
  bool fits_as_it_is(const float* durations, int count, const slice_rule& rule);
  bool fits(const float* durations, const slice_rule& rule, float assumed_bias);
  bool estimate(const float* durations, const slice_rule& rule, fit_range range);
  bool durations_fit(const float* durations, const slice_rule& rule);
  bool ends_fit(const float* durations, const slice_rule& rule);
  bool lead_fits(const float* durations, const slice_rule& rule);
  bool settles(const float* durations, int count, const slice_rule& rule);
  bool lead_in_settles(const float* durations, int count, const slice_rule& rule);
  bool fits_behind(std::array<float, 2> first, const float* durations, int count,
                   const slice_rule& rule);
  [[nodiscard]] float deviation(const float* durations, int i, const slice_rule& rule) const;

  std::array<float, kMostDurations> units_;  // whole numbers
  int count_ = 0;
  float bias_ = 0;
  float scale_ = 1;
  bool first_damaged_ = false;
  bool last_damaged_ = false;
  refusal why_;
};

}  // namespace analysis
