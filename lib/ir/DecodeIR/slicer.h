// SPDX-License-Identifier: GPL-3.0-or-later
// Durations in whole units: what the bi-phase codes and the codes of raw levels are read from.
//
// A receiver lengthens every mark and shortens every space by the same few µs (the bias), and a
// remote's clock is off by a per cent or two; both hold for a whole frame. So the slicer estimates
// them from the frame itself and then tests each duration tightly, rather than testing loosely.
// It forgives one odd duration, the first or the last, which may be cut. While its gain settles a
// receiver may also lengthen the first mark at the cost of the space behind it; the edge between
// the two is then put where the rest of the frame says it belongs. Storage is fixed, nothing is
// allocated.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

/// What the durations of a code are made of.
struct slice_rule {
  float unit_us;              // half a bit, or the length of one level
  int longest = 2;            // units of the longest duration inside a frame
  float tolerance = 0.3F;     // of one duration once bias and clock are known, in units
  float spread = 0.12F;       // root mean square over the frame, in units
  float clock_error = 0.03F;  // +-, as a part
  float bias = 0;             // assumed at first, in units; more than half a unit is not found
  int lead = 0;               // units of the first mark ...
  int lead_space = 0;         // ... and of the space behind it, 0 where they vary

  /// How far a receiver may shift an edge pair: what marks gain and spaces lose.
  [[nodiscard]] float most_bias() const { return std::min(0.65F * unit_us, 250.0F); }
};

/// One frame expressed in units.
class slicer {
 public:
  static constexpr int kMostDurations = 199;  // 100 bursts without the trailing gap

  /// Expresses `count` durations (µs, mark first) in units of the rule. False when the frame is not
  /// made of such units, or does not begin with the lead-in of the rule; what the slicer holds is
  /// then meaningless.
  bool slice(const float* durations, int count, const slice_rule& rule);

  [[nodiscard]] int count() const { return count_; }
  /// Units of the i-th duration, at least 1; even i are marks. REQUIRES: 0 <= i < count().
  [[nodiscard]] int units(int i) const { return units_[static_cast<size_t>(i)]; }
  /// Whether the first or the last duration was out of line and is only as good as its neighbours
  /// make it: its units are the nearest whole number.
  [[nodiscard]] bool firstIsOdd() const { return firstIsOdd_; }
  [[nodiscard]] bool lastIsOdd() const { return lastIsOdd_; }
  [[nodiscard]] float bias() const { return bias_; }    // µs by which marks are longer
  [[nodiscard]] float scale() const { return scale_; }  // µs of this frame per µs of the rule
  /// Whether the bias is one of an ordinary receiver, for codes that have few checks.
  [[nodiscard]] bool biasIsOrdinary(const slice_rule& rule) const {
    return bias_ >= -0.3F * rule.unit_us && bias_ <= 0.5F * rule.unit_us;
  }

 private:
  struct fit_range {
    int first, end;  // durations that the estimate rests on
  };
  bool fitsAsItIs(const float* durations, int count, const slice_rule& rule);
  bool fits(const float* durations, const slice_rule& rule, float assumedBias);
  void count_units(const float* durations, const slice_rule& rule);
  bool estimate(const float* durations, const slice_rule& rule, fit_range range);
  [[nodiscard]] bool leadFits(const slice_rule& rule) const;
  bool settles(const float* durations, int count, const slice_rule& rule);
  [[nodiscard]] float deviation(const float* durations, int i, const slice_rule& rule) const;

  std::array<uint8_t, kMostDurations> units_{};
  int count_ = 0;
  float bias_ = 0;
  float scale_ = 1;
  bool firstIsOdd_ = false;
  bool lastIsOdd_ = false;
};

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
  /// Takes exactly one mark or one space of `width` units that ends in an edge.
  bool mark(int width) { return run(width, 1); }
  bool space(int width) { return run(width, 0); }
  /// Takes `count` bi-phase bits, each half `width` units wide, the first bit read as the most
  /// significant one. False when a bit has no edge in its middle. REQUIRES: count <= 64.
  bool bits(int count, bi_phase coding, uint64_t* value, int width = 1);
  /// Takes `count` levels of one unit as bits (mark = 1), the first the most significant one.
  /// False when the frame's last mark is reached before. REQUIRES: count <= 64.
  void levels(int count, uint64_t* value);
  /// Whether every mark has been read.
  [[nodiscard]] bool atEnd() const { return at_ >= frame_.count(); }
  /// The duration that the next level belongs to, and its units not yet read.
  [[nodiscard]] int duration() const { return at_; }
  [[nodiscard]] int left() const { return left_; }

 private:
  bool run(int width, int wanted);
  void take(int units);

  const slicer& frame_;
  int at_;    // the current duration
  int left_;  // its units not yet taken
};
