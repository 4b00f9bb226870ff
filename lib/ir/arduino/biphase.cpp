// SPDX-License-Identifier: GPL-3.0-or-later
// The part that RC5 and RC6 share: from durations to marks and spaces of one unit.
#include <algorithm>
#include <cmath>

#include "lib/ir/arduino/matchers.h"

namespace arduino {
namespace {

constexpr double kScaleLow = 0.90;
constexpr double kScaleHigh = 1.09;

// Units in a duration that the receiver made longer by `stretch_us`.
unsigned units_in(double us, double stretch_us, double unit_us) {
  return unsigned(std::max(0.0, (us - stretch_us) / unit_us + 0.5));
}

// The scale from all but the last mark, which no space balances, and the stretch from the marks.
fit fit_units(std::span<const uint16_t> durations, double unit_us, const fit& guess) {
  double total = 0;
  double marks = 0;
  unsigned all_units = 0;
  unsigned mark_units = 0;
  const size_t count = durations.size() - 1;
  for (size_t i = 0; i < count; i++) {
    const bool mark = i % 2 == 0;
    const unsigned n =
        units_in(durations[i], mark ? guess.stretch_us : -guess.stretch_us, guess.scale * unit_us);
    total += durations[i];
    all_units += n;
    if (mark) {
      marks += durations[i];
      mark_units += n;
    }
  }
  if (all_units == 0) return {};
  const double scale = total / (all_units * unit_us);
  return {scale, (marks - scale * mark_units * unit_us) / (double(count) / 2)};
}

bool scale_is_plausible(const fit& found) {
  return found.scale >= kScaleLow && found.scale <= kScaleHigh;
}

// How late the edge behind the first mark came while the gain settled; the burst tells.
double first_edge_late_us(const biphase& code, std::span<const uint16_t> durations,
                          const fit& found) {
  if (durations.size() < 2) return 0;
  const double unit = found.scale * code.unit_us;
  const unsigned mark =
      std::min(units_in(durations[0], found.stretch_us, unit), code.longest_units);
  const double mark_us = mark * code.unit_us;
  const unsigned burst = units_in(durations[0] + durations[1], 0, unit);
  const double space_us = burst > mark ? (burst - mark) * code.unit_us : 0;
  return settling_us(found.mark_off(durations[0], mark_us), found.space_off(durations[1], space_us),
                     mark_us, space_us);
}

}  // namespace

bool read_units(const biphase& code, std::span<const uint16_t> durations, unit_levels& units,
                fit& found) {
  // Most signals are read right at once; the second pass is for those that are stretched.
  found = fit_units(durations, code.unit_us, {1.0, 0.0});
  if (!scale_is_plausible(found)) return false;
  found = fit_units(durations, code.unit_us, found);
  if (!scale_is_plausible(found)) return false;
  if (found.stretch_us < code.stretch_low_us || found.stretch_us > code.stretch_high_us) {
    return false;
  }

  const double unit = found.scale * code.unit_us;
  const double later = code.starts_frame ? first_edge_late_us(code, durations, found) : 0;
  units.count = 0;
  for (size_t i = 0; i < durations.size(); i++) {
    const bool mark = i % 2 == 0;
    double us = durations[i] - (mark ? found.stretch_us : -found.stretch_us);
    if (i == 0) us -= later;
    if (i == 1) us += later;
    const unsigned n = units_in(us, 0, unit);
    if (n == 0 || n > code.longest_units || units.count + n > unit_levels::kMost) return false;
    if (!within(us - n * unit, code.tolerance_us)) return false;
    for (unsigned k = 0; k < n; k++) units.level[units.count++] = mark ? 1 : 0;
  }
  return true;
}

}  // namespace arduino
