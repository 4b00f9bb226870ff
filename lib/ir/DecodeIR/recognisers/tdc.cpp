// SPDX-License-Identifier: GPL-3.0-or-later
// TDC, OrtekMCE, Amino and Zaptor: bi-phase codes with lead-ins of their own.
//
//              carrier      half bit  lead-in  bits  a one is      gap
//   TDC-38     38 kHz       315 µs    1,-1     17    mark, space   89 ms
//   TDC-56     56.3 kHz     213 µs    1,-1     17    mark, space   89 ms
//   OrtekMCE   38.6 kHz     480 µs    4,-1     17    space, mark   48 ms
//   Amino      37.3, 56 kHz 268 µs    7,-6,3   32    mark, space   79 ms
//   Zaptor     36, 56 kHz   330 µs    8,-6,2   32    mark, space   74 ms
// Layout (one letter per bit, in the order sent; most significant first, OrtekMCE least):
//   TDC        DDDDD SSSSS FFFFFFF
//   OrtekMCE   DDDDD PP FFFFFF CCCC                     P: 0 first, 1 middle, 2 last frame
//   Amino      DDDD 1 T 01 00000000 FFFFFFFF 1111 CCCC  T: 1 in the first frame of a press
//   Zaptor     DDDDDDDD T SSSSSSS FFFFFFFF EEEE CCCC    T: 1 in the last frame of a press
// Checks: an edge in the middle of each bit, the number of bits, the fixed bits; C of OrtekMCE is
//   3 + the one bits of D, P and F, of Amino and Zaptor the sum of the nibbles before it.
// Sample (OrtekMCE, device 0, P 0, function 0), µs:
//   1920,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,480,
//   480,480,480,480,960,480,480,960,480,480
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
constexpr float kFrameGapUs = 20000;       // between the frames of a press ...
constexpr float kLongestPauseUs = 120000;  // ... and no longer than this
constexpr int kMostFramesBeside = 16;      // looked at for the first and last one of a press

/// What a frame of a press is, as its own bits tell.
enum class part { kUnknown, kFirst, kMiddle, kLast };

/// What a frame says.
struct message {
  int device, subDevice, function;  // -1 for none
  int extra;                        // goes into the remark
  int hex;
  part at;

  [[nodiscard]] bool sameKey(const message& other) const {
    return device == other.device && subDevice == other.subDevice && function == other.function &&
           extra == other.extra;
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
  /// Whether the last nibble is the sum of those before it.
  [[nodiscard]] bool nibbleSumFits() const {
    unsigned sum = 0;
    for (int at = 0; at < count - 4; at += 4) sum += field(at, 4);
    return sum % 16 == field(count - 4, 4);
  }
};

bool readTdc(const data_bits& data, message* found) {
  const int function = data.number(10, 7);
  *found = {data.number(0, 5), data.number(5, 5), function, 0, function, part::kUnknown};
  return true;
}

bool readOrtek(const data_bits& data, message* found) {
  constexpr std::array<part, 3> kParts = {part::kFirst, part::kMiddle, part::kLast};
  const auto at = static_cast<size_t>(data.lsbNumber(5, 2));
  const int ones = std::popcount(data.field(0, 13));
  if (at >= kParts.size() || data.lsbNumber(13, 4) != (3 + ones) % 16) return false;
  *found = {data.lsbNumber(0, 5), -1, data.lsbNumber(7, 6), 0, data.number(7, 6), kParts[at]};
  return true;
}

bool readAmino(const data_bits& data, message* found) {
  const bool fixed = data.field(4, 1) == 1 && data.field(6, 2) == 1 && data.field(8, 8) == 0 &&
                     data.field(24, 4) == 15;
  if (!fixed || !data.nibbleSumFits()) return false;
  const int function = data.number(16, 8);
  const part at = data.field(5, 1) == 1 ? part::kFirst : part::kMiddle;
  *found = {data.number(0, 4), -1, function, 0, function, at};
  return true;
}

bool readZaptor(const data_bits& data, message* found) {
  if (!data.nibbleSumFits()) return false;
  const int function = data.number(16, 8);
  const part at = data.field(8, 1) == 1 ? part::kLast : part::kMiddle;
  *found = {data.number(0, 8), data.number(9, 7), function, data.number(24, 4), function, at};
  return true;
}

/// What the remark of a code tells.
enum class telling { kNothing, kMissingFrames, kToggle, kExtra };

struct biphase_code {
  const char* name;    // at about 38 kHz, or when the carrier is not known
  const char* name56;  // at 56 kHz
  slice_rule half_bit;
  std::array<int, 3> lead;  // units of its mark, space and mark; 0 for none
  int bits;
  bi_phase coding;
  bool (*read)(const data_bits& data, message* found);
  telling remark;

