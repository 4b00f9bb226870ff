// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/protocols/xmp_digits.h"

#include <cmath>
#include <limits>

#include "lib/ir/DecodeIR/readers/steps.h"

namespace analysis {
namespace {

constexpr int kDigits = xmp_half::kDigits;
constexpr step_rule kDigitRule{.base_us = 970, .step_us = 136, .most = 15, .checked = true};
constexpr float kShortestMarkUs = 100;
constexpr float kLongestMarkUs = 420;
constexpr float kLongestStopMarkUs = 700;
constexpr float kFullDigitUs = 970 + 15 * 136;  // the burst of the digit that is always 15
constexpr float kMostAnchorError = 0.05F;
constexpr unsigned kSumXmp = 0;
constexpr unsigned kSumVelodyne = 7;
constexpr uint8_t kLastOfPress = 9;  // the digit t

bool marks_fit(const float* frame) {
  for (int i = 0; i < kDigits; ++i) {
    if (frame[2 * i] < kShortestMarkUs || frame[2 * i] > kLongestMarkUs) return false;
  }
  return frame[2 * kDigits] <= kLongestStopMarkUs;
}

constexpr step_line kNominal{kDigitRule.base_us, kDigitRule.step_us};

/// The clock as the digit that is always 15 in a first half shows it.
step_line anchored(const float* frame) {
  const float scale =
      std::clamp((frame[6] + frame[7]) / kFullDigitUs, 1 - kMostAnchorError, 1 + kMostAnchorError);
  return {kNominal.base * scale, kNominal.step * scale};
}

/// Reads a half with the clock of `line`, each burst as the nearest digit, and checks their sum.
bool read_digits(const float* frame, step_line line, xmp_half* found) {
  refusal why;
  if (!read_steps(frame, kDigits, kDigitRule, &line, found->digit.data(), &why)) return false;
  if (found->sum() == kSumXmp) return true;
  // The digits 8 and 9 of a repeat are close enough for a learning remote to confuse them.
  if (found->is_first() || found->digit[2] != kLastOfPress || found->sum() != 1) return false;
  found->digit[2] = xmp_half::kRepeatBit;
  return true;
}

/// Whether the two halves belong together.
bool make_frame(const xmp_half& first, const xmp_half& second) {
  return first.is_first() && first.sum() == kSumXmp && second.sum() == kSumXmp &&
         first.subdevice_of_first() == second.subdevice_of_second();
}

/// What puts bursts between digits: standard deviations, and how far readings may be off in squares
/// of them.
struct blur {
  float fraction, fixed_us;
  float most_variance;         // of each digit, on average
  float least_margin, margin;  // to the next reading, at least and in terms of that average
  float most_off, far_off;     // of one digit: the same
  float clock_error;           // usual
};
// Less of a margin, and one frame in thousands is read wrongly; more, and frames with jitter of 2
// to 5 % are lost, of which three in five are read.
constexpr blur kNoise{0.0275F, 10, 0.33F, 1, 8, 0.3F, 8, 0.015F};
// Learning remotes take neighbouring lengths for one.
constexpr blur kMerged{0, kDigitRule.step_us, 0.05F, 0, 4.8F, 0.34F, 0, 0.05F};

/// Of the readings of a frame, or of Velodyne's half, that hold together the likeliest, if it beats
/// the next clearly.
class likely_reading {
 public:
  std::array<xmp_half, 2> halves{};

  likely_reading(const float* bursts, int count, const blur& by)
      : bursts_(bursts), halves_(static_cast<size_t>(count)), by_(by) {
    const float full = bursts[6] + bursts[7];
    if (std::abs(full - kFullDigitUs) > 2 * kMostAnchorError * kFullDigitUs) return;
    for (int error = -kClockErrors; error <= kClockErrors; ++error) {
      const float clock = kClockError * static_cast<float>(error);
      scale_ = 1 + clock;
      add({}, 0, std::pow(clock / by.clock_error, 2.0F), 0);
    }
  }
  [[nodiscard]] bool is_clear() const {
    const float variance = off_ / static_cast<float>(halves_ * kDigits);
    return variance <= by_.most_variance && largest_ <= by_.most_off + by_.far_off * variance &&
           next_off_ - off_ >= by_.least_margin + by_.margin * variance;
  }

