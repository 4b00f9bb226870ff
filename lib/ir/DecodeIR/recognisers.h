// SPDX-License-Identifier: GPL-3.0-or-later
// The table of recognisers: what looks at a candidate frame, and in which order.
#pragma once

#include <array>
#include <optional>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/frame.h"

namespace analysis {

/// One row of the table.
struct recogniser {
  int index;  // its place, which the resume state stores
  const char* name;
  frame_bounds bounds;
  /// Says what the frame is, or nothing. REQUIRES: the frame is in the bounds.
  std::optional<answer> (*read)(const frame& seen);

  /// The same for any frame.
  [[nodiscard]] std::optional<answer> ask(const frame& seen) const {
    return bounds.hold(seen) ? read(seen) : std::nullopt;
  }
};

/// The recognisers in call order: the first to claim a frame wins, so each refuses every frame that
/// a later one owns.
extern const std::array<recogniser, 32> kRecognisers;

}  // namespace analysis
