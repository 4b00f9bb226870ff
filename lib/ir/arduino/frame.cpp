// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/frame.h"

#include <algorithm>

#include "lib/ir/receiver.h"

namespace arduino {
namespace {

bool is_stray(unsigned mark_us, unsigned gap_us) {
  return mark_us <= receiver::kLongestStrayUs && gap_us >= receiver::kShortestGapUs;
}

}  // namespace

frame frame_of(std::span<const uint16_t> pattern) {
  if (pattern.size() % 2 == 1) return {pattern, 0};
  return {pattern.first(pattern.size() - 1), pattern.back()};
}

frame without_stray_marks(const frame& f) {
  frame found = f;
  std::span<const uint16_t>& left = found.durations;
  if (left.size() > 2 && is_stray(left[0], left[1])) left = left.subspan(2);
  if (left.size() > 2 && is_stray(left.back(), left[left.size() - 2])) {
    found.tail = left[left.size() - 2];
    left = left.first(left.size() - 2);
  }
  return found;
}

std::optional<frame> first_copy(const frame& f) {
  for (size_t gap = 1; gap < f.durations.size(); gap += 2) {
    if (f.durations[gap] < receiver::kShortestGapUs) continue;
    if (!repeats(f.durations, gap + 1)) return {};
    return frame{f.durations.first(gap), f.durations[gap]};
  }
  return {};
}

bool repeats(std::span<const uint16_t> durations, size_t period) {
  if (durations.size() <= period) return true;
  // The gain may have settled in the first mark and its space; in those of the copies it has.
  if (!receiver::first_mark_is_plausible(durations[0], durations[period])) return false;
  for (size_t i = 2; i + period < durations.size(); i++) {
    const double first = durations[i];
    const double again = durations[i + period];
    const double jitter = receiver::jitter_us(std::max(first, again));
    if (!receiver::within(first - again, 2 * jitter)) return false;
  }
  return true;
}

}  // namespace arduino
