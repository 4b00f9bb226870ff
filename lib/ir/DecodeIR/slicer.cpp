// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/slicer.h"

#include <algorithm>
#include <cmath>

#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr int kRounds = 3;          // of estimating and counting anew
constexpr int kFewest = 3;          // durations that an estimate needs
constexpr float kLargeBias = 0.5F;  // of a unit
constexpr float kMostClockError = 0.08F;
constexpr float kOddest = 0.75F;    // units by which an end may be too long
constexpr float kSettledUs = 1.0F;  // the estimate moves no more
constexpr float kTooAlike = 1e-3F;  // relative determinant: bias and clock cannot be told apart

constexpr float kSettlingMark = 0.3F;    // of the first mark that may be added to it ...
constexpr float kSettlingSpace = 0.33F;  // ... and of the space behind it that this may take

bool isMark(int i) {
  return i % 2 == 0;
}

}  // namespace

bool slicer::slice(const float* durations, int count, const slice_rule& rule) {
  if (count < kFewest || count > kMostDurations) return false;
  return fitsAsItIs(durations, count, rule) || settles(durations, count, rule);
}

bool slicer::fitsAsItIs(const float* durations, int count, const slice_rule& rule) {
  count_ = count;
  // A bias of half a unit makes the nearest number of units the wrong one; so it is assumed where
  // the frame does not fit without.
  return (fits(durations, rule, rule.bias * rule.unit_us) ||
          fits(durations, rule, kLargeBias * rule.unit_us)) &&
         leadFits(rule);
}

/// Whether the frame begins with the lead-in of the rule.
bool slicer::leadFits(const slice_rule& rule) const {
  return (rule.lead == 0 || units(0) == rule.lead || firstIsOdd_) &&
         (rule.lead_space == 0 || units(1) == rule.lead_space);
}

/// Whether the frame fits once the edge behind its first mark is put where it belongs: that mark
/// and the space after it hold their sum.
bool slicer::settles(const float* durations, int count, const slice_rule& rule) {
  slice_rule body = rule;
  body.lead = body.lead_space = 0;
  if (count < 2 + kFewest || !fitsAsItIs(durations + 2, count - 2, body)) return false;
  const float unit = rule.unit_us * scale_;
  const float mark = (durations[0] - bias_) / unit;
  const float total = (durations[0] + durations[1]) / unit;
  const float lead = rule.lead > 0 ? static_cast<float>(rule.lead) : std::round(mark);
  const float space = std::round(total) - lead;
  const float later = mark - lead;
  const auto mayGrow = [&](float by, float units) {
    return by >= -rule.tolerance &&
           by <= std::min(kSettlingMark * units, kSettlingSpace * (total - units)) + rule.tolerance;
  };
  if (lead < 1 || space < 1 || !mayGrow(later, lead)) return false;
  // Where the code does not say which, the edge must not have two places.
  if (rule.lead == 0 && mayGrow(later + 1, lead - 1)) return false;
  std::array<float, kMostDurations> settled;
  std::copy_n(durations, count, settled.begin());
  settled[0] = lead * unit + bias_;
  settled[1] = durations[0] + durations[1] - settled[0];
  return fitsAsItIs(settled.data(), count, rule) && !lastIsOdd_;
}

bool slicer::fits(const float* durations, const slice_rule& rule, float assumedBias) {
  bias_ = assumedBias;
  scale_ = 1;
  // The ends may be odd, so the estimate rests on what lies between them where that is enough.
  const fit_range inner = count_ >= 2 * kFewest ? fit_range{1, count_ - 1} : fit_range{0, count_};
  for (int round = 0; round < kRounds; ++round) {
    count_units(durations, rule);
    const float before = bias_;
    if (!estimate(durations, rule, inner)) return false;
    if (std::abs(bias_ - before) < kSettledUs) break;
  }
  count_units(durations, rule);

  const float tolerance = rule.tolerance * rule.unit_us;
  const float spread = rule.spread * rule.unit_us;
  float squares = 0;
  float total = 0;
  int totalUnits = 0;
  for (int i = 1; i < count_ - 1; ++i) {
    const float off = deviation(durations, i, rule);
    if (std::abs(off) > tolerance) return false;
    squares += off * off;
    total += durations[i];
    totalUnits += units(i);
  }
  // The biases cancel out but for one space, so the sum tells the clock whatever the estimate says.
  const float nominal = static_cast<float>(totalUnits) * rule.unit_us;
  if (std::abs(total + bias_ - nominal) > kMostClockError * nominal) return false;
  if (squares > static_cast<float>(count_ - 2) * spread * spread) return false;
  const float first = deviation(durations, 0, rule);
  const float last = deviation(durations, count_ - 1, rule);
  firstIsOdd_ = std::abs(first) > tolerance;
  lastIsOdd_ = std::abs(last) > tolerance;
  return std::max(first, last) <= kOddest * rule.unit_us && !(firstIsOdd_ && lastIsOdd_);
}

