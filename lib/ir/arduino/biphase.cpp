// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/biphase.h"

#include <algorithm>

namespace arduino {
namespace {

using receiver::distortion;
using receiver::within;

// How far one duration and, as a root mean square, the whole frame may be off, in units. A bit
// whose halves are alike refuses what is read wrong, so a duration has room up to where the reading
// gets uncertain; the spread keeps out trains whose durations scatter evenly around the unit.
// Captured frames reach 0.36 and 0.13.
constexpr double kMostOff = 0.38;
constexpr double kMostSpread = 0.13;

constexpr size_t kFirstBurst = 2;  // durations

bool clock_is_plausible(const biphase& code, const distortion& found) {
  return found.clock >= code.clock_low && found.clock <= code.clock_high;
}

// The whole number nearest to a positive one; a library call would cost more than the rest.
int rounded(double value) {
  constexpr double kHalf = 0.5;
  return int(value + kHalf);
}

uint16_t sent_us(const biphase& code, int units) {
  return uint16_t(rounded(units * code.unit_us));
}

// Every duration as the nearest one that the code sends.
sent_frame nearest(const biphase& code, std::span<const uint16_t> durations,
                   const distortion& found) {
  sent_frame sent;
  const double units_per_us = 1 / (found.clock * code.unit_us);
  for (size_t i = 0; i < durations.size(); i++) {
    const double us = durations[i] - (i % 2 == 0 ? found.bias_us : -found.bias_us);
    sent.add(sent_us(code, std::clamp(rounded(us * units_per_us), 1, code.longest_units)));
  }
  return sent;
}

// Whether the durations from `from` on fit.
bool durations_fit(const biphase& code, std::span<const uint16_t> durations, const sent_frame& sent,
                   const distortion& found, size_t from) {
  const double most_off = kMostOff * code.unit_us;
  double squares = 0;
  for (size_t i = from; i < durations.size(); i++) {
    const double off =
        i % 2 == 0 ? found.mark_off(durations[i], sent[i]) : found.space_off(durations[i], sent[i]);
    if (!within(off, most_off)) return false;
    squares += off * off;
  }
  const double most = kMostSpread * code.unit_us;
  return squares <= most * most * double(durations.size() - from);
}

// Reads the first mark and space again, as if the gain had settled in them.
bool read_settled(const biphase& code, std::span<const uint16_t> durations, const distortion& found,
                  sent_frame& sent) {
  for (int mark = 1; mark <= code.longest_units; mark++) {
    for (int space = 1; space <= code.longest_units; space++) {
      const symbol first = {sent_us(code, mark), sent_us(code, space)};
      if (!receiver::first_mark_is_plausible(durations[0], first.mark_us) ||
          !lead_space_fits(durations, first, found)) {
        continue;
      }
      sent.begin_with(first);
      return true;
    }
  }
  return false;
}

}  // namespace

bool read_units(const biphase& code, std::span<const uint16_t> durations, unit_levels& units,
                distortion& found) {
  const size_t from = code.starts_frame ? kFirstBurst : 0;
  found = distortion_of(durations, nearest(code, durations, {1.0, 0.0}), from);
  if (!clock_is_plausible(code, found)) return false;
  sent_frame sent = nearest(code, durations, found);
  found = distortion_of(durations, sent, from);
  if (!clock_is_plausible(code, found)) return false;
  if (!receiver::bias_is_plausible(found.bias_us)) return false;
  if (!durations_fit(code, durations, sent, found, 0) &&
      !(code.starts_frame && read_settled(code, durations, found, sent) &&
        durations_fit(code, durations, sent, found, kFirstBurst))) {
    return false;
  }

  const double units_per_us = 1 / code.unit_us;
  units.count = 0;
  for (size_t i = 0; i < durations.size(); i++) {
    const int n = rounded(sent[i] * units_per_us);
    if (units.count + size_t(n) > unit_levels::kMost) return false;
    for (int k = 0; k < n; k++) units.level[units.count++] = i % 2 == 0 ? 1 : 0;
  }
  return true;
}

}  // namespace arduino
