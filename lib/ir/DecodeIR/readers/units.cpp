// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/readers/units.h"

#include <algorithm>
#include <cmath>

namespace analysis {
namespace {

constexpr int kRounds = 3;          // of estimating and counting anew
constexpr int kFewest = 3;          // durations that an estimate needs
constexpr float kLargeBias = 0.5F;  // of a unit
constexpr float kMostClockError = slice_rule::kMostClockError;
constexpr float kMostTooLong = 0.75F;   // units by which an end may be too long
constexpr float kMostTooShort = 0.75F;  // units by which a first mark may be too short
constexpr float kSettledUs = 1.0F;      // the estimate moves no more
constexpr float kTooAlike = 1e-3F;      // relative determinant: bias and clock cannot be told apart

bool is_mark(int i) {
  return i % 2 == 0;
}

/// Counts units by a clock.
class unit_counter {
 public:
  unit_counter(const slice_rule& rule, float scale)
      : per_unit_(1.0F / (rule.unit_us * scale)), most_(static_cast<float>(rule.longest)) {}

  /// The nearest whole number of units, 1 to the longest, of a duration without its bias.
  [[nodiscard]] float nearest(float us) const {
    const float exact = us * per_unit_ + 0.5F;
    const float at_least_one = exact < 1.0F ? 1.0F : exact;
    const float in_range = at_least_one > most_ ? most_ : at_least_one;
    return static_cast<float>(static_cast<int>(in_range));
  }

