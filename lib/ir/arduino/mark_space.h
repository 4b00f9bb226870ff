// SPDX-License-Identifier: GPL-3.0-or-later
// The engine for protocols whose bits are bursts of two lengths, either by the space after a mark
// (pulse distance) or by the mark itself (pulse width): one row says it all.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "lib/ir/arduino/matchers.h"
#include "lib/ir/arduino/sent_frame.h"

namespace arduino {

/// What the bits of a frame say about each other.
enum class proof : uint8_t {
  refuted,  // they contradict each other
  weak,     // they could be by chance
  strong,   // eight of them at least are determined by others: the frame is one of its protocol
};

/// Looks at all data bits of a frame, the first bit sent highest.
using redundancy = proof (*)(uint64_t bits);

/// The bursts before the first bit.
struct lead_in {
  size_t count;
  std::array<symbol, 2> sent;
};

/// How a frame ends: with a mark behind the last symbol, or with the mark of the last symbol.
enum class ending : uint8_t { stop_mark, last_symbol };

/// Clocks of the remotes that send a protocol.
struct clocks {
  double low, high;
};

/// A frame that its bits prove has its name whatever its clock: bursts as far off as this still
/// read as themselves.
constexpr clocks kProvenClocks = {0.87, 1.13};

/// A protocol: lead-in, `bits` symbols, an end. Durations as sent.
struct mark_space {
  const char* type;
  lead_in lead;
  symbol zero, one;
  ending end;
  unsigned bits;
  clocks seen;       // of frames that their bits do not prove
  redundancy check;  // null: nothing to check

  /// Durations from the first mark to the last.
  [[nodiscard]] constexpr size_t length() const {
    const size_t whole = 2 * (lead.count + bits);
    return end == ending::stop_mark ? whole + 1 : whole - 1;
  }
};

/// Matches `f` against one row.
bool match_row(const mark_space& row, const frame& f, arduino_result& result);

/// Matches `f` against `rows` in their order.
bool match_any(std::span<const mark_space> rows, const frame& f, arduino_result& result);

}  // namespace arduino
