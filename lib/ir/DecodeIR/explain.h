// SPDX-License-Identifier: GPL-3.0-or-later
// Why no recogniser names a frame, or why the one that does is not another: for a person whose
// remote is not known, or who adds a protocol.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/frame.h"

namespace analysis {

/// What stopped one reading of a frame.
struct attempt {
  std::string protocol;  // of a row; the recogniser's name where it reads without rows
  refusal why;
};

struct explanation {
  int first = 0, bursts = 0;      // which of the signal are explained
  std::optional<answer> found;    // of the first recogniser that claims the frame
  proof by;                       // what speaks for it; no bits where it does not say
  std::vector<attempt> attempts;  // one a protocol, those that came closest first
};

/// Shows the frame to every recogniser. The listener of the frame is not told.
explanation explain(const frame& seen);
/// The same for the frame of a signal that is named first, or else for the longest one. Durations
/// in µs, mark first.
explanation explain(std::span<const int> durations);

/// A reason in words: "the clock", "the number of bursts".
const char* text_of(reason why);

}  // namespace analysis
