// SPDX-License-Identifier: GPL-3.0-or-later
// RC6 in all its modes and lengths.
//
// Carrier 36 kHz, bi-phase, half bit 444 µs, most significant bit first; a one is a mark and a
// space. Lead-in: mark 6, space 2 half bits. The toggle bit is twice as wide as the others.
//
//   <6,-2> 1 MMM TT DDDDDDDD FFFFFFFF                     RC6 (mode 0), RC6-M-16
//   <6,-2> 1 MMM TT DDDDDDDD SSSS FFFFFFFF                RC6-M-20
//   <6,-2> 1 MMM TT DDDDDDDD SSSSSSSS FFFFFFFF            RC6-M-24; mode 6: Replay
//   <6,-2> 1 MMM TT DDDDDDDD SSSSSSSSSSSS FFFFFFFF        RC6-M-28
//   <6,-2> 1 MMM TT OOOOOOOO PPPPPPPP DDDDDDDD FFFFFFFF   RC6-M-32; mode 6 with O = 128: MCE,
//                                                         where P is the subdevice and the first
//                                                         bit of D the toggle
//   <6,-2> 1 MMM TT C x 56                                RC6-M-56; a fixed head: entone
//   M mode, T toggle, D device, S subdevice, F function, O and P maker
//
// RC6 has no check; bi-phase, the wide toggle, the exact number of bits and the gaps stand for it.
//
// Sample, RC6, D = 0, F = 12, T = 0:
//   2664,888,444,888,444,444,444,444,444,888,888,444,444,444,444,444,444,444,444,444,444,444,444,
//   444,444,444,444,444,444,444,444,444,444,444,888,444,444,888,444,444,444
// Facts: public protocol definitions in IRP notation.
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr int kLeadMark = 6;
constexpr int kLeadSpace = 2;
constexpr slice_rule kRule{
    .unit_us = 444, .longest = kLeadMark, .lead = kLeadMark, .lead_space = kLeadSpace};
constexpr float kShortestLeadUs = 4 * 444;
constexpr auto kCoding = bi_phase::mark_first_is_one;
constexpr int kToggleWidth = 2;
constexpr int kMostBits6 = 56;

constexpr int kMceMode = 6;
constexpr int kMceMaker = 128;
constexpr uint64_t kEntoneHead = 0xE60396FFFFF;  // the first 44 of 56 bits

constexpr int byteAt(uint64_t bits, int shift) {
  return static_cast<int>(bits >> shift & 0xFF);
}

}  // namespace

void Signal::tryRC6() {
  if (!within(kRc6Bounds) || on(0) < kShortestLeadUs) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame)) return;

  level_reader reader(frame, 2);
  uint64_t mode = 0;
  uint64_t toggle = 0;
  if (!reader.bits(4, kCoding, &mode) || !reader.bits(1, kCoding, &toggle, kToggleWidth)) return;
  if (mode >> 3 != 1) return;
  const int m = static_cast<int>(mode & 7);
  const int t = static_cast<int>(toggle);

  uint64_t bits = 0;
  int count = 0;
  for (; !reader.atEnd() && count < kMostBits6; ++count) {
    uint64_t bit = 0;
    if (!reader.bits(1, kCoding, &bit)) return;
    bits = bits << 1 | bit;
  }
  if (!reader.atEnd()) return;

  char name[kMostNameChars + 1];
  std::snprintf(name, sizeof name, "RC6-%d-%d", m, count);
  const int function = byteAt(bits, 0);
  switch (count) {
    case 16:
      claim(m == 0 ? "RC6" : name, byteAt(bits, 8), -1, function, function);
      break;
    case 20:
      claim(name, byteAt(bits, 12), static_cast<int>(bits >> 8 & 0xF), function, function);
      break;
    case 24:
      claim(m == kMceMode ? "Replay" : name, byteAt(bits, 16), byteAt(bits, 8), function, function);
      break;
    case 28:
      claim(name, byteAt(bits, 20), static_cast<int>(bits >> 8 & 0xFFF), function, function);
      break;
    case 32: {
      const int maker = byteAt(bits, 24);
      const int subDevice = byteAt(bits, 16);
      const int device = byteAt(bits, 8);
      if (m == kMceMode && maker == kMceMaker) {
        claim("MCE", device & 0x7F, subDevice, function, function);
        remark("T=%d", device >> 7);
      } else {
        claim(name, device, -1, function, function);
        remark("T=%d OEM1=%d OEM2=%d", t, maker, subDevice);
      }
      return;
    }
    case kMostBits6:
      if (m == kMceMode && bits >> 12 == kEntoneHead && (bits & 0xF) == 0) {
        claim("entone", -1, -1, byteAt(bits, 4), byteAt(bits, 4));
        return;
      }
      claim(name, -1, -1, -1);
      remark("T=%d C=%014llX", t, static_cast<unsigned long long>(bits));
      return;
    default:
      return;
  }
  remark("T=%d", t);
}
