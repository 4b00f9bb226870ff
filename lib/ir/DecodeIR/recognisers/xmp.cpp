// SPDX-License-Identifier: GPL-3.0-or-later
// XMP and its one-half relative Velodyne: bursts whose length is a hexadecimal digit.
//
// Modulation: 38 kHz; mark 210 µs, space 760 µs + 136 µs x digit (a digit 0 to F per burst)
// Half frame: eight digits and a stop mark, 9 bursts. Frame: two halves 13.8 ms apart, then 80.4 ms
// Layout (one letter per digit, in the order sent):
//   first half   s c S F O O D D      second half  s c t S f f g g
//   s S: subdevice, high and low digit    O: maker (OEM)     D: device
//   f: function (high byte)  g: OBC2 (low byte)   t: 0 in the first frame of a press, 8 in its
//   repeats, 9 in the last one           F: always 15        c: checksum
// Checks: all digits of a half add up to 0 modulo 16 (Velodyne: to 7); F is 15; both halves name
//   the same subdevice.
// Variants: XMP-1 uses the high byte of the function alone, XMP-2 the low byte alone.
// Velodyne: one half, s c S F D t f f.
// Sample (XMP-1, device 62, subdevice 16, OEM 68, function 15, first half):
//   210,896,210,1712,210,760,210,2800,210,1304,210,1304,210,1168,210,2664,210,-13800
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/step_reader.h"

namespace {

constexpr step_rule kDigitRule{.base_us = 970, .step_us = 136, .most = 15, .checked = true};
constexpr int kDigits = 8;
constexpr int kHalfBursts = kDigits + 1;
constexpr float kShortestMarkUs = 100;
constexpr float kLongestMarkUs = 420;
constexpr float kLongestStopMarkUs = 700;
constexpr float kBetweenHalvesMinUs = 11500;
constexpr float kBetweenHalvesMaxUs = 15500;
constexpr float kFullDigitUs = 970 + 15 * 136;  // the burst of the digit that is always 15
constexpr float kMostAnchorError = 0.05F;

constexpr unsigned kSumXmp = 0;
constexpr unsigned kSumVelodyne = 7;
constexpr uint8_t kRepeatBit = 8;  // of the digit t
constexpr uint8_t kLastOfPress = 9;
constexpr int kSure = 2;  // preemption level

struct half {
  std::array<uint8_t, kDigits> digit;

  [[nodiscard]] int byte(size_t first) const { return digit[first] << 4 | digit[first + 1]; }
  [[nodiscard]] unsigned sum() const {
    unsigned sum = 0;
    for (const uint8_t d : digit) sum += d;
    return sum % 16;
  }
  /// The fourth digit tells the halves apart where S is not 15.
  [[nodiscard]] bool isFirst() const { return digit[3] == 15; }
  [[nodiscard]] int subDeviceOfFirst() const { return digit[0] << 4 | digit[2]; }
  [[nodiscard]] int subDeviceOfSecond() const { return digit[0] << 4 | digit[3]; }
};

bool marksFit(const float* frame) {
  for (int i = 0; i < kDigits; ++i) {
    if (frame[2 * i] < kShortestMarkUs || frame[2 * i] > kLongestMarkUs) return false;
  }
  return frame[2 * kDigits] <= kLongestStopMarkUs;
}

/// Reads nine bursts with the clock of `line` and checks the sum of their digits.
bool readHalf(const float* frame, step_line line, half* found) {
  if (!marksFit(frame)) return false;
  if (!readSteps(frame, kDigits, kDigitRule, &line, found->digit.data())) return false;
  if (found->sum() == kSumXmp || found->sum() == kSumVelodyne) return true;
  // The digits 8 and 9 of a repeat are close enough for a learning remote to confuse them.
  if (found->isFirst() || found->digit[2] != kLastOfPress || found->sum() != 1) return false;
  found->digit[2] = kRepeatBit;
  return true;
}

constexpr step_line kNominal{kDigitRule.base_us, kDigitRule.step_us};

/// The clock as the digit that is always 15 in a first half shows it.
step_line anchored(const float* frame) {
  const float scale =
      std::clamp((frame[6] + frame[7]) / kFullDigitUs, 1 - kMostAnchorError, 1 + kMostAnchorError);
  return {kNominal.base * scale, kNominal.step * scale};
}

}  // namespace

void Signal::tryXMP() {
  if (!within(kXmpBounds) || (frameLength_ != kHalfBursts && frameLength_ != 2 * kHalfBursts))
    return;
  if (burst(0) < 0.9F * kDigitRule.base_us || burst(1) < 0.9F * kDigitRule.base_us) return;

  half first{};
  const step_line own = anchored(frame_);
  if (!readHalf(frame_, kNominal, &first) && !readHalf(frame_, own, &first)) return;

  if (frameLength_ == kHalfBursts) {
    // What goes on is a whole frame or a damaged one.
    if (trailingGap_ <= kBetweenHalvesMaxUs) return;
    const int high = first.byte(4);
    if (first.isFirst() && first.sum() == kSumVelodyne && (first.digit[5] & ~kRepeatBit) == 0) {
      setPreempt(kSure);
      claim("Velodyne", first.digit[4], first.subDeviceOfFirst(), first.byte(6), first.byte(6));
      return;
    }
    if (first.sum() != kSumXmp) return;
    std::array<char, kMostNameChars + 1> name{};
    setPreempt(kSure);
    if (first.isFirst()) {
      std::snprintf(name.data(), name.size(), "XMP:%d.%03d-%s", first.subDeviceOfFirst(),
                    first.byte(6), "device");
      remark("%sOEM = %d", "first half, ", high);
      claim(name.data(), first.byte(6), first.subDeviceOfFirst(), -1);
      return;
    }
    const int low = first.byte(6);
    const int obc = high == 0 ? low : high;
    std::snprintf(name.data(), name.size(), "XMP:%d.%03d-%s", first.subDeviceOfSecond(), obc,
                  "function");
    remark("second half");
    if (high != 0 && low != 0) {
      remark("%sOBC2 = %d Hex2 = %02X", "second half, ", low, static_cast<unsigned>(low));
      hex_[1] = low;
    }
    xmpFlag_ = (first.digit[2] & kRepeatBit) != 0;
    claim(name.data(), -1, first.subDeviceOfSecond(), obc, obc);
    return;
  }

  half second{};
  if (off(kDigits) < kBetweenHalvesMinUs || off(kDigits) > kBetweenHalvesMaxUs) return;
  const float* const rest = frame_ + 2 * kHalfBursts;
  if (!readHalf(rest, kNominal, &second) && !readHalf(rest, own, &second)) return;
  if (!first.isFirst() || first.sum() != kSumXmp || second.sum() != kSumXmp) return;
  if (first.subDeviceOfFirst() != second.subDeviceOfSecond()) return;
  const int high = second.byte(4);
  const int low = second.byte(6);
  const bool both = high != 0 && low != 0;
  const int obc = high == 0 ? low : high;
  remark("%sOEM = %d", "", first.byte(4));
  if (both) {
    std::array<char, 24> maker{};
    std::snprintf(maker.data(), maker.size(), "OEM = %d, ", first.byte(4));
    remark("%sOBC2 = %d Hex2 = %02X", maker.data(), low, static_cast<unsigned>(low));
    hex_[1] = low;
  }
  xmpFlag_ = (second.digit[2] & kRepeatBit) != 0;
  setPreempt(kSure);
  claim(both       ? "XMP"
        : low == 0 ? "XMP-1"
                   : "XMP-2",
        first.byte(6), first.subDeviceOfFirst(), obc, obc);
}
