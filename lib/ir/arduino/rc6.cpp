// SPDX-License-Identifier: GPL-3.0-or-later
// RC6: bi-phase, half bit 444 µs, mark then space = 1, space then mark = 0; highest bit first.
//
//   L 1 mmm T d…d    lead-in 6 halves mark, 2 space; start bit; mode; toggle, whose halves are
//                    twice as long; 16 data bits in mode 0, 16 to 32 in the others
//
// Data come in whole nibbles, so a frame with 17 bits has lost its end. A half without its
// counterpart breaks the code: that is the check.
// Sample: 2667,889,444,889,… with 27 durations and more.
#include "lib/ir/arduino/biphase.h"
#include "lib/ir/arduino/matchers.h"

namespace arduino {
namespace {

constexpr double kHalfUs = 444.4;
constexpr symbol kLead = {2667, 889};  // 6 and 2 halves
constexpr int kLongestHalves = 3;      // half a toggle and half a bit
// Remotes have halves of 427 to 463 µs.
constexpr biphase kCode = {kHalfUs, kLongestHalves, 0.93, 1.07, false};
constexpr size_t kLeadCount = 2;
constexpr size_t kModeBits = 3;
constexpr size_t kToggleHalf = 2;  // halves that one half of the toggle takes
constexpr size_t kFirstData = 2 + 2 * kModeBits + 2 * kToggleHalf;
constexpr size_t kFewestData = 16;
constexpr size_t kMostData = 32;
constexpr size_t kDataStep = 4;

// Appends the bits whose first halves lie at `from`, `from + 2`, … before `to`.
bool read_bits(const unit_levels& halves, size_t from, size_t to, uint64_t& value) {
  for (size_t i = from; i < to; i += 2) {
    if (halves.at(i) == halves.at(i + 1)) return false;
    value = value << 1 | halves.at(i);
  }
  return true;
}

bool read_toggle(const unit_levels& halves, size_t from, uint64_t& value) {
  const unsigned first = halves.at(from);
  const unsigned second = halves.at(from + kToggleHalf);
  if (first == second || halves.at(from + 1) != first || halves.at(from + 3) != second) {
    return false;
  }
  value = value << 1 | first;
  return true;
}

}  // namespace

bool match_rc6(const frame& f, arduino_result& result) {
  constexpr size_t kFewestDurations = kLeadCount + kFewestData;
  if (f.durations.size() < kFewestDurations) return false;
  if (!f.ends_after(unsigned{kLongestHalves} * unsigned(kHalfUs))) return false;
  if (!receiver::first_mark_is_plausible(f.durations[0], kLead.mark_us)) return false;
  unit_levels halves;
  receiver::distortion found;
  if (!read_units(kCode, f.durations.subspan(kLeadCount), halves, found)) {
    return false;
  }
  if (!lead_space_fits(f.durations, kLead, found)) return false;

  const size_t whole = halves.count + halves.count % 2;  // with the unseen half of a last 1
  if (whole < kFirstData) return false;
  const size_t data_bits = (whole - kFirstData) / 2;
  if (data_bits < kFewestData || data_bits > kMostData || data_bits % kDataStep != 0) return false;

  constexpr size_t kToggle = kFirstData - 2 * kToggleHalf;
  if (halves.at(0) != 1 || halves.at(1) != 0) return false;  // the start bit
  uint64_t value = 0;
  if (!read_bits(halves, 2, kToggle, value) || !read_toggle(halves, kToggle, value) ||
      !read_bits(halves, kFirstData, whole, value)) {
    return false;
  }
  result = {"RC6", uint32_t(value), uint32_t(kModeBits + 1 + data_bits), 0};
  return true;
}

}  // namespace arduino
