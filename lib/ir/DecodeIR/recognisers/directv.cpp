// SPDX-License-Identifier: GPL-3.0-or-later
// DirecTV, and Epson with a code of the same kind: two bits per burst, one in the length of the
// mark and one in the length of the space.
//
// Modulation: 38, 40 or 57 kHz, unit 600 µs; 0 = 1,-1  1 = 1,-2  2 = 2,-1  3 = 2,-2
// Frame: lead-in 10,-2 in the first frame of a press and 5,-2 in its repeats, eight symbols, stop
//   mark; gap 15 units (9 ms) or 50 units (30 ms)
// Layout (one letter per bit, most significant first): DDDDFFFF FFFFCCCC
// Check: C = 7 x F7F6 + 5 x F5F4 + 3 x F3F2 + F1F0, modulo 16
// "Parm" is the variant P0 to P5: carrier (40, 38, 57 kHz) and gap (short, long). It is only known
// when a gap follows that is not the end of the signal.
// Sample (device 12, function 3):
//   6000,1200,1200,1200,600,600,600,600,600,600,600,600,1200,1200,600,600,1200,1200,600
//
// Epson: 38.4 kHz, unit 577 µs; 0 = 2,-1  1 = 1,-2  2 = 1,-1  3 = 2,-2
// Frame: lead-in 4,-1, thirteen symbols, stop mark; gap 75 ms
// Layout (least significant symbol first): DDDDDDDD tt FFFFFF uu SSSSSSSS
// Checks: none but lead-in, symbols and their number.
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/frame_fit.h"
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kUnitUs = 600;
constexpr float kLongMarkUs = 1.5F * kUnitUs;    // marks are rather lengthened ...
constexpr float kLongSpaceUs = 1.42F * kUnitUs;  // ... and spaces shortened
constexpr float kLongestUs = 2.5F * kUnitUs;     // after the lead-in
constexpr float kRepeatLeadMaxUs = 7.5F * kUnitUs;
constexpr float kLeadMinUs = 3.5F * kUnitUs;
constexpr float kLeadMaxUs = 13 * kUnitUs;
constexpr int kFirstLead = 10;
constexpr int kRepeatLead = 5;
constexpr float kLeadSpaceUs = 2 * kUnitUs;
constexpr float kShortestLead = 0.88F;  // of the lead-in's burst; Sony's has 0.83
constexpr int kSymbols = 8;
constexpr int kBursts = kSymbols + 2;
constexpr fit_rule kFit{.tolerance_us = 120};

constexpr float kLongGapUs = 19500;  // between 9 and 30 ms
constexpr float kNoGapUs = 900000;   // the end of the signal
constexpr int k57Hz = 48500;         // between the carriers
constexpr int k40Hz = 39000;

constexpr float kEpsonUnitUs = 577;
constexpr int kEpsonSymbols = 13;
constexpr int kEpsonBursts = kEpsonSymbols + 2;
constexpr float kEpsonLeadMinUs = 3 * kEpsonUnitUs;
constexpr float kEpsonLeadMaxUs = 5 * kEpsonUnitUs;

unsigned check(unsigned function) {
  return (7 * (function >> 6) + 5 * (function >> 4 & 3) + 3 * (function >> 2 & 3) +
          (function & 3)) %
         16;
}

int parm(int carrier, float gap) {
  const int pair = carrier >= k57Hz ? 4 : carrier >= k40Hz ? 0 : 2;
  return pair + (gap > kLongGapUs ? 1 : 0);
}

struct symbol {
  bool longMark, longSpace;
};

symbol readSymbol(const float* burst) {
  return {burst[0] > kLongMarkUs, burst[1] > kLongSpaceUs};
}

void expectSymbol(expected_frame* expected, symbol read, float unit) {
  expected->mark(read.longMark ? 2 * unit : unit);
  expected->space(read.longSpace ? 2 * unit : unit);
}

struct epson {
  unsigned device, first, function, second, subDevice;
};

bool readEpson(const float* frame, epson* found) {
  if (frame[0] < kEpsonLeadMinUs || frame[0] > kEpsonLeadMaxUs || frame[1] > kLongSpaceUs)
    return false;
  expected_frame expected;
  expected.mark(4 * kEpsonUnitUs);
  expected.space(kEpsonUnitUs);
  uint32_t bits = 0;
  bool anyLongSpace = false;
  for (int i = 0; i < kEpsonSymbols; ++i) {
    const symbol read = readSymbol(frame + 2 * (i + 1));
    expectSymbol(&expected, read, kEpsonUnitUs);
    const unsigned value = read.longMark ? (read.longSpace ? 3 : 0) : (read.longSpace ? 1 : 2);
    bits |= value << 2 * i;
    anyLongSpace |= read.longSpace;
  }
  expected.mark(kEpsonUnitUs);
  // Marks of two lengths and spaces of one are another code with the same lead-in.
  if (!anyLongSpace || !expected.fits(frame, kFit)) return false;
  *found = {bits & 0xFF, bits >> 8 & 3, bits >> 10 & 0x3F, bits >> 16 & 3, bits >> 18 & 0xFF};
  return true;
}

}  // namespace

void Signal::tryDirecTV() {
  if (!within(kDirecTvBounds) || (frameLength_ != kBursts && frameLength_ != kEpsonBursts)) return;
  if (setOff_.largest > kLongestUs || setOn_.second > kLongestUs) return;

  if (frameLength_ == kEpsonBursts) {
    epson found{};
    if (!readEpson(frame_, &found)) return;
    remark("T1 = %u, T2 = %u", found.first, found.second);
    claim("Epson", static_cast<int>(found.device), static_cast<int>(found.subDevice),
          static_cast<int>(found.function), static_cast<int>(found.function));
    return;
  }

  if (on(0) < kLeadMinUs || on(0) > kLeadMaxUs) return;
  const float leadMark =
      kUnitUs * static_cast<float>(on(0) < kRepeatLeadMaxUs ? kRepeatLead : kFirstLead);
  if (burst(0) < kShortestLead * (leadMark + kLeadSpaceUs)) return;
  expected_frame expected;
  expected.mark(leadMark);
  expected.space(kLeadSpaceUs);
  unsigned bits = 0;
  for (int i = 1; i <= kSymbols; ++i) {
    const symbol read = readSymbol(frame_ + 2 * i);
    expectSymbol(&expected, read, kUnitUs);
    bits = bits << 2 | (read.longMark ? 2U : 0U) | (read.longSpace ? 1U : 0U);
  }
  expected.mark(kUnitUs);
  const unsigned function = bits >> 4 & 0xFF;
  if ((bits & 0xF) != check(function) || !expected.fits(frame_, kFit)) return;
  if (trailingGap_ < kNoGapUs) remark("Parm = %d", parm(frameFreq_, trailingGap_));
  claim("DirecTV", static_cast<int>(bits >> 12), -1, static_cast<int>(function),
        static_cast<int>(function));
}
