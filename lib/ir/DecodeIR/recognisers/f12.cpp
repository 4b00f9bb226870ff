// SPDX-License-Identifier: GPL-3.0-or-later
// F12, F12x, F32, arctech and Elunevision: pulse-width codes of bursts that are all alike.
//
// A zero is mark 1, space 3, a one mark 3, space 1; the space of the last bit merges with the gap.
//
//   F12          37.9 kHz, unit 422 µs, lsb first:  DDD S FFFFFFFF
//     F12        gaps of 80 units, every frame sent twice
//     F12-0, -1  (S is the number) two frames 34 units apart
//     F12x       gaps of 16 units; the last frame carries E in place of F
//   F32          37.9 kHz, unit 422 µs, msb first:  DDDDDDDD SSSSSSSS FFFFFFFF EEEEEEEE
//   arctech      unit 388 µs, lsb first; the bits of the two dials are sent as 0 x:
//                                                   0D0D0D0D 0S0S0S0S 0001010 F 0
//   Elunevision  unit 358 µs, msb first:            <10,-3> F48080(24) FFFFFFFF
//   D device, S subdevice, F function, E the last function (F12x) or a fourth byte (F32)
//
// Nothing but the equal bursts, their number and the gaps checks an F12 frame.
//
// Sample, F12, D = 3, S = 1, F = 2:
//   1266,422,1266,422,422,1266,1266,422,422,1266,1266,422,422,1266,422,1266,422,1266,422,1266,422,
//   1266,422
// Facts: public protocol definitions in IRP notation.
#include <cstddef>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr float kUnitUs = 422;
constexpr slice_rule kRule{.unit_us = kUnitUs, .longest = 3};
constexpr pulse_pair kBit{.zero_mark = 1, .zero_space = 3, .one_mark = 3, .one_space = 1};
constexpr int kF12Bits = 12;
constexpr int kF32Bits = 32;

// The gap behind a frame includes the space of its last bit, 1 or 3 units.
constexpr float kF12xGapUs = 20 * kUnitUs;  // the longest one between the frames of F12x
constexpr float kPairGapUs = 38 * kUnitUs;  // ... of F12-0 and F12-1

constexpr slice_rule kArctech{.unit_us = 388, .longest = 3};
constexpr int kArctechBits = 25;
constexpr int kDialBits = 4;
constexpr unsigned kArctechTail = 40;  // 7 bits, least significant first

constexpr slice_rule kElunevision{.unit_us = 358, .longest = 10, .lead = 10, .lead_space = 3};
constexpr int kElunevisionBits = 32;
constexpr unsigned kElunevisionDevice = 0xF48080;

struct f12_code {
  int device, subDevice, function;
  unsigned wire;  // the function with its first bit as the most significant one
};

bool readF12(const slicer& frame, f12_code* code) {
  wire_bits bits;
  if (!readPairs(frame, 0, kF12Bits, kBit, &bits)) return false;
  *code = {static_cast<int>(bits.lsb(0, 3)), static_cast<int>(bits.bit(3)),
           static_cast<int>(bits.lsb(4, 8)), bits.msb(4, 8)};
  return true;
}

/// The function of the last of the frames that follow this one, `bursts` long with all that is
/// left of the signal, at the short gap of F12x.
int lastFunction(const float* frame, int bursts, const f12_code& code) {
  int function = code.function;
  while (bursts >= 2 * kF12Bits && frame[2 * kF12Bits - 1] <= kF12xGapUs) {
    frame += 2 * static_cast<ptrdiff_t>(kF12Bits);
    bursts -= kF12Bits;
    slicer next;
    f12_code found;
    if (!next.slice(frame, 2 * kF12Bits - 1, kRule) || !readF12(next, &found) ||
        found.device != code.device || found.subDevice != code.subDevice)
      break;
    function = found.function;
  }
  return function;
}

/// The position of an arctech dial, 1 to 16, or 0 when its bits are not sent as 0 x.
int readDial(const wire_bits& bits, int first) {
  unsigned dial = 0;
  for (int i = 0; i < kDialBits; ++i) {
    if (bits.bit(first + 2 * i) != 0) return 0;
    dial |= bits.bit(first + 2 * i + 1) << i;
  }
  return static_cast<int>(dial) + 1;
}

}  // namespace

void Signal::tryF12() {
  if (!within(kF12Bounds)) return;
  slicer frame;
  wire_bits bits;
  if (frameLength_ == kF12Bits) {
    f12_code code;
    if (!sliceFrame(kRule, &frame) || !readF12(frame, &code)) return;
    const char* name = "F12x";
    if (framingGap_ > kPairGapUs) {
      name = "F12";
    } else if (framingGap_ > kF12xGapUs) {
      name = code.subDevice == 0 ? "F12-0" : "F12-1";
    }
    claim(name, code.device, code.subDevice, code.function, static_cast<int>(code.wire));
    if (framingGap_ > kF12xGapUs) return;
    const int last = lastFunction(frame_, burstsFromFrame(), code);
    if (last != code.function) remark("E = %d", last);
  } else if (frameLength_ == kArctechBits) {
    if (!sliceFrame(kArctech, &frame) || !readPairs(frame, 0, kArctechBits, kBit, &bits)) return;
    const int device = readDial(bits, 0);
    const int subDevice = readDial(bits, 2 * kDialBits);
    if (device == 0 || subDevice == 0 || bits.lsb(16, 7) != kArctechTail || bits.bit(24) != 0)
      return;
    claim("arctech", device, subDevice, static_cast<int>(bits.bit(23)));
  } else if (frameLength_ == kF32Bits) {
    if (!sliceFrame(kRule, &frame) || !readPairs(frame, 0, kF32Bits, kBit, &bits)) return;
    const int function = static_cast<int>(bits.msb(16, 8));
    claim("F32", static_cast<int>(bits.msb(0, 8)), static_cast<int>(bits.msb(8, 8)), function,
          function);
    remark("E = %u", bits.msb(24, 8));
  } else if (frameLength_ == 1 + kElunevisionBits) {
    if (!sliceFrame(kElunevision, &frame) || frame.units(0) != 10) return;
    if (!readPairs(frame, 1, kElunevisionBits, kBit, &bits)) return;
    if (bits.msb(0, 24) != kElunevisionDevice) return;
    const int function = static_cast<int>(bits.msb(24, 8));
    claim("Elunevision", -1, -1, function, function);
  }
}
