// SPDX-License-Identifier: GPL-3.0-or-later
// The engine for protocols that carry a bit in the space after a mark: one row says it all.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "lib/ir/arduino/matchers.h"

namespace arduino {

/// Looks at all data bits of a frame, the first bit sent highest. Returns how many of them the
/// protocol determines through the others, or -1 when they contradict each other.
using redundancy = int (*)(uint64_t bits);

/// The durations before the first symbol, in µs as sent; `tolerance` is the part by which they may
/// differ from what the symbols predict.
struct lead_in {
  unsigned count;  // even
  std::array<uint16_t, 4> us;
  double tolerance;
};

/// The symbols, in µs as sent: a mark, and the space that makes it a 0 or a 1.
struct symbols_sent {
  uint16_t mark_us, zero_us, one_us;
};

/// Clocks of remotes, and what receivers take from a mark or add to it in µs.
struct limits {
  double scale_low, scale_high;
  uint16_t shorter_us, longer_us;
};

/// A protocol: lead-in, `bits` symbols, a last mark.
struct mark_space {
  const char* type;
  lead_in lead;
  symbols_sent sent;
  unsigned bits;
  limits seen;
  redundancy check;  // null: nothing to check

  [[nodiscard]] constexpr size_t length() const { return lead.count + 2 * size_t{bits} + 1; }
  [[nodiscard]] constexpr unsigned zero_burst_us() const { return sent.mark_us + sent.zero_us; }
  [[nodiscard]] constexpr unsigned one_burst_us() const { return sent.mark_us + sent.one_us; }
};

/// Matches `f` against one row.
bool match_row(const mark_space& row, const frame& f, arduino_result& result);

}  // namespace arduino
