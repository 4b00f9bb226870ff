// SPDX-License-Identifier: GPL-3.0-or-later
// Bi-phase codes with a lead-in of their own: TDC, OrtekMCE, Amino, Zaptor, Nova Pace, MCIR-2.
//
//              carrier      half bit  lead-in      bits  a one is
//   TDC-38     38 kHz       315 µs    1,-1         17    mark, space
//   TDC-56     56.3 kHz     213 µs    1,-1         17    mark, space
//   OrtekMCE   38.6 kHz     480 µs    4,-1         17    space, mark
//   Amino      37.3, 56 kHz 268 µs    7,-6,3       32    mark, space
//   Zaptor     36, 56 kHz   330 µs    8,-6,2       32    mark, space
//   Nova Pace  38 kHz       300 µs    1,-1         28    mark, space
//   MCIR-2     38 kHz       300 µs    9            37    mark, space    (34 for the mouse)
// Layout (one letter per bit, in the order sent; most significant first, OrtekMCE least):
//   TDC        DDDDD SSSSS FFFFFFF
//   OrtekMCE   DDDDD PP FFFFFF CCCC                 P: 0 first, 1 middle, 2 last frame of a press
//   Amino      DDDD 1 T 01 00000000 FFFFFFFF 1111 CCCC         T: 1 in the first frame of a press
//   Zaptor     DDDDDDDD T SSSSSSS FFFFFFFF EEEE CCCC           T: 1 in the last frame of a press
//   Nova Pace  DDDDDDDDDD SSSSSSSS FFFFFFFF T 0                T: toggle
//   MCIR-2     00100000 CCCCC 00000000 FFFFFFFF MMMMMMMM       F: key, M: modifier keys
//     mouse    00001000 CCCCC YYYYYYY XXXXXXX RL FFFFF
// Checks: an edge in the middle of each bit, the number of bits, the fixed bits; C of OrtekMCE: 3 +
//   the one bits of D, P, F; of Amino and Zaptor: the sum of all nibbles before it; of MCIR-2: five
//   parities over F and M. TDC has no more than its bits.
// Sample (OrtekMCE, device 0, P 0, function 0), units: 4,-2,1,-1,1,-1,1,-1,1, ...
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/slicer.h"

namespace {

constexpr int k56kHz = 47000;  // between the carriers of a pair
constexpr float kClockError = 0.06F;
constexpr float kFrameGapUs = 20000;  // ends a frame of a press
constexpr float kLongestPauseUs = 120000;
constexpr int kMostFramesBeside = 16;  // of a press that are looked at for its first and last one

/// What a frame of a press is, as its own bits tell.
enum class part_of_press { kAny, kFirst, kMiddle, kLast };

/// What a frame says; -1 where a protocol has no such number.
struct message {
  const char* name;
  int device, subDevice, function;
  int extra;  // goes into the remark
  part_of_press at;

  [[nodiscard]] bool sameKey(const message& other) const {
    return name == other.name && device == other.device && subDevice == other.subDevice &&
           function == other.function && extra == other.extra;
  }
};

/// The data bits of a frame, the first one sent uppermost.
struct data_bits {
  uint64_t bits;
  int count;

