// SPDX-License-Identifier: GPL-3.0-or-later
// RC5 and its relatives.
//
// Carrier 36 kHz (57 kHz in some variants), bi-phase, half bit 889 µs, most significant bit first;
// a zero is a mark and a space, a one a space and a mark. The space of the start bit lies in the
// gap, so a frame begins with the mark of the start bit.
//
//   RC5       S s T DDDDD FFFFFF               14 bits; s = inverted bit 6 of F
//   RC5-7F    S s T DDDDD FFFFFFF              15 bits; s = inverted bit 5 of D
//   RC5x      S s T DDDDD -4 EEEEEE FFFFFF     20 bits; s = inverted bit 6 of the subdevice E,
//                                              and a pause of four half bits after the device
//   S start bit, s second start bit, T toggle, D device, F function
//
// StreamZap sends the 15 bits of RC5-7F and reads them another way; the two cannot be told apart.
// Remotes with a faster carrier send RC5 with a half bit of 32 of its periods, down to 800 µs.
//
// There is no check; bi-phase itself, the exact number of bits and the gaps stand for it.
//
// Sample, RC5, D = 0, F = 12, T = 0:
//   889,889,1778,889,889,889,889,889,889,889,889,889,889,889,889,889,889,1778,889,889,1778,889,
//   889
// Facts: public protocol definitions in IRP notation.
#include <cmath>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kUnitUs = 889;
constexpr float kMostBiasUs = 200;
constexpr int kPause = 4;  // half bits of RC5x's pause
constexpr slice_rule kPlain{.unit_us = kUnitUs};
constexpr slice_rule kFast{.unit_us = 820};
constexpr slice_rule kPaused{.unit_us = kUnitUs, .longest = kPause + 2};

constexpr int kStartBits = 2;  // the second start bit and the toggle
constexpr int kDeviceBits = 5;
constexpr int kFunctionBits = 6;
constexpr auto kCoding = bi_phase::space_first_is_one;

}  // namespace

void Signal::tryRC5() {
  if (!within(kRc5Bounds)) return;
  const bool paused = setOff_.largest > (kPause - 1) * kUnitUs;
  slicer frame;
  if (!sliceFrame(paused ? kPaused : kPlain, &frame) && (paused || !sliceFrame(kFast, &frame)))
    return;
  // Sony's ones alone would do for the bits after an odd first mark, with a bias that none has.
  if (frame.firstIsOdd() && std::abs(frame.bias()) > kMostBiasUs) return;

  level_reader reader(frame);
  uint64_t head = 0;
  uint64_t function = 0;
  if (reader.level() != 1 || !reader.bits(kStartBits + kDeviceBits, kCoding, &head)) return;
  const int extension = head >> (kStartBits + kDeviceBits - 1) == 0 ? 1 : 0;
  const int toggle = static_cast<int>(head >> kDeviceBits & 1);
  const int device = static_cast<int>(head & 0x1F);

  if (paused) {
    uint64_t subDevice = 0;
    if (reader.level(kPause) != 0 || !reader.bits(kFunctionBits, kCoding, &subDevice) ||
        !reader.bits(kFunctionBits, kCoding, &function) || !reader.atEnd())
      return;
    const int obc = static_cast<int>(function);
    claim("RC5x", device, extension << 6 | static_cast<int>(subDevice), obc, obc);
  } else {
    if (!reader.bits(kFunctionBits, kCoding, &function)) return;
    if (reader.atEnd()) {
      const int obc = extension << 6 | static_cast<int>(function);
      claim("RC5", device, -1, obc, obc);
    } else {
      uint64_t last = 0;
      if (!reader.bits(1, kCoding, &last) || !reader.atEnd()) return;
      const int obc = static_cast<int>(function << 1 | last);
      claim("RC5-7F", extension << kDeviceBits | device, -1, obc, obc);
    }
  }
  remark("T=%d", toggle);
}
