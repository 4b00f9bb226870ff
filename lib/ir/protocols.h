// SPDX-License-Identifier: GPL-3.0-or-later
// What the bit decoders of this folder share.
#pragma once

#include <string_view>

#include "lib/ir/ir.h"

/// The family that the program's own decoders report.
constexpr std::string_view kOwnFamily = "ZARVO";

/// Durations above this are gaps to the hash of a pattern.
constexpr uint16_t kHashMaxEdgeUs = 2400;

/// The bit of a protocol in IR_PROTOCOL_HANDLER::protocols.
constexpr uint64_t claims(rc_proto value) {
  return uint64_t{1} << value;
}

/// A byte with its eight bits in reverse order.
uint8_t reverse8(uint32_t byte);

/// Reports the common line of the family: variant name and scancode. `bits` as in ir_result.
void report_scancode(std::string_view name, uint32_t scancode, uint32_t bits);

/// Reads bi-phase bits from `len` durations in µs, of which the midpoint of the bit periods T and
/// T2 tells short from long: a long one inverts the bit before it, a short pair repeats it. At
/// most `bit_count` bits are shifted into *bits, whose lowest bit is the one before the first;
/// their number goes into *bits_collected. Returns the index behind the last duration used.
/// REQUIRES: buf is readable for 2 * bit_count entries where len says so.
int manchester_decode(const uint16_t* buf, int len, uint32_t bit_count, uint32_t* bits,
                      uint32_t* bits_collected, int T, int T2);