 private:
  static constexpr float kClockError = 0.01F;
  static constexpr int kClockErrors = 3;

  /// Whether a digit may stand at this place behind those read before.
  [[nodiscard]] bool may_be(const std::array<xmp_half, 2>& read, size_t place,
                            uint8_t digit) const {
    const xmp_half& first = read[0];
    switch (place) {
      case 3:
        return digit == 15;
      case 5:
        return halves_ == 2 || (digit & ~xmp_half::kRepeatBit) == 0;
      case kDigits:
        return first.sum() == kSumXmp && digit == first.digit[0];
      case kDigits + 2:
        return (digit & ~xmp_half::kRepeatBit) == 0 || digit == kLastOfPress;
      case kDigits + 3:
        return digit == first.digit[2];
      default:
        return true;
    }
  }

  /// Beyond this no reading counts.
  [[nodiscard]] float furthest() const {
    const auto digits = static_cast<float>(halves_ * kDigits);
    return by_.least_margin + (digits + by_.margin) * by_.most_variance;
  }
  /// Adds the digits from `place` on to those read, which are `off` by that, one of them
  /// by `largest`.
  void add(const std::array<xmp_half, 2>& read, size_t place, float off, float largest) {
    if (off >= next_off_ || off > furthest()) return;
    if (place == halves_ * kDigits) return offer(read, off, largest);
    const float* const burst = bursts_ + 2 * (place + place / kDigits);
    const float found = burst[0] + burst[1];
    const auto nearest =
        static_cast<int>(std::lround((found / scale_ - kNominal.base) / kNominal.step));
    for (int digit = std::max(nearest - 1, 0); digit <= std::min(nearest + 1, 15); ++digit) {
      if (!may_be(read, place, static_cast<uint8_t>(digit))) continue;
      const float sent = kNominal.base + static_cast<float>(digit) * kNominal.step;
      const float by = (found - scale_ * sent) / (by_.fraction * sent + by_.fixed_us);
      std::array<xmp_half, 2> more = read;
      more[place / kDigits].digit[place % kDigits] = static_cast<uint8_t>(digit);
      add(more, place + 1, off + by * by, std::max(largest, by * by));
    }
  }

  void offer(const std::array<xmp_half, 2>& read, float off, float largest) {
    if (read[halves_ - 1].sum() != (halves_ == 2 ? kSumXmp : kSumVelodyne)) return;
    const bool same = read == halves;
    if (off < off_) {
      if (!same) next_off_ = off_;
      off_ = off;
      largest_ = largest;
      halves = read;
    } else if (!same) {
      next_off_ = std::min(next_off_, off);
    }
  }

  const float* bursts_;
  size_t halves_;
  const blur& by_;
  float scale_ = 1;
  float largest_ = 0;
  float off_ = std::numeric_limits<float>::infinity();
  float next_off_ = off_;
};

std::optional<xmp_half> read_half(const float* bursts, const step_line& own) {
  xmp_half found{};
  if (!marks_fit(bursts)) return {};
  if (read_digits(bursts, kNominal, &found) || read_digits(bursts, own, &found)) return found;
  return {};
}

}  // namespace

std::optional<std::array<xmp_half, 2>> read_xmp_frame(const float* bursts) {
  const step_line own = anchored(bursts);
  const float* const behind = bursts + 2 * xmp_half::kBursts;
  const auto first = read_half(bursts, own);
  const auto second = read_half(behind, own);
  if (first && second && make_frame(*first, *second)) return {{*first, *second}};
  if (!marks_fit(bursts) || !marks_fit(behind)) return {};
  for (const blur& by : {kMerged, kNoise}) {
    const likely_reading likely(bursts, 2, by);
    if (likely.is_clear()) return likely.halves;
  }
  return {};
}

std::optional<xmp_half> read_xmp_half(const float* bursts) {
  return read_half(bursts, anchored(bursts));
}

std::optional<xmp_half> read_velodyne(const float* bursts) {
  if (!marks_fit(bursts)) return {};
  const likely_reading likely(bursts, 1, kNoise);
  if (!likely.is_clear()) return {};
  return likely.halves[0];
}

}  // namespace analysis
