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
// Sample (XMP-1, device 62, subdevice 16, OEM 68, function 15), µs:
//   210,896,210,1712,210,760,210,2800,210,1304,210,1304,210,1168,210,2664,210,13800,210,896,210,
//   760,210,760,210,760,210,760,210,2800,210,760,210,760,210
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/steps.h"

namespace analysis {
namespace {

constexpr step_rule kDigitRule{.base_us = 970, .step_us = 136, .most = 15, .checked = true};
constexpr int kDigits = 8;
constexpr int kHalfBursts = kDigits + 1;
constexpr int kFrameBursts = 2 * kHalfBursts;
constexpr burst_layout kHalf{.stop = true, .bits_per_burst = 4};
constexpr burst_layout kBothHalves{.split = kDigits, .stop = true, .bits_per_burst = 4};
constexpr float kShortestBurstUs = 0.9F * kDigitRule.base_us;
constexpr float kShortestMarkUs = 100;
constexpr float kLongestMarkUs = 420;
constexpr float kLongestStopMarkUs = 700;
constexpr float kBetweenHalvesMinUs = 11500;
constexpr float kBetweenHalvesMaxUs = 15500;
constexpr float kFrameGapUs = 10000;
constexpr float kLoneHalfGapUs = 16000;
constexpr float kFullDigitUs = 970 + 15 * 136;  // the burst of the digit that is always 15
constexpr float kMostAnchorError = 0.05F;

constexpr unsigned kSumXmp = 0;
constexpr unsigned kSumVelodyne = 7;
constexpr uint8_t kRepeatBit = 8;  // of the digit t
constexpr uint8_t kLastOfPress = 9;

/// The 16 bits of the function: both bytes, the high one alone (XMP-1) or the low one (XMP-2).
struct key_codes {
  int high, low;

  [[nodiscard]] bool usesBoth() const { return high != 0 && low != 0; }
  [[nodiscard]] int obc() const { return high == 0 ? low : high; }
  [[nodiscard]] const char* name() const {
    if (usesBoth()) return "XMP";
    return low == 0 ? "XMP-1" : "XMP-2";
  }
  /// Adds what `obc` leaves out.
  void tell_low(const char* separator, answer* found) const {
    if (!usesBoth()) return;
    found->remark.print("%sOBC2 = %d Hex2 = %02X", separator, low, static_cast<unsigned>(low));
    found->hex.second = low;
  }
};

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
  /// Whether the digits are of two kinds, 8 or so apart: the shape of a pulse-distance frame.
  [[nodiscard]] bool isOfTwoLengths() const {
    constexpr int kLeastApart = 7;
    constexpr int kMostApart = 9;
    const uint8_t low = *std::min_element(digit.begin(), digit.end());
    const uint8_t high = *std::max_element(digit.begin(), digit.end());
    return high - low >= kLeastApart && high - low <= kMostApart &&
           std::all_of(digit.begin(), digit.end(),
                       [&](uint8_t d) { return d == low || d == high; });
  }
  [[nodiscard]] int subDeviceOfFirst() const { return digit[0] << 4 | digit[2]; }
  [[nodiscard]] key_codes function() const { return {byte(4), byte(6)}; }
  [[nodiscard]] bool isRepeat() const { return (digit[2] & kRepeatBit) != 0; }
  [[nodiscard]] bool has_known_toggle() const {
    return (digit[2] & ~kRepeatBit) == 0 || digit[2] == kLastOfPress;
  }
  [[nodiscard]] int subDeviceOfSecond() const { return digit[0] << 4 | digit[3]; }
};

bool marksFit(const float* frame) {
  for (int i = 0; i < kDigits; ++i) {
    if (frame[2 * i] < kShortestMarkUs || frame[2 * i] > kLongestMarkUs) return false;
  }
  return frame[2 * kDigits] <= kLongestStopMarkUs;
}

constexpr step_line kNominal{kDigitRule.base_us, kDigitRule.step_us};

/// Reads nine bursts with the clock of `line`.
bool readDigits(const float* frame, step_line line, half* found) {
  refusal why;
  if (!readSteps(frame, kDigits, kDigitRule, &line, found->digit.data(), &why)) return false;
  if (found->sum() == kSumXmp || found->sum() == kSumVelodyne) return true;
  // The digits 8 and 9 of a repeat are close enough for a learning remote to confuse them.
  if (found->isFirst() || found->digit[2] != kLastOfPress || found->sum() != 1) return false;
  found->digit[2] = kRepeatBit;
  return true;
}

/// The clock as the digit that is always 15 in a first half shows it.
step_line anchored(const float* frame) {
  const float scale =
      std::clamp((frame[6] + frame[7]) / kFullDigitUs, 1 - kMostAnchorError, 1 + kMostAnchorError);
  return {kNominal.base * scale, kNominal.step * scale};
}

/// Reads a half and checks the sum of its digits, with the nominal clock or else that of the frame.
bool readHalf(const float* frame, const step_line& own, half* found) {
  return marksFit(frame) && (readDigits(frame, kNominal, found) || readDigits(frame, own, found));
}

/// Whether the two halves belong together.
bool makeFrame(const half& first, const half& second) {
  return first.isFirst() && first.sum() == kSumXmp && second.sum() == kSumXmp &&
         first.subDeviceOfFirst() == second.subDeviceOfSecond();
}

/// The readings of a half whose sum holds, each burst as the digit below it or above it: learning
/// remotes take neighbouring lengths for one, between two digits.
class likely_halves {
 public:
  struct reading {
    half digits;
    float off;       // from the bursts: the sum of squares, in steps
    float furthest;  // of one digit, in steps
  };

