// SPDX-License-Identifier: GPL-3.0-or-later
// What a matcher is asked: the frame it looks at, and the matchers themselves.
#pragma once

#include <cstdint>
#include <span>

#include "lib/ir/arduino/arduino.h"

namespace arduino {

/// A pattern that begins and ends with a mark (so an odd count), and the space after it in µs:
/// 0 where the pattern ends with its last mark.
struct frame {
  std::span<const uint16_t> durations;
  uint32_t tail;

  /// True unless a space follows that is too short to end a frame whose longest own space is
  /// `longest_us`.
  [[nodiscard]] bool ends_after(uint32_t longest_us) const {
    return tail == 0 || tail >= 2 * longest_us;
  }
};

// Each returns true and fills `result` when the frame is one of its protocol.
bool match_checked_mark_space(const frame& f, arduino_result& result);
bool match_plain_mark_space(const frame& f, arduino_result& result);
bool match_sony(const frame& f, arduino_result& result);
bool match_rc5(const frame& f, arduino_result& result);
bool match_rc6(const frame& f, arduino_result& result);
bool match_dish(const frame& f, arduino_result& result);
bool match_nec_repeat(const frame& f, arduino_result& result);

/// The fallback: true for every frame of six durations or more.
bool match_hash(const frame& f, arduino_result& result);

}  // namespace arduino
