// SPDX-License-Identifier: GPL-3.0-or-later
// Codes that send a digit as the length of a burst: base + digit x step, the mark always alike.
//
// The length of a burst (mark + space) does not feel the bias of a receiver. What is left, the
// clock of the remote and a receiver that swallows a carrier period of every mark, moves base and
// step; both are estimated from the bursts themselves.
#pragma once

#include <cstdint>

#include "lib/ir/DecodeIR/refusal.h"

namespace analysis {

struct step_rule {
  float base_us;         // length of the burst that sends 0
  float step_us;         // what each further digit adds
  int most;              // the largest digit
  bool checked = false;  // a checksum covers the digits: one burst between two digits may be taken
                         // for the nearer
};

/// Base and step as one remote sends them, in µs.
struct step_line {
  float base, step;
};

/// Reads `count` bursts (pairs of mark and space, µs) into `digits`, each the nearest one. `line`
/// is where to start on entry and the estimate on return. False when a burst lies outside the
/// digits, when base or step are not those of the rule, or when the bursts scatter between digits
/// or one of them lies between two.
/// `why` then says what stopped it, the first of the bursts counted as 0.
/// REQUIRES: count > 1.
bool read_steps(const float* bursts, int count, const step_rule& rule, step_line* line,
                uint8_t* digits, refusal* why);

}  // namespace analysis