  /// `width` bits from the one that was sent as number `first`.
  [[nodiscard]] unsigned field(int first, int width) const {
    return static_cast<unsigned>(bits >> (count - first - width)) & ((1U << width) - 1);
  }
  [[nodiscard]] int number(int first, int width) const {
    return static_cast<int>(field(first, width));
  }
  [[nodiscard]] int lsbNumber(int first, int width) const {
    return static_cast<int>(msb(field(first, width), width));
  }
  /// The sum of the nibbles before the last one, modulo 16.
  [[nodiscard]] unsigned nibbleSum() const {
    unsigned sum = 0;
    for (int at = 0; at < count - 4; at += 4) sum += field(at, 4);
    return sum % 16;
  }
  [[nodiscard]] unsigned lastNibble() const { return static_cast<unsigned>(bits & 15); }
};

bool readTdc(const char* name, const data_bits& data, message* found) {
  *found = {name, data.number(0, 5), data.number(5, 5), data.number(10, 7), 0, part_of_press::kAny};
  return true;
}

bool readOrtek(const char* name, const data_bits& data, message* found) {
  const unsigned part = msb(data.field(5, 2), 2);
  const int ones = std::popcount(data.field(0, 13));
  if (part > 2 || data.lsbNumber(13, 4) != (3 + ones) % 16) return false;
  constexpr std::array<part_of_press, 3> kPlaces = {part_of_press::kFirst, part_of_press::kMiddle,
                                                    part_of_press::kLast};
  *found = {name, data.lsbNumber(0, 5), -1, data.lsbNumber(7, 6), 0, kPlaces[part]};
  return true;
}

bool readAmino(const char* name, const data_bits& data, message* found) {
  const bool fixed = data.field(4, 1) == 1 && data.field(6, 2) == 1 && data.field(8, 8) == 0 &&
                     data.field(24, 4) == 15;
  if (!fixed || data.nibbleSum() != data.lastNibble()) return false;
  const part_of_press at = data.field(5, 1) == 1 ? part_of_press::kFirst : part_of_press::kMiddle;
  *found = {name, data.number(0, 4), -1, data.number(16, 8), 0, at};
  return true;
}

bool readZaptor(const char* name, const data_bits& data, message* found) {
  if (data.nibbleSum() != data.lastNibble()) return false;
  const part_of_press at = data.field(8, 1) == 1 ? part_of_press::kLast : part_of_press::kMiddle;
  *found = {name, data.number(0, 8), data.number(9, 7), data.number(16, 8), data.number(24, 4), at};
  return true;
}

bool readNovaPace(const char* name, const data_bits& data, message* found) {
  if (data.field(27, 1) != 0) return false;
  *found = {name,
            data.number(0, 10),
            data.number(10, 8),
            data.number(18, 8),
            data.number(26, 1),
            part_of_press::kAny};
  return true;
}

bool readKeyboard(const char* name, const data_bits& data, message* found) {
  const unsigned key = data.field(21, 8);
  const unsigned modifiers = data.field(29, 8);
  struct mask {
    unsigned key, modifiers;
  };
  constexpr std::array<mask, 5> kParities = {{{0b11111000, 0},
                                              {0b00000111, 0b00110000},
                                              {0b11000111, 0b10001110},
                                              {0b00110110, 0b10101101},
                                              {0b10101101, 0b10011011}}};
  unsigned check = 0;
  for (const mask& m : kParities) {
    check =
        check << 1 | static_cast<unsigned>(parity(key & m.key) ^ parity(modifiers & m.modifiers));
  }
  if (data.field(0, 8) != 32 || data.field(13, 8) != 0 || data.field(8, 5) != check) return false;
  *found = {name, -1, -1, static_cast<int>(key), static_cast<int>(modifiers), part_of_press::kAny};
  return true;
}

bool readMouse(const char* name, const data_bits& data, message* found) {
  if (data.field(0, 8) != 8) return false;
  *found = {name, -1, -1, data.number(29, 5), data.number(13, 16), part_of_press::kAny};
  return true;
}

struct biphase_code {
  const char* name;    // at about 38 kHz or when the carrier is not known
  const char* name56;  // at 56 kHz
  slice_rule half_bit;
  std::array<int, 3> lead;  // units of its mark, space, mark; 0 for none
  int bits;
  bi_phase coding;
  bool (*read)(const char* name, const data_bits& data, message* found);

  [[nodiscard]] constexpr float length(float units) const { return half_bit.unit_us * units; }
  [[nodiscard]] constexpr int units() const { return lead[0] + lead[1] + lead[2] + 2 * bits; }
};

constexpr slice_rule halfBit(float us, int longest) {
  return {.unit_us = us, .longest = longest, .clock_error = kClockError};
}

constexpr auto kMarkFirst = bi_phase::mark_first_is_one;
constexpr auto kSpaceFirst = bi_phase::space_first_is_one;
constexpr std::array<biphase_code, 8> kCodes = {{
    {"TDC-38", "TDC-38", halfBit(315, 2), {1, 1, 0}, 17, kMarkFirst, readTdc},
    {"TDC-56", "TDC-56", halfBit(213, 2), {1, 1, 0}, 17, kMarkFirst, readTdc},
    {"OrtekMCE", "OrtekMCE", halfBit(480, 4), {4, 1, 0}, 17, kSpaceFirst, readOrtek},
    {"Amino", "Amino-56", halfBit(268, 7), {7, 6, 3}, 32, kMarkFirst, readAmino},
    {"Zaptor-36", "Zaptor-56", halfBit(330, 8), {8, 6, 2}, 32, kMarkFirst, readZaptor},
    {"Nova Pace", "Nova Pace", halfBit(300, 2), {1, 1, 0}, 28, kMarkFirst, readNovaPace},
    {"MCIR-2-kbd", "MCIR-2-kbd", halfBit(300, 9), {9, 0, 0}, 37, kMarkFirst, readKeyboard},
    {"MCIR-2-mouse", "MCIR-2-mouse", halfBit(300, 9), {9, 0, 0}, 34, kMarkFirst, readMouse},
}};

/// Whether a frame this long, without its gap, can be one of the code: its last half bit may be a
/// space.
bool lengthFits(float total, const biphase_code& code) {
  const auto units = static_cast<float>(code.units());
  return total > code.length((1 - kClockError) * (units - 1)) &&
         total < code.length((1 + kClockError) * units);
}

bool readSliced(const slicer& sliced, const biphase_code& code, int carrier, message* found) {
  level_reader levels(sliced);
  int level = 1;
  for (const int units : code.lead) {
    if (units > 0 && levels.level(units) != level) return false;
    level = 1 - level;
  }
  data_bits data{0, code.bits};
  if (!levels.bits(code.bits, code.coding, &data.bits) || !levels.atEnd()) return false;
  return code.read(carrier >= k56kHz ? code.name56 : code.name, data, found);
}

/// The frames of a press beside the one at hand.
struct press {
  bool hasFirst = false, hasLast = false, hasOthers = false;

