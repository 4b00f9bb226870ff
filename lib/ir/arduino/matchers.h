// SPDX-License-Identifier: GPL-3.0-or-later
// What the matchers share: the frame they look at, and the fit that tells what the receiver made
// of it.
//
// A receiver lengthens every mark of a signal, and shortens every space, by about the same time
// (its stretch), and a remote's clock may run a few per cent off (its scale). Mark + space, the
// burst, does not feel the stretch. So a matcher reads its symbols, takes the scale from the
// bursts and the stretch from the marks, and then holds every duration against the symbol it was
// read as, with a tolerance that only has to cover jitter.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>

#include "lib/ir/arduino/arduino.h"

namespace arduino {

/// A pattern that begins and ends with a mark (so an odd count), and the space after it in µs:
/// 0 where the pattern ends with its last mark.
struct frame {
  std::span<const uint16_t> durations;
  uint32_t tail;

  /// True unless a space follows that is too short to end a frame whose longest own space is
  /// `longest_us`.
  [[nodiscard]] bool ends_after(uint32_t longest_us) const {
    return tail == 0 || tail >= 2 * longest_us;
  }
};

/// The receiver's stretch in µs and the remote's clock, 1.0 = nominal.
struct fit {
  double scale;
  double stretch_us;

  [[nodiscard]] double mark_off(double us, double nominal_us) const {
    return us - scale * nominal_us - stretch_us;
  }
  [[nodiscard]] double space_off(double us, double nominal_us) const {
    return us - scale * nominal_us + stretch_us;
  }
  [[nodiscard]] double burst_off(double us, double nominal_us) const {
    return us - scale * nominal_us;
  }
};

/// What jitter may add to a duration beside the fit: part of the protocol's unit, and the steps
/// of up to 26 µs in which receivers count.
constexpr double jitter_us(double unit_us) {
  constexpr double kPart = 0.18;
  constexpr double kStepsUs = 40;
  return kPart * unit_us + kStepsUs;
}

constexpr bool within(double off, double tolerance) {
  return off <= tolerance && off >= -tolerance;
}

/// By how many µs the edge behind the first mark came late because the receiver's gain settled
/// during it: the mark, sent as `mark_us`, is longer and the space after it shorter by as much.
constexpr double settling_us(double mark_off, double space_off, double mark_us, double space_us) {
  constexpr double kPartOfMark = 0.25;
  constexpr double kPartOfSpace = 0.3;
  const double most = std::min(kPartOfMark * mark_us, kPartOfSpace * space_us);
  return std::clamp((mark_off - space_off) / 2, 0.0, most);
}

/// A bi-phase signal cut into pieces of one unit, each a mark (1) or a space (0).
struct unit_levels {
  static constexpr size_t kMost = 80;
  std::array<uint8_t, kMost> level;
  size_t count;

  /// The unit at `index`; what follows the last mark is a space.
  [[nodiscard]] unsigned at(size_t index) const { return index < count ? level[index] : 0U; }
};

/// What a bi-phase code sends, and how far receivers stretch it.
struct biphase {
  double unit_us;
  double tolerance_us;
  unsigned longest_units;  // in one mark or space
  double stretch_low_us;
  double stretch_high_us;
  bool starts_frame;  // the first mark is that of the frame, in which the gain settles
};

/// Cuts `durations` into units and fits them. False when a duration is no multiple of the unit,
/// the fit is nothing that a receiver does, or there are more than kMost units.
bool read_units(const biphase& code, std::span<const uint16_t> durations, unit_levels& units,
                fit& found);

// Each returns true and fills `result` when the frame is one of its protocol.
bool match_checked_mark_space(const frame& f, arduino_result& result);
bool match_plain_mark_space(const frame& f, arduino_result& result);
bool match_sony(const frame& f, arduino_result& result);
bool match_rc5(const frame& f, arduino_result& result);
bool match_rc6(const frame& f, arduino_result& result);
bool match_dish(const frame& f, arduino_result& result);
bool match_nec_repeat(const frame& f, arduino_result& result);

/// The fallback: true for every frame of six durations or more.
bool match_hash(const frame& f, arduino_result& result);

}  // namespace arduino
