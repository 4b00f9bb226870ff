// SPDX-License-Identifier: GPL-3.0-or-later
// Zenith5 to Zenith8: a bit-doubled code of short and long spaces.
//
// Modulation: 40 kHz, unit 520 µs; a level 0 is sent as 1,-10, a level 1 as 1,-1,1,-8 units
// Frame: E level, then each function bit as two levels, 01 for 0 and 10 for 1, most significant
//   bit first; gap 90 ms
// Layout (one letter per bit): E F..F, five to eight F
// Checks: the two levels of a bit differ; marks all alike; the number of marks is
//   1 + E + 3 x bits, so it tells both how many bits there are and what E must be.
// Sample (Zenith5, E 0, function 18), µs:
//   520,5200,520,520,520,4160,520,5200,520,5200,520,520,520,4160,520,5200,520,520,520,4160,520,
//   520,520,4160,520,5200,520,5200,520,520,520
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/expected_frame.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 520;
constexpr float kShortBurstUs = 4 * kUnitUs;  // 2 units or else 9 and more
constexpr float kLongestMarkUs = 2 * kUnitUs;
constexpr float kLongestBurstUs = 13 * kUnitUs;
constexpr fit_rule kFit{.tolerance_us = 100, .clock_error = 0.12F, .checked = true};

/// Takes the frame's levels one by one, and notes what they should look like.
class level_pairs {
 public:
  explicit level_pairs(const frame& seen) : seen_(seen) {}

  [[nodiscard]] bool at_end() const { return at_ >= seen_.length; }
  int next() {
    // The last mark stands for a level 0: its long space is part of the gap.
    const bool one = at_ < seen_.length - 1 && seen_.burst(at_) < kShortBurstUs;
    expected_.mark(kUnitUs);
    if (one) {
      expected_.space(kUnitUs);
      expected_.mark(kUnitUs);
    }
    expected_.space(one ? 8 * kUnitUs : 10 * kUnitUs);
    at_ += one ? 2 : 1;
    return one ? 1 : 0;
  }
  /// Whether these levels were all of the frame.
  [[nodiscard]] bool fit() const { return at_ == seen_.length && expected_.fits(seen_, kFit); }

 private:
  const frame& seen_;
  expected_frame expected_;
  int at_ = 0;
};

}  // namespace

std::optional<answer> zenith(const frame& seen) {
  if (seen.on_times.largest > kLongestMarkUs || seen.off_times.largest > kLongestBurstUs) return {};
  const int bits = (seen.length - 1) / 3;
  const int extra = (seen.length - 1) % 3;
  level_pairs levels(seen);
  if (extra > 1 || levels.next() != extra) return {};
  int function = 0;
  for (int i = 0; i < bits; ++i) {
    const int first = levels.next();
    if (levels.at_end() || levels.next() == first) return seen.refused({reason::edge});
    function = function << 1 | first;
  }
  if (!levels.fit()) return {};
  answer found{"Zenith", bits, extra, function, {function}};
  found.remark.print("E=%X", static_cast<unsigned>(extra));
  return found;
}

}  // namespace analysis