/// The nearest number of units of every duration, by the bias and clock known so far.
void slicer::count_units(const float* durations, const slice_rule& rule) {
  const float perUnit = 1.0F / (rule.unit_us * scale_);
  const auto most = static_cast<float>(rule.longest);
  for (int i = 0; i < count_; ++i) {
    const float exact = (durations[i] + (isMark(i) ? -bias_ : bias_)) * perUnit + 0.5F;
    units_[static_cast<size_t>(i)] = static_cast<uint8_t>(std::clamp(exact, 1.0F, most));
  }
}

/// The bias and the clock by least squares over duration = units x unit x scale +- bias.
bool slicer::estimate(const float* durations, const slice_rule& rule, fit_range range) {
  float kk = 0;
  float ks = 0;
  float dk = 0;
  float ds = 0;
  for (int i = range.first; i < range.end; ++i) {
    const auto k = static_cast<float>(units(i)) * rule.unit_us;
    const float sign = isMark(i) ? 1.0F : -1.0F;
    kk += k * k;
    ks += k * sign;
    dk += k * durations[i];
    ds += sign * durations[i];
  }
  const auto n = static_cast<float>(range.end - range.first);
  const float determinant = kk * n - ks * ks;
  if (determinant <= kTooAlike * kk * n) return false;
  scale_ = (dk * n - ds * ks) / determinant;
  scale_ = std::clamp(scale_, 1.0F - rule.clock_error, 1.0F + rule.clock_error);
  bias_ = (ds - ks * scale_) / n;
  return std::abs(bias_) <= rule.most_bias();
}

float slicer::deviation(const float* durations, int i, const slice_rule& rule) const {
  const float nominal = static_cast<float>(units(i)) * rule.unit_us * scale_;
  return durations[i] - nominal - (isMark(i) ? bias_ : -bias_);
}

level_reader::level_reader(const slicer& frame, int from)
    : frame_(frame), at_(from), left_(from < frame.count() ? frame.units(from) : 0) {}

void level_reader::take(int units) {
  if (atEnd()) return;
  left_ -= units;
  if (left_ > 0) return;
  ++at_;
  left_ = atEnd() ? 0 : frame_.units(at_);
}

int level_reader::level(int width) {
  if (atEnd()) return 0;
  if (left_ < width) return -1;
  const int found = isMark(at_) ? 1 : 0;
  take(width);
  return found;
}

bool level_reader::run(int width, int wanted) {
  if (atEnd() || left_ != width || (isMark(at_) ? 1 : 0) != wanted) return false;
  take(width);
  return true;
}

bool level_reader::bits(int count, bi_phase coding, uint64_t* value, int width) {
  uint64_t read = 0;
  for (int i = 0; i < count; ++i) {
    const int first = level(width);
    const int second = level(width);
    if (first < 0 || second < 0 || first == second) return false;
    const bool one = (first == 1) == (coding == bi_phase::mark_first_is_one);
    read = read << 1 | (one ? 1U : 0U);
  }
  *value = read;
  return true;
}

void level_reader::levels(int count, uint64_t* value) {
  uint64_t read = 0;
  for (int i = 0; i < count; ++i) read = read << 1 | static_cast<unsigned>(level() == 1);
  *value = read;
}

bool Signal::sliceFrame(const slice_rule& rule, slicer* frame) const {
  const auto longest = static_cast<float>(rule.longest);
  const float settling = kSettlingMark * static_cast<float>(rule.lead);
  const float most = rule.unit_us * (longest + settling + 0.5F) + rule.most_bias();
  if (largestDuration_ > most || setOff_.smallest < 0.5F * rule.unit_us - rule.most_bias())
    return false;
  return frame->slice(frame_, 2 * frameLength_ - 1, rule);
}
