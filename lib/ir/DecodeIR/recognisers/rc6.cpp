// SPDX-License-Identifier: GPL-3.0-or-later
// RC6 in all its modes and lengths, and the keyboard and mouse of MCIR-2.
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
// MCIR-2 has half bits of 300 µs, a lead-in mark of 9 and the same coding:
//
//   <9> 32:8 CCCCC 0:8 FFFFFFFF MMMMMMMM        MCIR-2-kbd; C five parities over F and M
//   <9> 8:8 CCCCC YYYYYYY XXXXXXX R L FFFFF     MCIR-2-mouse
//   F key, M shift keys, X and Y movement, R and L buttons
//
// RC6 has no check; bi-phase, the wide toggle, the exact number of bits and the gaps stand for it.
//
// Sample, RC6, D = 0, F = 12, T = 0:
//   2664,888,444,888,444,444,444,444,888(...)
// Facts: public protocol definitions in IRP notation.
#include <array>
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr int kLeadMark = 6;
constexpr int kLeadSpace = 2;
constexpr slice_rule kRule{.unit_us = 444, .longest = kLeadMark};
constexpr float kShortestLeadUs = 4 * 444;
constexpr auto kCoding = bi_phase::mark_first_is_one;
constexpr int kToggleWidth = 2;
constexpr int kMostBits6 = 56;

constexpr int kMceMode = 6;
constexpr int kMceMaker = 128;
constexpr uint64_t kEntoneHead = 0xE60396FFFFF;  // the first 44 of 56 bits

constexpr slice_rule kMcir{.unit_us = 300, .longest = 10};
constexpr int kMcirLeadMark = 9;
constexpr float kLongestMcirSpaceUs = 1.5F * 300 + 60;
constexpr int kKeyboardBits = 37;
constexpr int kMouseBits = 34;
constexpr unsigned kKeyboard = 32;  // the first eight bits
constexpr unsigned kMouse = 8;

/// The five parities of an MCIR-2 key, the first in bit 4.
unsigned keyCheck(unsigned key, unsigned shift) {
  constexpr std::array<std::array<unsigned, 2>, 5> kMasks = {
      {{0xF8, 0x00}, {0x07, 0x30}, {0xC7, 0x8E}, {0x36, 0xAD}, {0xAD, 0x9B}}};
  unsigned check = 0;
  for (const auto& [ofKey, ofShift] : kMasks)
    check = check << 1 | static_cast<unsigned>(parity((key & ofKey) << 8 | (shift & ofShift)));
  return check;
}

/// The bits behind the lead-in mark, whose last space runs into the first bit.
bool readMcir(const slicer& frame, wire_bits* bits) {
  if (frame.units(0) != kMcirLeadMark) return false;
  level_reader reader(frame, 1);
  while (!reader.atEnd() && bits->count < kKeyboardBits) {
    uint64_t bit = 0;
    if (!reader.bits(1, kCoding, &bit)) return false;
    bits->append(bit != 0);
  }
  return reader.atEnd();
}

constexpr int byteAt(uint64_t bits, int shift) {
  return static_cast<int>(bits >> shift & 0xFF);
}

}  // namespace

void Signal::tryRC6() {
  if (!within(kRc6Bounds) || on(0) < kShortestLeadUs) return;
  slicer frame;
  if (off(0) < kLongestMcirSpaceUs) {
    wire_bits bits;
    if (!sliceFrame(kMcir, &frame) || !readMcir(frame, &bits)) return;
    if (bits.count == kKeyboardBits && bits.msb(0, 8) == kKeyboard && bits.msb(13, 8) == 0) {
      const unsigned key = bits.msb(21, 8);
      const unsigned shift = bits.msb(29, 8);
      if (bits.msb(8, 5) != keyCheck(key, shift)) return;
      claim("MCIR-2-kbd", -1, -1, static_cast<int>(key), static_cast<int>(key));
      remark("M=%u", shift);
    } else if (bits.count == kMouseBits && bits.msb(0, 8) == kMouse) {
      const unsigned function = bits.msb(29, 5);
      claim("MCIR-2-mouse", -1, -1, static_cast<int>(function), static_cast<int>(function));
      remark("C=%u y=%u x=%u R=%u L=%u", bits.msb(8, 5), bits.msb(13, 7), bits.msb(20, 7),
             bits.bit(27), bits.bit(28));
    }
    return;
  }
  if (!sliceFrame(kRule, &frame) || frame.units(1) != kLeadSpace) return;
  if (frame.units(0) != kLeadMark && !frame.firstIsOdd()) return;

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
