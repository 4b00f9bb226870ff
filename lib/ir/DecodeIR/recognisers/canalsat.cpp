// SPDX-License-Identifier: GPL-3.0-or-later
// CanalSat and CanalSatLD.
//
// Bi-phase, most significant bit first, a one is a mark and a space; a start bit of one.
//
//   CanalSat    55.5 kHz, half bit 250 µs:  1 DDDDDDD SSSSSS T 0 FFFFFFF     gap 89 ms
//   CanalSatLD  56 kHz, half bit 320 µs:    1 DDDDDDD SSSSSS T 0 FFFFFF f    gap 85 ms
//   D device, S subdevice, T toggle, F function, f the complement of F's last bit
//
// The toggle is zero in the first frame of a key press and one in its repeats, so a press caught
// late shows "no start frame".
//
// Sample, CanalSat, D = 0, S = 0, F = 0, T = 0:
//   250,500,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,
//   250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250,250
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kCanalSat{.unit_us = 250};
constexpr slice_rule kCanalSatLd{.unit_us = 320};
constexpr auto kCoding = bi_phase::mark_first_is_one;
constexpr int kBits = 23;  // with the start bit
constexpr int kToggleAt = 14;
constexpr int kZeroAt = 15;
constexpr int kFramesGapUs = 40000;  // a longer space parts two frames of one key press

/// All bits of a frame, with a start bit of one.
bool readFrame(const slicer& frame, wire_bits* bits) {
  level_reader reader(frame);
  bits->count = kBits;
  return reader.bits(kBits, kCoding, &bits->value) && reader.atEnd() && bits->bit(0) == 1;
}

/// Whether the frames right before this one (given with the bursts of the signal before it) are its
/// like and go back to one with the toggle at zero.
bool followsStartFrame(const float* frame, int burstsBefore, const slice_rule& rule,
                       const wire_bits& bits) {
  constexpr uint64_t kToggle = uint64_t{1} << (kBits - 1 - kToggleAt);
  while (burstsBefore > 0) {
    int length = 1;
    while (length < burstsBefore && frame[-2 * length - 1] < kFramesGapUs) ++length;
    frame -= 2 * length;
    burstsBefore -= length;
    slicer earlier;
    wire_bits found;
    if (!earlier.slice(frame, 2 * length - 1, rule) || !readFrame(earlier, &found) ||
        ((found.value ^ bits.value) & ~kToggle) != 0)
      return false;
    if (found.bit(kToggleAt) == 0) return true;
  }
  return false;
}

}  // namespace

void Signal::tryCanalSat() {
  if (!within(kCanalSatBounds)) return;
  slicer frame;
  wire_bits bits;
  const bool ld = !(sliceFrame(kCanalSat, &frame) && readFrame(frame, &bits));
  if (ld && !(sliceFrame(kCanalSatLd, &frame) && readFrame(frame, &bits))) return;
  if (bits.bit(kZeroAt) != 0) return;
  if (ld && bits.bit(21) == bits.bit(22)) return;
  const int function = static_cast<int>(bits.msb(16, ld ? 6 : 7));
  claim(ld ? "CanalSatLD" : "CanalSat", static_cast<int>(bits.msb(1, 7)),
        static_cast<int>(bits.msb(8, 6)), function, function);
  const slice_rule& rule = ld ? kCanalSatLd : kCanalSat;
  if (bits.bit(kToggleAt) != 0 && !followsStartFrame(frame_, frameStart_, rule, bits))
    remark("no start frame");
}
