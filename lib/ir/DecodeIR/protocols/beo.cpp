// SPDX-License-Identifier: GPL-3.0-or-later
// B&O.
//
// Carrier 455 kHz, marks of 200 µs, spaces in units of 3125 µs, most
// significant bit first, gap 100 ms. A bit like the one before it takes 2 units, a one after a zero
// 3, a zero after a one 1; the first bit counts as one after a zero, or as a zero after a one.
//
//   <1 1 5> DDDDDDDDD FFFFFFFF <4> mark
//
// The 5 of the lead-in is so long that a receiver cuts the signal there and delivers the rest.
//
// Sample, D = 257, F = 197:
//   200,3125,200,3125,200,15625,200,9375,200,3125,200,6250,200,6250,200,6250,200,6250,200,6250,200,
//   6250,200,9375,200,6250,200,6250,200,3125,200,6250,200,6250,200,9375,200,3125,200,9375,200,
//   12500,200,100000
// Facts: public protocol definitions in IRP notation.
#include <cmath>
#include <cstddef>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr float kStepUs = 3125;
constexpr float kStepToleranceUs = 350;
constexpr float kLongestFlashUs = 420;
constexpr int kLeadBursts = 3;
constexpr int kLeadSteps[kLeadBursts] = {1, 1, 5};
constexpr int kBits = 17;
constexpr int kDeviceBits = 9;
constexpr int kStopSteps = 4;
constexpr int kBodyBursts = kBits + 2;  // with the stop and the last mark
constexpr int kWholeBursts = kLeadBursts + kBodyBursts;

/// The burst's length in steps, 0 when it is no whole number of them.
int steps(const float* burst) {
  const float us = burst[0] + burst[1];
  const int count = static_cast<int>(std::lround(us / kStepUs));
  const bool fits = burst[0] <= kLongestFlashUs &&
                    std::abs(us - static_cast<float>(count) * kStepUs) <= kStepToleranceUs;
  return fits && count <= kLeadSteps[kLeadBursts - 1] ? count : 0;
}

/// The bits from the first burst behind the lead-in on; false where a step is out of place.
bool read_differential(const float* body, bit_buffer* bits) {
  constexpr int kZeroAfterOne = 1;
  constexpr int kSame = 2;
  constexpr int kOneAfterZero = 3;
  bool last = false;
  for (int i = 0; i < kBits; ++i) {
    const int step = steps(body + 2 * static_cast<ptrdiff_t>(i));
    if (step == kZeroAfterOne && (last || i == 0)) {
      last = false;
    } else if (step == kOneAfterZero && !last) {
      last = true;
    } else if (step != kSame || i == 0) {
      return false;
    }
    bits->append(last);
  }
  return steps(body + 2 * static_cast<ptrdiff_t>(kBits)) == kStopSteps;
}

/// The bits of a frame of `bursts`, with its lead-in or without.
bool read_frame(const float* frame, int bursts, bit_buffer* bits) {
  if (bursts == kWholeBursts) {
    for (const int lead : kLeadSteps) {
      if (steps(frame) != lead) return false;
      frame += 2;
    }
  }
  return read_differential(frame, bits);
}

}  // namespace

std::optional<answer> beo(const frame& seen) {
  bit_buffer code;
  if (seen.length != kBodyBursts && seen.length != kWholeBursts) return {};
  if (!read_frame(seen.first, seen.length, &code)) return {};
  code.makeMsb();
  const auto command = static_cast<int>(code.getMsb(kDeviceBits, kBits - kDeviceBits));
  return answer{.name = "B&O",
                .device = static_cast<int>(code.getMsb(0, kDeviceBits)),
                .function = command,
                .hex = {command},
                .layout = {.lead = seen.length - kBodyBursts, .stop = true}};
}

}  // namespace analysis
