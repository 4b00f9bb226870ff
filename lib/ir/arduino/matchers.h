// SPDX-License-Identifier: GPL-3.0-or-later
// The matchers, each of one protocol or of a table of them, and the order in which they are asked.
#pragma once

#include "lib/ir/arduino/arduino.h"
#include "lib/ir/arduino/frame.h"

namespace arduino {

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

/// In the order of how much a match proves: codes that check themselves come first, then those with
/// a lead-in whose every half bit has a counterpart or whose spaces are all alike, then those that
/// only their lengths and a bit count tell apart.
inline constexpr bool (*kMatchers[])(const frame& f, arduino_result& result) = {
    match_checked_mark_space, match_rc6,        match_sony, match_rc5, match_dish,
    match_plain_mark_space,   match_nec_repeat,
};

}  // namespace arduino
