// SPDX-License-Identifier: GPL-3.0-or-later
// Nokia12, Nokia (24 bits) and Nokia32, and Xiaomi with a code of the same kind: two bits in the
// length of a burst.
//
// Modulation: 36 kHz, unit one carrier period (27.8 µs); 0 = 6,-10  1 = 6,-16  2 = 6,-22  3 = 6,-28
// Frame: lead-in 15,-10, six, twelve or sixteen symbols, stop mark 6; frames 100 ms apart
// Layout (one letter per bit, most significant first):
//   Nokia12  DDDD FFFFFFFF
//   Nokia    DDDDDDDD SSSSSSSS FFFFFFFF
//   Nokia32  DDDDDDDD SSSSSSSS T XXXXXXX FFFFFFFF      T: toggle
// Checks: none but lead-in, symbols and their number.
// Sample (Nokia12, device 8, function 65), µs:
//   417,278,167,611,167,278,167,444,167,278,167,278,167,444,167
//
// Xiaomi: 36 kHz, unit 290 µs; 0 = 2,-2  1 = 2,-3  2 = 2,-4  3 = 2,-5
// Frame: lead-in 1000 µs, -2, ten symbols, stop mark 2; frames 30 ms apart
// Layout (most significant first): DDDDDDDD FFFFFFFF CCCC, C = exclusive-or of the four nibbles
// Facts: public protocol definitions in IRP notation.
#include <array>
#include <cmath>
#include <cstdint>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/step_reader.h"

namespace {

constexpr int kMostSymbols = 16;

/// A code of two bits per burst: a lead-in burst, the symbols, a stop mark.
struct pair_code {
  step_rule symbols;
  float lead_mark_us, lead_space_us;
  float mark_us;
};

constexpr float kPeriodUs = 1000.0F / 36;
constexpr pair_code kNokia{
    .symbols = {.base_us = 16 * kPeriodUs, .step_us = 6 * kPeriodUs, .most = 3},
    .lead_mark_us = 15 * kPeriodUs,
    .lead_space_us = 10 * kPeriodUs,
    .mark_us = 6 * kPeriodUs};
constexpr int kNokia12Bursts = 6 + 2;
constexpr int kNokiaBursts = 12 + 2;
constexpr int kNokia32Bursts = 16 + 2;

constexpr float kXiaomiUnitUs = 290;
constexpr pair_code kXiaomi{
    .symbols = {.base_us = 4 * kXiaomiUnitUs, .step_us = kXiaomiUnitUs, .most = 3},
    .lead_mark_us = 1000,
    .lead_space_us = 2 * kXiaomiUnitUs,
    .mark_us = 2 * kXiaomiUnitUs};
constexpr int kXiaomiBursts = 10 + 2;

// Parts of a nominal duration that the lead-in and the marks may be off.
constexpr float kLeadError = 0.2F;
constexpr float kShortestMark = 0.55F;
constexpr float kLongestMark = 1.7F;
constexpr float kLongestStopMark = 2.5F;

bool leadFits(const float* frame, const pair_code& code) {
  const float nominal = code.lead_mark_us + code.lead_space_us;
  return std::abs(frame[0] + frame[1] - nominal) <= kLeadError * nominal &&
         frame[0] > 0.5F * (code.lead_mark_us + code.mark_us);
}

/// Reads a frame of `bursts` bursts into two bits per symbol, the first one uppermost.
bool readPairs(const float* frame, int bursts, const pair_code& code, uint32_t* bits) {
  for (int i = 1; i < bursts - 1; ++i) {
    const float mark = frame[2 * i];
    if (mark < kShortestMark * code.mark_us || mark > kLongestMark * code.mark_us) return false;
  }
  if (frame[2 * (bursts - 1)] > kLongestStopMark * code.mark_us) return false;
  std::array<uint8_t, kMostSymbols> symbols{};
  step_line line{code.symbols.base_us, code.symbols.step_us};
  if (!readSteps(frame + 2, bursts - 2, code.symbols, &line, symbols.data())) return false;
  *bits = 0;
  for (int i = 0; i < bursts - 2; ++i) *bits = *bits << 2 | symbols[static_cast<size_t>(i)];
  return true;
}

int field(uint32_t bits, int from, int width) {
  return static_cast<int>(bits >> from & ((1U << width) - 1));
}

}  // namespace

void Signal::tryNokia() {
  if (!within(kNokiaBounds)) return;
  uint32_t bits = 0;
  if (frameLength_ == kXiaomiBursts) {
    if (!leadFits(frame_, kXiaomi) || !readPairs(frame_, kXiaomiBursts, kXiaomi, &bits)) return;
    const int device = field(bits, 12, 8);
    const int function = field(bits, 4, 8);
    if ((device >> 4 ^ (device & 15) ^ function >> 4 ^ (function & 15)) != field(bits, 0, 4))
      return;
    claim("Xiaomi", device, -1, function, function);
    return;
  }

  if (frameLength_ != kNokia12Bursts && frameLength_ != kNokiaBursts &&
      frameLength_ != kNokia32Bursts) {
    return;
  }
  if (!leadFits(frame_, kNokia) || !readPairs(frame_, frameLength_, kNokia, &bits)) return;
  const int function = field(bits, 0, 8);
  if (frameLength_ == kNokia12Bursts) {
    claim("Nokia12", field(bits, 8, 4), -1, function, function);
  } else if (frameLength_ == kNokiaBursts) {
    claim("Nokia", field(bits, 16, 8), field(bits, 8, 8), function, function);
  } else {
    remark("X=%d T=%d", field(bits, 8, 7), field(bits, 15, 1));
    claim("Nokia32", field(bits, 24, 8), field(bits, 16, 8), function, function);
  }
}
