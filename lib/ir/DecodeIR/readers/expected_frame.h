// SPDX-License-Identifier: GPL-3.0-or-later
// Compares a frame with the durations it should have.
//
// A recogniser that knows what a frame says writes down what such a frame looks like and lets the
// two be compared: a receiver lengthens all marks and shortens all spaces by the same few µs, a
// remote's clock is off by a few per cent, and once both are known every duration has to fit
// tightly. One burst may be out of line: the lead-in or the last mark, where the gain of the
// receiver settles and signals are cut, or any one if the code has checks of its own to tell damage
// by.
#pragma once

#include <array>
#include <cstddef>

#include "lib/ir/DecodeIR/frame.h"
#include "lib/ir/receiver.h"

namespace analysis {

/// How far a frame may be from what is expected.
struct fit_rule {
  float tolerance_us;  // of each mark and each burst once bias and clock are known
  float most_bias_us = receiver::kMostExpectedBiasUs;  // by which marks are longer or shorter
  float clock_error = 0.06F;                           // +-, as a fraction
  bool checked = false;  // the code's own checks cover all bits: any one burst may be damaged
};

class expected_frame {
 public:
  static constexpr int kMostDurations = 200;

  /// Adds a mark or a space; neighbours of one kind are one duration, a leading space is none.
  void mark(float us) { add(us, 0); }
  void space(float us) { add(us, 1); }
  /// Bursts of the frame; the space after the last mark is not compared.
  [[nodiscard]] int bursts() const { return (count_ + 1) / 2; }
  /// Whether the bursts() bursts of a signal from burst `first` of the frame on have these
  /// durations. Tells the listener of the frame where not.
  [[nodiscard]] bool fits(const frame& seen, const fit_rule& rule, int first = 0) const;

 private:
  struct estimate {
    float clock, bias;
  };
  void add(float us, int kind);
  [[nodiscard]] float us(int i) const { return us_[static_cast<size_t>(i)]; }
  [[nodiscard]] bool fits_closely(const frame& seen, const fit_rule& rule, int first) const;
  [[nodiscard]] bool fits_noisily(const frame& seen, const fit_rule& rule, int first) const;
  [[nodiscard]] estimate estimate_of(const float* frame, int from, int end, int damaged) const;
  [[nodiscard]] float error(const float* frame, int burst, const estimate& found) const;
  static bool is_likely(const frame& seen, const estimate& found, const fit_rule& rule);
  [[nodiscard]] refusal off(const float* frame, int burst, const estimate& found,
                            const fit_rule& rule) const;

  std::array<float, kMostDurations> us_;
  int count_ = 0;
};

}  // namespace analysis
