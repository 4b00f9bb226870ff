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
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/xmp_digits.h"

namespace analysis {
namespace {

constexpr int kFrameBursts = 2 * xmp_half::kBursts;
constexpr burst_layout kHalf{.stop = true, .bits_per_burst = 4};
constexpr burst_layout kBothHalves{.split = xmp_half::kDigits, .stop = true, .bits_per_burst = 4};
constexpr float kShortestBurstUs = 0.9F * 970;
constexpr float kBetweenHalvesMinUs = 11500;
constexpr float kBetweenHalvesMaxUs = 15500;
constexpr float kFrameGapUs = 10000;
constexpr float kLoneHalfGapUs = 16000;

/// The 16 bits of the function: both bytes, the high one alone (XMP-1) or the low one (XMP-2).
struct key_codes {
  int high, low;

  [[nodiscard]] bool uses_both() const { return high != 0 && low != 0; }
  [[nodiscard]] int obc() const { return high == 0 ? low : high; }
  [[nodiscard]] const char* name() const {
    if (uses_both()) return "XMP";
    return low == 0 ? "XMP-1" : "XMP-2";
  }
  /// Adds what `obc` leaves out.
  void tell_low(const char* separator, answer* found) const {
    if (!uses_both()) return;
    found->remark.print("%sOBC2 = %d Hex2 = %02X", separator, low, static_cast<unsigned>(low));
    found->hex.second = low;
  }
};

key_codes function_of(const xmp_half& second) {
  return {second.byte(4), second.byte(6)};
}

/// The halves of one frame; nothing when they do not belong together.
std::optional<answer> read_whole(const frame& seen) {
  if (seen.reach < kFrameBursts || seen.off(kFrameBursts - 1) < kFrameGapUs) return {};
  const auto halves = read_xmp_frame(seen.first);
  if (!halves) return {};
  const auto& [first, second] = *halves;
  const key_codes codes = function_of(second);
  answer found{codes.name(), first.byte(6), first.subdevice_of_first(), codes.obc(), {codes.obc()}};
  found.remark.print("OEM = %d", first.byte(4));
  codes.tell_low(", ", &found);
  found.xmp_repeat = second.is_repeat();
  found.level = kExtendedLevel;
  found.length = kFrameBursts;
  found.layout = kBothHalves;
  return found;
}

answer velodyne(const xmp_half& only) {
  return answer{.name = "Velodyne",
                .device = only.digit[4],
                .subdevice = only.subdevice_of_first(),
                .function = only.byte(6),
                .hex = {only.byte(6)},
                .layout = kHalf};
}

answer lone_first(const xmp_half& first) {
  answer found{.device = first.byte(6), .subdevice = first.subdevice_of_first(), .layout = kHalf};
  found.name.print("XMP:%d.%03d-%s", first.subdevice_of_first(), first.byte(6), "device");
  found.remark.print("first half, OEM = %d", first.byte(4));
  return found;
}

answer lone_second(const xmp_half& second) {
  const key_codes codes = function_of(second);
  answer found{.subdevice = second.subdevice_of_second(),
               .function = codes.obc(),
               .hex = {codes.obc()},
               .remark = "second half",
               .xmp_repeat = second.is_repeat(),
               .layout = kHalf};
  found.name.print("XMP:%d.%03d-%s", second.subdevice_of_second(), codes.obc(), "function");
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
  const auto found = read_xmp_half(seen.first);
  if (!found) {
    const auto only = read_velodyne(seen.first);
    if (only) return velodyne(*only);
    return seen.refused({reason::symbol});
  }
  if (found->is_first()) return lone_first(*found);
  // Nothing but its sum speaks for a second half alone, and a piece of another code may have it.
  if (found->is_of_two_lengths()) return {};
  return lone_second(*found);
}

}  // namespace analysis
