// SPDX-License-Identifier: GPL-3.0-or-later
// The NEC repeat frame: mark 9000 µs, space 2250, mark 560, sent every 108 ms while a key is held.
// It carries nothing, so all three durations have to fit and the pattern has to end there.
// Sample: 9000,2250,560
#include "lib/ir/arduino/matchers.h"
#include "lib/ir/arduino/sent_frame.h"

namespace arduino {
namespace {

constexpr size_t kDurations = 3;
constexpr uint32_t kRepeatValue = 0xFFFFFFFF;

constexpr symbol kLead = {9000, 2250};
constexpr uint16_t kLastMarkUs = 560;
constexpr double kClockLow = 0.93;
constexpr double kClockHigh = 1.10;

}  // namespace

bool match_nec_repeat(const frame& f, arduino_result& result) {
  if (f.durations.size() != kDurations || !f.ends_after(kLead.space_us)) return false;
  const double burst_us = f.durations[0] + f.durations[1];
  const receiver::distortion found = {burst_us / kLead.burst_us(), 0};
  if (found.clock < kClockLow || found.clock > kClockHigh ||
      !receiver::first_mark_is_plausible(f.durations[0], kLead.mark_us) ||
      !lead_space_fits(f.durations, kLead, found) ||
      !receiver::last_mark_is_plausible(f.durations[2], kLastMarkUs, false)) {
    return false;
  }
  result = {"NEC", kRepeatValue, 0, 0};
  return true;
}

}  // namespace arduino
