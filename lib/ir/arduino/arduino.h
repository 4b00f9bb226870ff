// SPDX-License-Identifier: GPL-3.0-or-later
// Names the protocol of an infrared frame by matching its marks and spaces, one protocol at a
// time. A pattern that no protocol claims gets a hash, which is the same for every press of a key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "lib/ir/ir_packet.h"

/// What IRrecv found in a pattern.
struct arduino_result {
  const char* type;   // "NEC", "SONY", … or "UNKNOWN"; null when nothing was found
  uint32_t value;     // the last 32 data bits, first bit sent = highest; for "UNKNOWN" the hash
  uint32_t bits;      // data bits in the frame, 0 for a NEC repeat frame, 32 for "UNKNOWN"
  uint32_t overflow;  // durations that the buffer had no room for; nothing is found unless 0
};

class IRrecv {
 public:
  static constexpr size_t kBufferLength = 200;  // durations

  /// Matches `durations` (µs, mark and space in turn, a mark first; with or without the space
  /// after the frame, a short stray mark on either side, or copies of the frame behind it) and
  /// describes them in `result`. False, with a null type, when the pattern does not fit the buffer
  /// or is too short to say anything. Prints nothing, keeps no state.
  static bool decode(std::span<const uint16_t> durations, arduino_result& result);
};

/// Prints the line of the first `len` durations of `packet` (at most its 256), if IRrecv has one.
/// A pattern longer than IRrecv's buffer is an error in the log.
void arduino_decode(struct ir_packet* packet, size_t len);
