// SPDX-License-Identifier: GPL-3.0-or-later
// Symbols of two bits, one in the length of the mark and one in that of the space, each one or two
// units: what DirecTV and Epson share.
#pragma once
#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/frame.h"

namespace analysis {

/// Whether no duration but the lead-in mark is too long for a symbol.
bool has_double_pulses(const frame& seen);
bool is_long_space(float us);
/// Two bits for each of `count` symbols behind a lead-in burst: whether the mark is long, then
/// whether the space is.
bit_buffer read_double_pulses(const frame& seen, int count);
/// Whether the frame is a lead-in burst, these symbols and a stop mark; durations in us.
bool double_pulses_fit(const frame& seen, const bit_buffer& symbols, float lead_mark,
                       float lead_space, float unit);

}  // namespace analysis
