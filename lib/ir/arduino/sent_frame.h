// SPDX-License-Identifier: GPL-3.0-or-later
// A frame as received against the same frame as sent: the fit and the lead-in test of all matchers.
//
// A matcher reads the symbols of a frame and writes down what its protocol would have sent for
// them. The two together say what the receiver did; then every duration is held against the one
// that was sent, with a tolerance that only has to cover jitter.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "lib/ir/arduino/arduino.h"
#include "lib/ir/receiver.h"

namespace arduino {

/// A mark and the space behind it, in µs.
struct symbol {
  uint16_t mark_us, space_us;
  [[nodiscard]] constexpr unsigned burst_us() const { return mark_us + space_us; }
};

/// The durations of a frame as its protocol sends them: µs, mark and space in turn.
class sent_frame {
 public:
  /// REQUIRES: room for it, IRrecv::kBufferLength durations in all.
  void add(uint16_t us) { us_[size_++] = us; }
  void add(const symbol& s) {
    add(s.mark_us);
    add(s.space_us);
  }
  /// Replaces the first two durations.
  void begin_with(const symbol& s) {
    us_[0] = s.mark_us;
    us_[1] = s.space_us;
  }
  [[nodiscard]] size_t size() const { return size_; }
  [[nodiscard]] uint16_t operator[](size_t i) const { return us_[i]; }

 private:
  std::array<uint16_t, IRrecv::kBufferLength> us_;
  size_t size_ = 0;
};

/// Clock and bias of a frame from its bursts, duration `from` (a mark) to the last space.
/// REQUIRES: one such burst, and as many durations sent.
receiver::distortion distortion_of(std::span<const uint16_t> durations, const sent_frame& sent,
                                   size_t from);

/// Whether the space of the lead-in `sent` fits, behind a first mark that may have been sent so.
bool lead_space_fits(std::span<const uint16_t> durations, const symbol& sent,
                     const receiver::distortion& found);

}  // namespace arduino