  [[nodiscard]] constexpr int units() const { return lead[0] + lead[1] + lead[2] + 2 * bits; }
  [[nodiscard]] bool lengthFits(float total) const;
  [[nodiscard]] bool readFrame(const slicer& frame, message* found) const;
};

constexpr slice_rule halfBit(float us, int longest, int lead, int lead_space = 0) {
  return {.unit_us = us,
          .longest = longest,
          .clock_error = kClockError,
          .lead = lead,
          .lead_space = lead_space};
}

constexpr auto kMarkFirst = bi_phase::mark_first_is_one;
constexpr auto kSpaceFirst = bi_phase::space_first_is_one;
constexpr std::array<biphase_code, 5> kCodes = {{
    {"TDC-38", "TDC-38", halfBit(315, 2, 1), {1, 1, 0}, 17, kMarkFirst, readTdc, telling::kNothing},
    {"TDC-56", "TDC-56", halfBit(213, 2, 1), {1, 1, 0}, 17, kMarkFirst, readTdc, telling::kNothing},
    {"OrtekMCE",
     "OrtekMCE",
     halfBit(480, 4, 4),
     {4, 1, 0},
     17,
     kSpaceFirst,
     readOrtek,
     telling::kMissingFrames},
    {"Amino",
     "Amino-56",
     halfBit(268, 7, 7, 6),
     {7, 6, 3},
     32,
     kMarkFirst,
     readAmino,
     telling::kToggle},
    {"Zaptor-36",
     "Zaptor-56",
     halfBit(330, 8, 8, 6),
     {8, 6, 2},
     32,
     kMarkFirst,
     readZaptor,
     telling::kExtra},
}};

/// Whether a frame this long, without its gap, can be one of the code. Its last half bit may be a
/// space and so part of the gap.
bool biphase_code::lengthFits(float total) const {
  const auto most = static_cast<float>(units());
  return total > (1 - kClockError) * (most - 1) * half_bit.unit_us &&
         total < (1 + kClockError) * most * half_bit.unit_us;
}

bool biphase_code::readFrame(const slicer& frame, message* found) const {
  level_reader levels(frame);
  int level = 1;
  for (const int width : lead) {
    if (width > 0 && levels.level(width) != level) return false;
    level = 1 - level;
  }
  data_bits data{0, bits};
  return levels.bits(bits, coding, &data.bits) && levels.atEnd() && read(data, found);
}

/// A run of bursts that may be a frame.
struct run {
  const float* first;
  int bursts;
};

/// Which frames of a press are there.
struct press {
  bool hasFirst = false, hasLast = false;
  int frames = 0;

  void add(part at) {
    hasFirst |= at == part::kFirst;
    hasLast |= at == part::kLast;
    ++frames;
  }
  /// Adds a neighbour of the frame that told `wanted`; false when it is of another press.
  bool join(run beside, const biphase_code& code, const message& wanted) {
    slicer frame;
    message other{};
    if (beside.bursts == 0 || !frame.slice(beside.first, 2 * beside.bursts - 1, code.half_bit) ||
        !frame.biasIsOrdinary(code.half_bit) || !code.readFrame(frame, &other) ||
        !wanted.sameKey(other)) {
      return false;
    }
    add(other.at);
    return true;
  }
  [[nodiscard]] const char* missing() const {
    if (frames == 1 && hasFirst) return "only start frame";
    if (frames == 1 && hasLast) return "only end frame";
    if (!hasFirst && !hasLast) return "no start and end frames";
    if (!hasFirst) return "no start frame";
    return hasLast ? "" : "no end frame";
  }
};

/// The run behind `at` up to a gap, of at most `most` bursts; none when there is no gap.
run runAfter(run at, const float* end, int most) {
  const float* const first = at.first + 2 * at.bursts;
  const int available = std::min(static_cast<int>((end - first) / 2), most);
  if (available <= 0 || first[-1] > kLongestPauseUs) return {first, 0};
  for (int i = 0; i < available; ++i) {
    if (first[2 * i + 1] >= kFrameGapUs) return {first, i + 1};
  }
  return {first, 0};
}

/// The run before `at` back to a gap.
run runBefore(run at, const float* begin, int most) {
  const int available = std::min(static_cast<int>((at.first - begin) / 2), most);
  if (available <= 0 || at.first[-1] > kLongestPauseUs) return {at.first, 0};
  for (int i = 1; i <= available; ++i) {
    const float* const first = at.first - 2 * i;
    if (first == begin || first[-1] >= kFrameGapUs) return {first, i};
  }
  return {at.first, 0};
}

}  // namespace

void Signal::tryTDC() {
  if (!within(kTdcBounds)) return;
  for (const biphase_code& code : kCodes) {
    slicer frame;
    message told{};
    if (!code.lengthFits(totalDuration_) ||
        !frame.slice(frame_, 2 * frameLength_ - 1, code.half_bit) ||
        !frame.biasIsOrdinary(code.half_bit) || !code.readFrame(frame, &told)) {
      continue;
    }

    // The remark is that of the press, so that its frames count as copies of one another.
    press all;
    all.add(told.at);
    if (told.at != part::kUnknown) {
      const float* const begin = bursts_.get();
      const float* const end = frame_ + 2 * static_cast<ptrdiff_t>(burstsFromFrame());
      const int most = code.units();
      run beside{frame_, frameLength_};
      do {
        beside = runAfter(beside, end, most);
      } while (all.join(beside, code, told) && all.frames <= kMostFramesBeside);
      beside = {frame_, frameLength_};
      do {
        beside = runBefore(beside, begin, most);
      } while (all.join(beside, code, told) && all.frames <= 2 * kMostFramesBeside);
    }
    switch (code.remark) {
      case telling::kNothing:
        break;
      case telling::kMissingFrames:
        remark("%s", all.missing());
        break;
      case telling::kToggle:
        remark("T=%d", all.hasFirst ? 1 : 0);
        break;
      case telling::kExtra:
        remark("E = %d", told.extra);
        break;
    }
    claim(frameFreq_ >= k56kHz ? code.name56 : code.name, told.device, told.subDevice,
          told.function, told.hex);
    return;
  }
}
