// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/readers/expected_frame.h"

#include <algorithm>
#include <cmath>

namespace analysis {
namespace {

// Long durations vary a little more than the clock explains.
constexpr float kRelativeError = 0.02F;
// Bursts between the first and the last one that tell clock and bias of a noisy frame.
constexpr int kFewestBetween = 6;

}  // namespace

void expected_frame::add(float us, int kind) {
  if (count_ == 0 && kind == 1) return;
  if (count_ > 0 && (count_ - 1) % 2 == kind) {
    us_[static_cast<size_t>(count_ - 1)] += us;
  } else if (count_ < kMostDurations) {
    us_[static_cast<size_t>(count_++)] = us;
  }
}

bool expected_frame::fits(const frame& seen, const fit_rule& rule, int first) const {
  return fits_closely(seen, rule, first) || fits_noisily(seen, rule, first);
}

bool expected_frame::fits_closely(const frame& seen, const fit_rule& rule, int first) const {
  const float* const frame = seen.first + ptrdiff_t{2} * first;
  int damaged = -1;
  for (int pass = 0; pass < 2; ++pass) {
    const estimate found = estimate_of(frame, 0, bursts(), damaged);
    int worst = -1;
    float worst_by = 0;
    for (int i = 0; i < bursts(); ++i) {
      const float by = error(frame, i, found) - rule.tolerance_us;
      if (i == damaged || by <= 0) continue;
      if (by > worst_by) {
        worst = i;
        worst_by = by;
      }
    }
    if (worst < 0) return is_likely(seen, found, rule);
    const bool forgiven = rule.checked || worst == 0 || worst == bursts() - 1;
    if (pass > 0 || !forgiven) {
      refusal why = off(frame, worst, found, rule);
      why.burst += first;
      seen.refused(why);
      return false;
    }
    damaged = worst;
  }
  return false;
}

/// Whether it fits through a bad receiver: each duration within jitter, and all of them together.
bool expected_frame::fits_noisily(const frame& seen, const fit_rule& rule, int first) const {
  const float* const frame = seen.first + ptrdiff_t{2} * first;
  const int last = bursts() - 1;
  if (last < kFewestBetween + 1) return false;
  const estimate found = estimate_of(frame, 1, last, -1);
  const receiver::distortion as{found.clock, found.bias};
  float squares = 0;
  for (int i = 1; i < last; ++i) {
    const float want = us(2 * i) + us(2 * i + 1);
    const auto off = static_cast<float>(as.burst_off(frame[2 * i] + frame[2 * i + 1], want) /
                                        receiver::jitter_us(want));
    const double mark_off = as.mark_off(frame[2 * i], us(2 * i));
    if (!receiver::within(off, 1) || !receiver::within(mark_off, receiver::jitter_us(us(2 * i)))) {
      return false;
    }
    squares += off * off;
  }
  return squares <= receiver::kSpread * receiver::kSpread * static_cast<float>(last - 1) &&
         receiver::first_mark_is_plausible(static_cast<int64_t>(frame[0]),
                                           static_cast<int64_t>(us(0))) &&
         receiver::first_space_is_plausible(as, as.mark_off(frame[0], us(0)), frame[1], us(1)) &&
         receiver::last_mark_is_plausible(frame[2 * last] - found.bias, us(2 * last), false) &&
         is_likely(seen, found, rule);
}

/// Whether a receiver and a remote have such a bias and clock.
bool expected_frame::is_likely(const frame& seen, const estimate& found, const fit_rule& rule) {
  if (std::abs(found.clock - 1) > rule.clock_error) {
    seen.refused(refusal::off(reason::clock, -1, found.clock, 1, rule.clock_error));
  } else if (std::abs(found.bias) > rule.most_bias_us) {
    seen.refused(refusal::off(reason::bias, -1, found.bias, 0, rule.most_bias_us));
  } else {
    return true;
  }
  return false;
}

/// The clock by the bursts (they do not feel the bias), then the bias by the marks.
/// Of bursts `from` to `end` - 1, without the damaged one.
expected_frame::estimate expected_frame::estimate_of(const float* frame, int from, int end,
                                                     int damaged) const {
  float got_bursts = 0;
  float want_bursts = 0;
  float got_marks = 0;
  float want_marks = 0;
  int marks = 0;
  for (int i = from; i < end; ++i) {
    if (i == damaged) continue;
    got_marks += frame[2 * i];
    want_marks += us(2 * i);
    ++marks;
    if (i == bursts() - 1) continue;
    got_bursts += frame[2 * i] + frame[2 * i + 1];
    want_bursts += us(2 * i) + us(2 * i + 1);
  }
  const float clock = want_bursts > 0 ? got_bursts / want_bursts : 1.0F;
  return {clock, marks > 0 ? (got_marks - clock * want_marks) / static_cast<float>(marks) : 0.0F};
}

/// How far burst i is from what is expected, beyond what its length excuses.
float expected_frame::error(const float* frame, int burst, const estimate& found) const {
  const float on = frame[2 * burst];
  const float want_on = us(2 * burst) * found.clock;
  const float on_error = std::abs(on - want_on - found.bias) - kRelativeError * want_on;
  if (burst == bursts() - 1) return on_error;
  const float want = want_on + us(2 * burst + 1) * found.clock;
  const float burst_error = std::abs(on + frame[2 * burst + 1] - want) - kRelativeError * want;
  return std::max(on_error, burst_error);
}

/// The refusal of a burst: by its mark, or else by all of it.
refusal expected_frame::off(const float* frame, int burst, const estimate& found,
                            const fit_rule& rule) const {
  const float on = frame[2 * burst];
  const float want_on = us(2 * burst) * found.clock;
  const float tolerance = rule.tolerance_us + kRelativeError * want_on;
  if (burst == bursts() - 1 || std::abs(on - want_on - found.bias) > tolerance) {
    return refusal::off(reason::mark, burst, on, want_on + found.bias, tolerance);
  }
  const float want = want_on + us(2 * burst + 1) * found.clock;
  return refusal::off(reason::symbol, burst, on + frame[2 * burst + 1], want,
                      rule.tolerance_us + kRelativeError * want);
}

}  // namespace analysis