  void add(part_of_press at) {
    hasFirst |= at == part_of_press::kFirst;
    hasLast |= at == part_of_press::kLast;
  }
};

struct neighbour {
  const float* frame;
  int bursts;
};

/// Reads a frame beside the one at hand; whether it is of the same press.
bool joins(const neighbour& beside, const biphase_code& code, int carrier, const message& told,
           press* found) {
  slicer sliced;
  message other{};
  if (beside.bursts == 0 || !sliced.slice(beside.frame, 2 * beside.bursts - 1, code.half_bit) ||
      !readSliced(sliced, code, carrier, &other) || !told.sameKey(other)) {
    return false;
  }
  found->add(other.at);
  found->hasOthers = true;
  return true;
}

/// The frame behind `frame` that ends with a gap among `available` bursts.
neighbour frameAfter(const float* frame, int available, int most) {
  for (int i = 0; i < std::min(available, most); ++i) {
    if (frame[2 * i + 1] >= kFrameGapUs) return {frame, i + 1};
  }
  return {frame, 0};
}

/// The frame before `end`, which has `available` bursts before it.
neighbour frameBefore(const float* end, int available, int most) {
  for (int i = 1; i <= std::min(available, most); ++i) {
    if (i == available || end[-2 * i - 1] >= kFrameGapUs) return {end - 2 * i, i};
  }
  return {end, 0};
}

}  // namespace

void Signal::tryTDC() {
  if (!within(kTdcBounds)) return;
  for (const biphase_code& code : kCodes) {
    if (!lengthFits(totalDuration_, code)) continue;
    slicer sliced;
    message told{};
    if (!sliceFrame(code.half_bit, &sliced) || !readSliced(sliced, code, frameFreq_, &told)) {
      continue;
    }

    press all;
    all.add(told.at);
    if (told.at != part_of_press::kAny) {
      const int most = code.units();
      neighbour beside{frame_, frameLength_};
      for (int n = 0; n < kMostFramesBeside; ++n) {
        const float* const behind = beside.frame + 2 * beside.bursts;
        const int left = burstsFromFrame() - static_cast<int>((behind - frame_) / 2);
        if (left <= 0 || behind[-1] > kLongestPauseUs) break;
        beside = frameAfter(behind, left, most);
        if (!joins(beside, code, frameFreq_, told, &all)) break;
      }
      beside = {frame_, frameLength_};
      for (int n = 0; n < kMostFramesBeside; ++n) {
        const int left = static_cast<int>((beside.frame - bursts_.get()) / 2);
        if (left <= 0 || beside.frame[-1] > kLongestPauseUs) break;
        beside = frameBefore(beside.frame, left, most);
        if (!joins(beside, code, frameFreq_, told, &all)) break;
      }
    }

    // The remark is the same for every frame of a press, so that they count as copies.
    if (code.read == readOrtek) {
      if (!all.hasOthers && all.hasFirst)
        remark("only start frame");
      else if (!all.hasOthers && all.hasLast)
        remark("only end frame");
      else if (!all.hasFirst && !all.hasLast)
        remark("no start and end frames");
      else if (!all.hasFirst)
        remark("no start frame");
      else if (!all.hasLast)
        remark("no end frame");
    } else if (code.read == readAmino) {
      remark("T=%d", all.hasFirst ? 1 : 0);
    } else if (code.read == readZaptor) {
      remark("E = %d", told.extra);
    } else if (code.read == readNovaPace) {
      remark("T=%d", told.extra);
    } else if (code.read == readKeyboard) {
      remark("M = %d", told.extra);
    } else if (code.read == readMouse) {
      remark("x = %d, y = %d, R = %d, L = %d", told.extra >> 2 & 127, told.extra >> 9,
             told.extra >> 1 & 1, told.extra & 1);
    }
    const int hex0 = code.read == readOrtek
                         ? static_cast<int>(msb(static_cast<unsigned>(told.function), 6))
                         : told.function;
    claim(told.name, told.device, told.subDevice, told.function, hex0);
    return;
  }
}
