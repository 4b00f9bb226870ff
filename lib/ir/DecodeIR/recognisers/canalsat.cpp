// SPDX-License-Identifier: GPL-3.0-or-later
// CanalSat, CanalSatLD and Nova Pace.
//
// Bi-phase, most significant bit first, a one is a mark and a space; a start bit of one.
//
//   CanalSat    55.5 kHz, half bit 250 µs:  1 DDDDDDD SSSSSS T 0 FFFFFFF     gap 89 ms
//   CanalSatLD  56 kHz, half bit 320 µs:    1 DDDDDDD SSSSSS T 0 FFFFFF f    gap 85 ms
//   Nova Pace   38 kHz, half bit 300 µs:    1 DDDDDDDDDD SSSSSSSS FFFFFFFF T 0   gap 82 ms
//   D device, S subdevice, T toggle, F function, f the complement of F's last bit
//
// The toggle of CanalSat is zero in the first frame of a key press and one in its repeats, so a
// press caught late shows "no start frame"; that of Nova Pace changes from press to press.
//
// Sample, CanalSat, D = 0, S = 0, F = 0, T = 0:
//   250,500,250,250,250,(...),250
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kCanalSat{.unit_us = 250};
constexpr slice_rule kCanalSatLd{.unit_us = 320};
constexpr slice_rule kNovaPace{.unit_us = 300};
constexpr auto kCoding = bi_phase::mark_first_is_one;
constexpr int kCanalSatBits = 23;  // with the start bit
constexpr int kNovaPaceBits = 29;  // with the start and stop bits
constexpr int kToggleAt = 14;
constexpr int kZeroAt = 15;
constexpr int kFramesGapUs = 40000;  // a longer space parts two frames of one key press

/// Exactly `count` bits with a start bit of one.
bool readFrame(const slicer& frame, int count, wire_bits* bits) {
  level_reader reader(frame);
  bits->count = count;
  return reader.bits(count, kCoding, &bits->value) && reader.atEnd() && bits->bit(0) == 1;
}

/// Whether the frames right before this one (given with the bursts of the signal before it) are its
/// like and go back to one with the toggle at zero.
bool followsStartFrame(const float* frame, int burstsBefore, const slice_rule& rule,
                       const wire_bits& bits) {
  constexpr uint64_t kToggle = uint64_t{1} << (kCanalSatBits - 1 - kToggleAt);
  while (burstsBefore > 0) {
    int length = 1;
    while (length < burstsBefore && frame[-2 * length - 1] < kFramesGapUs) ++length;
    frame -= 2 * length;
    burstsBefore -= length;
    slicer earlier;
    wire_bits found;
    if (!earlier.slice(frame, 2 * length - 1, rule) || !readFrame(earlier, kCanalSatBits, &found) ||
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
  const slice_rule* rule = nullptr;
  if (sliceFrame(kCanalSat, &frame) && readFrame(frame, kCanalSatBits, &bits)) {
    rule = &kCanalSat;
  } else if (sliceFrame(kCanalSatLd, &frame) && readFrame(frame, kCanalSatBits, &bits)) {
    rule = &kCanalSatLd;
  } else if (sliceFrame(kNovaPace, &frame) && readFrame(frame, kNovaPaceBits, &bits)) {
    if (bits.bit(28) != 0) return;
    const int function = static_cast<int>(bits.msb(19, 8));
    claim("Nova Pace", static_cast<int>(bits.msb(1, 10)), static_cast<int>(bits.msb(11, 8)),
          function, function);
    remark("T=%u", bits.bit(27));
    return;
  } else {
    return;
  }

  if (bits.bit(kZeroAt) != 0) return;
  const bool ld = rule == &kCanalSatLd;
  if (ld && bits.bit(21) == bits.bit(22)) return;
  const int function = static_cast<int>(bits.msb(16, ld ? 6 : 7));
  claim(ld ? "CanalSatLD" : "CanalSat", static_cast<int>(bits.msb(1, 7)),
        static_cast<int>(bits.msb(8, 6)), function, function);
  if (bits.bit(kToggleAt) != 0 && !followsStartFrame(frame_, frameStart_, *rule, bits))
    remark("no start frame");
}
