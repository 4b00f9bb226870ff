// SPDX-License-Identifier: GPL-3.0-or-later
// Why no recogniser names a frame, or why the one that does is not another: for a person whose
// remote is not known, or who adds a protocol.
#pragma once

#include <optional>
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
  std::optional<answer> found;    // of the first recogniser that claims the frame
  std::vector<attempt> attempts;  // those that came closest first
};

/// Shows the frame to every recogniser. The listener of the frame is not told.
explanation explain(const frame& seen);

/// A reason in words: "the clock", "the number of bursts".
const char* text_of(reason why);

}  // namespace analysis
