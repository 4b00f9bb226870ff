// SPDX-License-Identifier: GPL-3.0-or-later
// What a frame is known by: its name and numbers where the signal analysis has them, else its
// durations.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companions/decoders.h"
#include "companions/formats/pattern.h"

namespace companions {

struct identity {
  std::optional<analysis_answer> answer;  // nothing for a frame that the analysis cannot name
  std::vector<int> durations;             // of one frame, in µs

  /// The protocol and its numbers, or that there are none.
  [[nodiscard]] std::string text() const;
};

/// The frames of a signal: what stands between its gaps.
std::vector<identity> identify(const pattern& signal);

/// Whether two frames are the same, whatever the receiver did to them, and whatever their toggle.
bool same(const identity& a, const identity& b);

/// Whether the toggles of two frames of one key tell two presses.
bool toggled(const identity& a, const identity& b);

}  // namespace companions
