// SPDX-License-Identifier: GPL-3.0-or-later
// What every companion makes of a pattern that was read, so that they agree on it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "companions/coding.h"
#include "companions/decoders.h"
#include "companions/formats/pattern.h"

namespace companions {

/// What a receiver delivers of a signal at once: all up to a space of over kLongestDurationUs.
struct frame {
  size_t first, size;         // its entries among the durations, without the gap
  std::optional<int> gap_us;  // nothing where the signal ends before
};

/// A signal of any length, with what is known of it as a whole.
struct heard_signal {
  std::vector<int> durations;  // µs, mark and space in turn, a mark first
  std::vector<frame> frames;
  coding form;
  std::vector<analysis_answer> analysis;

  [[nodiscard]] std::span<const int> durations_of(const frame& part) const {
    return std::span(durations).subspan(part.first, part.size);
  }
};

heard_signal hear(const pattern& from);

/// The signal analysis' first answer as the line that vantrel prints of it.
std::string analysis_line(const heard_signal& signal);

}  // namespace companions
