// SPDX-License-Identifier: GPL-3.0-or-later
// The digits of XMP and Velodyne, read from burst lengths. xmp.cpp says what they mean.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace analysis {

/// The digits of a half frame.
struct xmp_half {
  static constexpr int kDigits = 8;
  static constexpr int kBursts = kDigits + 1;
  static constexpr uint8_t kRepeatBit = 8;  // of the digit t

  std::array<uint8_t, kDigits> digit;

  bool operator==(const xmp_half&) const = default;

  [[nodiscard]] int byte(size_t first) const { return digit[first] << 4 | digit[first + 1]; }
  [[nodiscard]] unsigned sum() const {
    unsigned sum = 0;
    for (const uint8_t d : digit) sum += d;
    return sum % 16;
  }
  /// The fourth digit tells the halves apart where S is not 15.
  [[nodiscard]] bool is_first() const { return digit[3] == 15; }
  /// Whether the digits are of two kinds, 8 or so apart: the shape of a pulse-distance frame.
  [[nodiscard]] bool is_of_two_lengths() const {
    constexpr int kLeastApart = 7;
    constexpr int kMostApart = 9;
    const uint8_t low = *std::min_element(digit.begin(), digit.end());
    const uint8_t high = *std::max_element(digit.begin(), digit.end());
    return high - low >= kLeastApart && high - low <= kMostApart &&
           std::all_of(digit.begin(), digit.end(),
                       [&](uint8_t d) { return d == low || d == high; });
  }
  [[nodiscard]] int subdevice_of_first() const { return digit[0] << 4 | digit[2]; }
  [[nodiscard]] bool is_repeat() const { return (digit[2] & kRepeatBit) != 0; }
  [[nodiscard]] int subdevice_of_second() const { return digit[0] << 4 | digit[3]; }
};

/// Reads the two halves of an XMP frame, which lie kBursts apart; nothing when they do not belong
/// together, or when noise leaves more than one reading.
std::optional<std::array<xmp_half, 2>> read_xmp_frame(const float* bursts);
/// Reads half of an XMP frame alone.
std::optional<xmp_half> read_xmp_half(const float* bursts);
/// Reads a Velodyne frame, which looks like a first half but for the sum of its digits.
std::optional<xmp_half> read_velodyne(const float* bursts);

}  // namespace analysis
