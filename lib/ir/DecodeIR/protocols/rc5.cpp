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

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/levels.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 889;
constexpr float kMostBiasUs = 200;
constexpr int kPause = 4;  // half bits of RC5x's pause
constexpr slice_rule kPlain{.unit_us = kUnitUs};
constexpr slice_rule kFast{.unit_us = 820};
constexpr slice_rule kPaused{.unit_us = kUnitUs, .longest = kPause + 2};

// Bits behind the start bit: the second start bit, the toggle, the device, what follows.
constexpr int kToggleAt = 1;
constexpr int kDeviceAt = 2;
constexpr int kDeviceBits = 5;
constexpr int kHeadBits = kDeviceAt + kDeviceBits;
constexpr int kFieldBits = 6;
constexpr auto kCoding = bi_phase::space_first_is_one;
// Half bits of the shortest and the longest frame: the last one may be part of the gap, and a bit
// more may follow.
constexpr int kFewestUnits = 1 + 2 * (kHeadBits + kFieldBits) - 1;
constexpr int kMostUnits = 1 + 2 * (kHeadBits + kFieldBits + 1);
constexpr int kPausedUnits = 1 + 2 * (kHeadBits + 2 * kFieldBits) + kPause;

/// How long frames last, at any clock.
struct length {
  float shortest_us, longest_us;
};
constexpr length kPlainLength{kFast.shortest_us(kFewestUnits), kPlain.longest_us(kMostUnits)};
constexpr length kPausedLength{kPaused.shortest_us(kPausedUnits - 1),
                               kPaused.longest_us(kPausedUnits)};

bool slice(const frame& seen, bool paused, slicer* frame) {
  if (paused ? !frame->slice(seen, kPaused)
             : !frame->slice(seen, kPlain) && !frame->slice(seen, kFast)) {
    return false;
  }
  // Sony's ones alone would do for the bits behind the first mark, with a bias that no remote has.
  const bool alike = seen.off_times.largest < 1.5F * kUnitUs;
  return (!alike && !frame->first_damaged()) || std::abs(frame->bias()) <= kMostBiasUs;
}

bool read_bits(const slicer& frame, bool paused, bit_buffer* bits) {
  level_reader reader(frame);
  if (reader.level() != 1 || !reader.bits(kHeadBits, kCoding, bits)) return false;
  if (paused) {
    return reader.level(kPause) == 0 && reader.bits(2 * kFieldBits, kCoding, bits) &&
           reader.at_end();
  }
  return reader.bits(kFieldBits, kCoding, bits) && reader.rest(1, kCoding, bits);
}

}  // namespace

std::optional<answer> rc5(const frame& seen) {
  const bool paused = seen.off_times.largest > (kPause - 1) * kUnitUs;
  const auto [shortest_us, longest_us] = paused ? kPausedLength : kPlainLength;
  if (seen.total_us < shortest_us || seen.total_us > longest_us) {
    return seen.refused({reason::length, -1, seen.total_us, shortest_us, longest_us});
  }
  slicer frame;
  bit_buffer bits;
  if (!slice(seen, paused, &frame)) return seen.refused(frame.why());
  if (!read_bits(frame, paused, &bits)) return seen.refused({reason::edge});
  bits.makeMsb();
  const auto number = [&](int first, int width) {
    return static_cast<int>(bits.getMsb(first, width));
  };
  const int extension = 1 - number(0, 1);
  answer found;
  found.device = number(kDeviceAt, kDeviceBits);
  if (paused) {
    found.name = "RC5x";
    found.subdevice = extension << kFieldBits | number(kHeadBits, kFieldBits);
    found.function = number(kHeadBits + kFieldBits, kFieldBits);
  } else if (bits.size() == kHeadBits + kFieldBits) {
    found.name = "RC5";
    found.function = extension << kFieldBits | number(kHeadBits, kFieldBits);
  } else {
    found.name = "RC5-7F";
    found.device |= extension << kDeviceBits;
    found.function = number(kHeadBits, kFieldBits + 1);
  }
  found.hex.first = found.function;
  found.remark.print("T=%d", number(kToggleAt, 1));
  return found;
}

}  // namespace analysis
