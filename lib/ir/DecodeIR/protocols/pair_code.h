// SPDX-License-Identifier: GPL-3.0-or-later
// Codes of two bits per burst: a lead-in burst, the symbols, a stop mark. What Nokia and Xiaomi
// share.
#pragma once
#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/frame.h"
#include "lib/ir/DecodeIR/readers/steps.h"

namespace analysis {

struct pair_code {
  step_rule symbols;
  float lead_mark_us, lead_space_us;
  float mark_us;
};

/// Reads the symbols of a frame, the higher bit of each first, ready for getMsb. False when the
/// frame does not fit.
bool read_pair_code(const frame& seen, const pair_code& code, bit_buffer* bits);

}  // namespace analysis