 private:
  float per_unit_, most_;
};

/// Whether a first mark may be that of the rule's lead-in.
bool may_be_lead_in(float mark_us, const slice_rule& rule) {
  return rule.lead_space == 0 ||
         receiver::first_mark_is_plausible(
             static_cast<int64_t>(mark_us),
             static_cast<int64_t>(static_cast<float>(rule.lead) * rule.unit_us));
}

}  // namespace

bool slicer::slice(const frame& seen, const slice_rule& rule) {
  const auto longest = static_cast<float>(rule.longest);
  const float settling = receiver::kSettlingMark * static_cast<float>(rule.lead);
  const float most = rule.unit_us * (longest + settling + 0.5F) + rule.most_bias();
  const float least = 0.5F * rule.unit_us - rule.most_bias();
  if (seen.largest_us > most) return refuse({reason::unit, -1, seen.largest_us, least, most});
  if (seen.off_times.smallest < least) {
    return refuse({reason::unit, -1, seen.off_times.smallest, least, most});
  }
  return slice(seen.first, seen.durations(), rule);
}

bool slicer::slice(const float* durations, int count, const slice_rule& rule) {
  if (count < kFewest || count > kMostDurations) return refuse({reason::bursts});
  return fits_as_it_is(durations, count, rule) || settles(durations, count, rule);
}

bool slicer::fits_as_it_is(const float* durations, int count, const slice_rule& rule) {
  count_ = count;
  // A bias of half a unit makes the nearest number of units the wrong one; so it is assumed where
  // the frame does not fit without.
  return (fits(durations, rule, rule.bias * rule.unit_us) ||
          fits(durations, rule, kLargeBias * rule.unit_us)) &&
         lead_fits(durations, rule);
}

/// Whether the frame begins with the lead-in of the rule.
bool slicer::lead_fits(const float* durations, const slice_rule& rule) {
  const auto is_off = [&](int i, int wanted) {
    refuse(refusal::off(reason::lead_in, 0, durations[i], static_cast<float>(wanted) * rule.unit_us,
                        rule.tolerance * rule.unit_us));
    return false;
  };
  if (rule.lead != 0 && units(0) != rule.lead && !first_damaged_) return is_off(0, rule.lead);
  return rule.lead_space == 0 || units(1) == rule.lead_space || is_off(1, rule.lead_space);
}

/// Whether the frame fits once the edge behind its first mark is put where it belongs: that mark
/// and the space after it hold their sum.
bool slicer::settles(const float* durations, int count, const slice_rule& rule) {
  slice_rule body = rule;
  body.lead = body.lead_space = 0;
  if (!may_be_lead_in(durations[0], rule)) return false;
  if (count < 2 + kFewest || !fits_as_it_is(durations + 2, count - 2, body)) return false;
  if (rule.lead_space > 0) return lead_in_settles(durations, count, rule);
  const float unit = rule.unit_us * scale_;
  const float mark = (durations[0] - bias_) / unit;
  const float total = (durations[0] + durations[1]) / unit;
  const float lead = rule.lead > 0 ? static_cast<float>(rule.lead) : std::round(mark);
  const float space = std::round(total) - lead;
  const float later = mark - lead;
  const auto may_grow = [&](float by, float units) {
    return by >= -rule.tolerance && by <= receiver::settling(units, total - units) + rule.tolerance;
  };
  if (lead < 1 || space < 1 || !may_grow(later, lead)) return false;
  // Where the code does not say how long the first mark is, only one number of units may fit it.
  if (rule.lead == 0 && may_grow(later + 1, lead - 1)) return false;
  const float settled = lead * unit + bias_;
  return fits_behind({settled, durations[0] + durations[1] - settled}, durations, count, rule);
}

/// The same where the code says how long the space is: it may have paid for what the mark gained or
/// lost, or not.
bool slicer::lead_in_settles(const float* durations, int count, const slice_rule& rule) {
  const receiver::distortion found{scale_, bias_};
  const float mark = static_cast<float>(rule.lead) * rule.unit_us;
  const float space = static_cast<float>(rule.lead_space) * rule.unit_us;
  const double mark_off = found.mark_off(durations[0], mark);
  // A mark shorter by a unit is another code's.
  if (mark_off < -kMostTooShort * rule.unit_us ||
      !receiver::first_space_is_plausible(found, mark_off, durations[1], space)) {
    return refuse(refusal::off(reason::lead_in, 0, durations[1], space,
                               static_cast<float>(receiver::jitter_us(space))));
  }
  return fits_behind({mark * scale_ + bias_, space * scale_ - bias_}, durations, count, rule);
}

/// Whether the frame fits with another first burst.
bool slicer::fits_behind(std::array<float, 2> first, const float* durations, int count,
                         const slice_rule& rule) {
  std::array<float, kMostDurations> settled;
  std::copy_n(durations, count, settled.begin());
  std::copy(first.begin(), first.end(), settled.begin());
  return fits_as_it_is(settled.data(), count, rule) && !last_damaged_;
}

bool slicer::fits(const float* durations, const slice_rule& rule, float assumed_bias) {
  bias_ = assumed_bias;
  scale_ = 1;
  // The first and the last duration may be damaged: the estimate does without them where enough
  // others are left.
  const fit_range inner = count_ >= 2 * kFewest ? fit_range{1, count_ - 1} : fit_range{0, count_};
  for (int round = 0; round < kRounds; ++round) {
    const float before = bias_;
    if (!estimate(durations, rule, inner)) return false;
    if (std::abs(bias_ - before) < kSettledUs) break;
  }
  return durations_fit(durations, rule) && ends_fit(durations, rule);
}

/// Bias and clock by least squares over duration = units x unit x scale +- bias, in units as those
/// known so far tell them.
bool slicer::estimate(const float* durations, const slice_rule& rule, fit_range range) {
  const unit_counter counter(rule, scale_);
  float kk = 0;
  float ks = 0;
  float dk = 0;
  float ds = 0;
  const auto add_mark = [&](float us) {
    const float k = counter.nearest(us - bias_) * rule.unit_us;
    kk += k * k;
    ks += k;
    dk += k * us;
    ds += us;
  };
  const auto add_space = [&](float us) {
    const float k = counter.nearest(us + bias_) * rule.unit_us;
    kk += k * k;
    ks -= k;
    dk += k * us;
    ds -= us;
  };
  int i = range.first;
  if (!is_mark(i)) add_space(durations[i++]);
  for (; i + 1 < range.end; i += 2) {
    add_mark(durations[i]);
    add_space(durations[i + 1]);
  }
  if (i < range.end) add_mark(durations[i]);
  const auto n = static_cast<float>(range.end - range.first);
  const float determinant = kk * n - ks * ks;
  if (determinant <= kTooAlike * kk * n) return false;
  scale_ = (dk * n - ds * ks) / determinant;
  scale_ = std::clamp(scale_, 1.0F - rule.clock_error, 1.0F + rule.clock_error);
  bias_ = (ds - ks * scale_) / n;
  return std::abs(bias_) <= rule.most_bias() ||
         refuse(refusal::off(reason::bias, -1, bias_, 0, rule.most_bias()));
}

/// Counts the units of every duration; whether those between the ends are what the estimate says.
bool slicer::durations_fit(const float* durations, const slice_rule& rule) {
  const unit_counter counter(rule, scale_);
  const float tolerance = rule.tolerance * rule.unit_us;
  const float spread = rule.spread * rule.unit_us;
  float* const units = units_.data();
  const int last = count_ - 1;
  units[0] = counter.nearest(durations[0] - bias_);
  float bias = -bias_;
  float squares = 0;
  float total = 0;
  float total_units = 0;
  for (int i = 1; i < last; ++i, bias = -bias) {
    units[i] = counter.nearest(durations[i] - bias);
    const float off = durations[i] - units[i] * rule.unit_us * scale_ - bias;
    if (std::abs(off) > tolerance) {
      return refuse(refusal::off(reason::unit, i / 2, durations[i], durations[i] - off, tolerance));
    }
    squares += off * off;
    total += durations[i];
    total_units += units[i];
  }
  units[last] = counter.nearest(durations[last] - bias);
  // Between the ends stands one space more than marks: all but its bias cancels, so the sum tells
  // the clock whatever the estimate says.
  const float nominal = total_units * rule.unit_us;
  if (std::abs(total + bias_ - nominal) > kMostClockError * nominal) {
    return refuse(refusal::off(reason::clock, -1, (total + bias_) / nominal, 1, kMostClockError));
  }
  const float most_squares = static_cast<float>(count_ - 2) * spread * spread;
  return squares <= most_squares || refuse({reason::unit});
}

/// Whether at most one end is damaged, and none too long.
bool slicer::ends_fit(const float* durations, const slice_rule& rule) {
  const float tolerance = rule.tolerance * rule.unit_us;
  const float first = deviation(durations, 0, rule);
  const float last = deviation(durations, count_ - 1, rule);
  first_damaged_ = std::abs(first) > tolerance;
  last_damaged_ = std::abs(last) > tolerance;
  if (std::max(first, last) <= kMostTooLong * rule.unit_us && !(first_damaged_ && last_damaged_)) {
    return true;
  }
  return refuse(refusal::off(reason::stop, count_ / 2, durations[count_ - 1],
                             durations[count_ - 1] - last, tolerance));
}

float slicer::deviation(const float* durations, int i, const slice_rule& rule) const {
  const float nominal = static_cast<float>(units(i)) * rule.unit_us * scale_;
  return durations[i] - nominal - (is_mark(i) ? bias_ : -bias_);
}

}  // namespace analysis
