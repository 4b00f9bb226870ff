// SPDX-License-Identifier: GPL-3.0-or-later
// The NEC repeat frame: mark 9000 µs, space 2250, mark 560, sent every 108 ms while a key is held.
// It carries nothing, so all three durations have to fit and the pattern has to end there.
// Sample: 9000,2250,560
#include "lib/ir/arduino/matchers.h"

namespace arduino {
namespace {

constexpr size_t kDurations = 3;
constexpr uint32_t kRepeatValue = 0xFFFFFFFF;

struct range {
  unsigned low_us, high_us;
  [[nodiscard]] constexpr bool holds(unsigned us) const { return us >= low_us && us <= high_us; }
};

// The burst is the steady figure; mark and space leave room for the receiver's stretch, and for its
// gain, which settles in the mark at the cost of the space.
constexpr range kLeadMark = {8250, 10100};
constexpr range kLeadSpace = {1380, 2600};
constexpr range kLeadBurst = {10450, 12400};
constexpr range kLastMark = {400, 860};

}  // namespace

bool match_nec_repeat(const frame& f, arduino_result& result) {
  if (f.durations.size() != kDurations || !f.ends_after(kLeadSpace.high_us)) return false;
  const unsigned mark = f.durations[0];
  const unsigned space = f.durations[1];
  if (!kLeadMark.holds(mark) || !kLeadSpace.holds(space) || !kLeadBurst.holds(mark + space) ||
      !kLastMark.holds(f.durations[2])) {
    return false;
  }
  result = {"NEC", kRepeatValue, 0, 0};
  return true;
}

}  // namespace arduino
