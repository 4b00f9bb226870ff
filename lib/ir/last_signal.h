// SPDX-License-Identifier: GPL-3.0-or-later
// The signal that was looked at last, for whoever can use again what it found out: a pattern is
// printed, for which it is decoded, and then decoded.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

class last_signal {
 public:
  static constexpr size_t kMostDurations = std::numeric_limits<uint8_t>::max();

  /// Makes this one the last; whether it was before. REQUIRES: no more than kMostDurations.
  bool is(std::span<const uint16_t> durations) {
    if (std::ranges::equal(durations, std::span(kept_).first(count_))) return true;
    count_ = durations.size();
    std::ranges::copy(durations, kept_.begin());
    return false;
  }

 private:
  std::array<uint16_t, kMostDurations> kept_ = {};
  size_t count_ = 0;
};