  likely_halves(const float* frame, const step_line& line) : frame_(frame), line_(line) {
    if (marksFit(frame)) add({}, 0);
  }
  /// None where there are too many to tell.
  [[nodiscard]] std::span<const reading> all() const {
    return std::span(found_).first(count_ <= kMost ? count_ : 0);
  }

 private:
  static constexpr size_t kMost = 64;

  void add(const reading& begun, size_t at) {
    if (at == kDigits) {
      if (begun.digits.sum() == kSumXmp && count_++ < kMost) found_[count_ - 1] = begun;
      return;
    }
    const float exact = (frame_[2 * at] + frame_[2 * at + 1] - line_.base) / line_.step;
    const float below = std::floor(exact);
    for (const float digit : {below, below + 1}) {
      if (digit < 0 || digit > kDigitRule.most) continue;
      const float by = std::abs(exact - digit);
      reading more{begun.digits, begun.off + by * by, std::max(begun.furthest, by)};
      more.digits.digit[at] = static_cast<uint8_t>(digit);
      add(more, at + 1);
    }
  }

  const float* frame_;
  step_line line_;
  std::array<reading, kMost> found_;
  size_t count_ = 0;
};

/// The likeliest halves that belong together, if no others are nearly as likely.
bool read_likely(const frame& seen, half* first, half* second) {
  constexpr float kMargin = 1.3F;
  constexpr float kMostOff = 0.58F;   // steps
  constexpr float kMostInAll = 0.8F;  // steps²: a few merged digits, not jitter in all
  const step_line line = anchored(seen.first);
  const likely_halves firsts(seen.first, line);
  const likely_halves seconds(seen.first + 2 * kHalfBursts, line);
  float furthest = 0;
  float best = std::numeric_limits<float>::infinity();
  float next = best;
  for (const auto& one : firsts.all()) {
    for (const auto& other : seconds.all()) {
      const float off = one.off + other.off;
      if (off >= next || !makeFrame(one.digits, other.digits)) continue;
      next = std::max(off, best);
      if (off >= best) continue;
      best = off;
      furthest = std::max(one.furthest, other.furthest);
      *first = one.digits;
      *second = other.digits;
    }
  }
  return next > kMargin * best && best <= kMostInAll && furthest <= kMostOff &&
         second->has_known_toggle();
}

bool read_halves(const frame& seen, half* first, half* second) {
  const step_line own = anchored(seen.first);
  return (readHalf(seen.first, own, first) && readHalf(seen.first + 2 * kHalfBursts, own, second) &&
          makeFrame(*first, *second)) ||
         read_likely(seen, first, second);
}

/// The halves of one frame; nothing when they do not belong together.
std::optional<answer> read_whole(const frame& seen) {
  if (seen.reach < kFrameBursts || seen.off(kFrameBursts - 1) < kFrameGapUs) return {};
  half first{};
  half second{};
  if (!read_halves(seen, &first, &second)) return {};
  const key_codes codes = second.function();
  answer found{codes.name(), first.byte(6), first.subDeviceOfFirst(), codes.obc(), {codes.obc()}};
  found.remark.print("OEM = %d", first.byte(4));
  codes.tell_low(", ", &found);
  found.xmp_repeat = second.isRepeat();
  found.level = kExtendedLevel;
  found.length = kFrameBursts;
  found.layout = kBothHalves;
  return found;
}

std::optional<answer> velodyne(const half& only) {
  if (!only.isFirst() || (only.digit[5] & ~kRepeatBit) != 0) return {};
  return answer{.name = "Velodyne",
                .device = only.digit[4],
                .subdevice = only.subDeviceOfFirst(),
                .function = only.byte(6),
                .hex = {only.byte(6)},
                .layout = kHalf};
}

answer lone_first(const half& first) {
  answer found{.device = first.byte(6), .subdevice = first.subDeviceOfFirst(), .layout = kHalf};
  found.name.print("XMP:%d.%03d-%s", first.subDeviceOfFirst(), first.byte(6), "device");
  found.remark.print("first half, OEM = %d", first.byte(4));
  return found;
}

answer lone_second(const half& second) {
  const key_codes codes = second.function();
  answer found{.subdevice = second.subDeviceOfSecond(),
               .function = codes.obc(),
               .hex = {codes.obc()},
               .remark = "second half",
               .xmp_repeat = second.isRepeat(),
               .layout = kHalf};
  found.name.print("XMP:%d.%03d-%s", second.subDeviceOfSecond(), codes.obc(), "function");
  codes.tell_low(", ", &found);
  return found;
}

}  // namespace

std::optional<answer> xmp(const frame& seen) {
  if (seen.preempt_level >= kExtendedLevel) return {};
  if (seen.burst(0) < kShortestBurstUs || seen.burst(1) < kShortestBurstUs) return {};
  if (seen.trailing_gap >= kBetweenHalvesMinUs && seen.trailing_gap <= kBetweenHalvesMaxUs) {
    if (auto whole = read_whole(seen)) return whole;
    return seen.refused({reason::symbol});
  }
  if (!seen.framed(kLoneHalfGapUs)) return {};
  half found{};
  if (!readHalf(seen.first, anchored(seen.first), &found)) return seen.refused({reason::symbol});
  if (found.sum() != kSumXmp) return velodyne(found);
  if (found.isFirst()) return lone_first(found);
  // Nothing but its sum speaks for a second half alone, and a piece of another code may have it.
  if (found.isOfTwoLengths()) return {};
  return lone_second(found);
}

}  // namespace analysis
