// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/biphase.h"

#include <algorithm>
#include <cmath>

namespace arduino {
namespace {

using receiver::distortion;
using receiver::within;

// How far one duration and, as a root mean square, the whole frame may be off, in units. A bit
// whose halves are alike refuses what is read wrong, so a duration has room up to where the reading
// gets uncertain; the spread keeps out trains whose durations scatter evenly around the unit.
// Captured frames reach 0.36 and 0.13.
constexpr double kMostOff = 0.38;
constexpr double kMostSpread = 0.15;
constexpr double kClockLow = 0.90;
constexpr double kClockHigh = 1.09;

// Units in a duration.
unsigned units_in(double us, double unit_us) {
  return unsigned(std::max(0.0, us / unit_us + 0.5));
}

// A duration without the receiver's bias.
double unbiased_us(std::span<const uint16_t> durations, size_t i, const distortion& found) {
  return durations[i] - (i % 2 == 0 ? found.bias_us : -found.bias_us);
}

// Clock and bias, where the durations are read in whole units as `guess` has them. The last mark is
// left out, no space balances it. False when no remote has such a clock.
bool fit_units(const biphase& code, std::span<const uint16_t> durations, distortion& guess) {
  sent_frame sent;
  for (size_t i = 0; i < durations.size(); i++) {
    const unsigned n = units_in(unbiased_us(durations, i, guess), guess.clock * code.unit_us);
    sent.add(uint16_t(std::lround(std::max(n, 1U) * code.unit_us)));
  }
  guess = distortion_of(durations, sent, 0);
  return guess.clock >= kClockLow && guess.clock <= kClockHigh;
}

// How late the edge behind the first mark came while the gain settled; the burst tells.
double first_edge_late_us(const biphase& code, std::span<const uint16_t> durations,
                          const distortion& found) {
  const double unit = found.clock * code.unit_us;
  const unsigned mark =
      std::min(units_in(unbiased_us(durations, 0, found), unit), code.longest_units);
  const double mark_us = mark * code.unit_us;
  const unsigned burst = units_in(durations[0] + durations[1], unit);
  const double space_us = burst > mark ? (burst - mark) * code.unit_us : 0;
  return receiver::settling_us(found.mark_off(durations[0], mark_us),
                               found.space_off(durations[1], space_us), mark_us, space_us);
}

}  // namespace

bool read_units(const biphase& code, std::span<const uint16_t> durations, unit_levels& units,
                distortion& found) {
  // Most signals are read right at once; the second pass is for those that are biased.
  found = {1.0, 0.0};
  if (!fit_units(code, durations, found) || !fit_units(code, durations, found)) return false;
  if (!receiver::bias_is_plausible(found.bias_us)) return false;

  const double unit = found.clock * code.unit_us;
  const double later = code.starts_frame ? first_edge_late_us(code, durations, found) : 0;
  double squares = 0;
  units.count = 0;
  for (size_t i = 0; i < durations.size(); i++) {
    double us = unbiased_us(durations, i, found);
    if (i == 0) us -= later;
    if (i == 1) us += later;
    const unsigned n = units_in(us, unit);
    if (n == 0 || n > code.longest_units || units.count + n > unit_levels::kMost) return false;
    const double off = (us - n * unit) / code.unit_us;
    if (!within(off, kMostOff)) return false;
    squares += off * off;
    for (unsigned k = 0; k < n; k++) units.level[units.count++] = i % 2 == 0 ? 1 : 0;
  }
  return squares <= kMostSpread * kMostSpread * double(durations.size());
}

}  // namespace arduino
