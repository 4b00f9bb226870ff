// SPDX-License-Identifier: GPL-3.0-or-later
// What RC5 and RC6 share: from durations to marks and spaces of one unit.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "lib/ir/arduino/sent_frame.h"

namespace arduino {

/// A bi-phase signal cut into pieces of one unit, each a mark (1) or a space (0).
struct unit_levels {
  static constexpr size_t kMost = 80;
  std::array<uint8_t, kMost> level;
  size_t count;

  /// The unit at `index`; what follows the last mark is a space.
  [[nodiscard]] unsigned at(size_t index) const { return index < count ? level[index] : 0U; }
};

/// What a bi-phase code sends.
struct biphase {
  double unit_us;
  int longest_units;             // in one mark or space
  double clock_low, clock_high;  // of its remotes
  bool starts_frame;             // the first mark is that of the frame, in which the gain settles
};

/// Cuts `durations` into units and fits them. False when a duration is no multiple of the unit,
/// the fit is nothing that a receiver does, or there are more than kMost units.
/// REQUIRES: three durations, IRrecv::kBufferLength at most.
bool read_units(const biphase& code, std::span<const uint16_t> durations, unit_levels& units,
                receiver::distortion& found);

}  // namespace arduino
