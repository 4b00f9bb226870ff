// SPDX-License-Identifier: GPL-3.0-or-later
// The frame inside a pattern: what a matcher is asked about.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace arduino {

/// Durations that begin and end with a mark (so an odd count), and the space after them in µs: 0
/// where the pattern ends with the last mark.
struct frame {
  std::span<const uint16_t> durations;
  uint32_t tail;

  /// True unless a space follows that is too short to end a frame whose longest own space is
  /// `longest_us`. That is also how a pattern ends that was cut inside a frame.
  [[nodiscard]] bool ends_after(uint32_t longest_us) const {
    return tail == 0 || tail >= 2 * longest_us;
  }
};

/// All of a pattern. REQUIRES: one duration.
frame frame_of(std::span<const uint16_t> pattern);

/// The frame without a stray mark before it and one behind it.
frame without_stray_marks(const frame& f);

/// The first of several copies that follow each other with a gap. Nothing where no gap is.
std::optional<frame> first_copy(const frame& f);

/// Whether what follows the first `period` durations (an even number) are copies of them, the last
/// one cut or whole.
bool repeats(std::span<const uint16_t> durations, size_t period);

}  // namespace arduino
