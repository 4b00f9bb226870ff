// SPDX-License-Identifier: GPL-3.0-or-later
// Short codes whose bursts (mark + space) are all of one length: pid-0003 and the 8-bit remotes of
// robot cleaners.
//
//   pid-0003  40.2 kHz, unit 389 µs, lsb first, 0 = <2,-2>, 1 = <3,-1>: FFFFFFFF ffffffff
//   Roomba    38 kHz, unit 985 µs, msb first, 0 = <1,-3>, 1 = <3,-1>:  1FFFFFFF
//   F function (Roomba: with its leading one), f its complement
//
// The space of the last bit lies in the gap.
//
// Sample, Roomba, F = 130:
//   2955,985,985,2955,985,2955,985,2955,985,2955,985,2955,2955,985,985
// Facts: public protocol definitions in IRP notation; the cleaner's published character codes.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kPid3{.unit_us = 389, .longest = 3};
constexpr pulse_pair kPid3Bit{.zero_mark = 2, .zero_space = 2, .one_mark = 3, .one_space = 1};
constexpr int kPid3Bits = 16;

constexpr slice_rule kRoomba{.unit_us = 985, .longest = 3};
constexpr pulse_pair kRoombaBit{.zero_mark = 1, .zero_space = 3, .one_mark = 3, .one_space = 1};
constexpr int kRoombaBits = 8;

}  // namespace

void Signal::trySingleBurstSize() {
  if (!within(kSingleBurstSizeBounds)) return;
  slicer frame;
  wire_bits bits;
  if (frameLength_ == kPid3Bits) {
    if (!sliceFrame(kPid3, &frame) || !readPairs(frame, 0, kPid3Bits, kPid3Bit, &bits)) return;
    if ((bits.msb(0, 8) ^ bits.msb(8, 8)) != 0xFF) return;
    claim("pid-0003", -1, -1, static_cast<int>(bits.lsb(0, 8)), static_cast<int>(bits.msb(0, 8)));
  } else if (frameLength_ == kRoombaBits) {
    if (!sliceFrame(kRoomba, &frame) || !readPairs(frame, 0, kRoombaBits, kRoombaBit, &bits) ||
        bits.bit(0) != 1)
      return;
    const int function = static_cast<int>(bits.msb(0, kRoombaBits));
    claim("Roomba", -1, -1, function, function);
  }
}
