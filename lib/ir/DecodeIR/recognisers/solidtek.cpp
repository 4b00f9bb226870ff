// SPDX-License-Identifier: GPL-3.0-or-later
// Solidtek: infrared keyboards and their mice; bi-phase with halves of unequal length.
//
// Modulation: 38 kHz; 0 = space 624, mark 468 µs; 1 = mark 468, space 624 µs
// Frame: lead-in 1820,-590, a 0, the data, a 1; sent three times, 143 ms apart
// Layout (one letter per bit, least significant first):
//   Solidtek16  0 DDDD FFFFFFF R CCCC 1      R: 0 in the first frame, 1 in its repeats
//   Solidtek20  0 DDDD SSSSSS FFFFFF XXXX 1  X is not checked: what it holds is not public
//   other lengths of whole bytes  "S:<bits>-<bytes as sent>"
// Check: C = low nibble of F + upper three bits of F + 8 R, modulo 16
// Sample (device 8, function 98, R 0), µs:
//   1820,1214,468,624,468,624,468,624,936,1248,936,1248,468,624,468,624,936,624,468,1248,468,624,
//   468,624,468,624,936,624,468
// Facts: public protocol definitions in IRP notation.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

#include "lib/ir/DecodeIR/frame_fit.h"
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr float kMarkUs = 468;
constexpr float kSpaceUs = 624;
constexpr float kLeadMarkUs = 1820;
constexpr float kLeadSpaceUs = 590;
constexpr float kShortestLeadUs = 0.9F * (kLeadMarkUs + kLeadSpaceUs + kSpaceUs);
constexpr float kDoubleMarkUs = 740;   // marks are rather lengthened ...
constexpr float kDoubleSpaceUs = 900;  // ... and spaces shortened
constexpr fit_rule kFit{.tolerance_us = 95};

constexpr int kMostBits = 34;
constexpr int kFramingBits = 2;  // the 0 in front and the 1 behind

/// The bits of one frame, the first one sent the lowest.
struct solidtek_frame {
  uint64_t bits = 0;
  int count = 0;

  [[nodiscard]] unsigned field(int from, int width) const {
    return static_cast<unsigned>(bits >> from) & ((1U << width) - 1);
  }
};

/// The frame's levels behind its lead-in, half bit by half bit.
class half_bits {
 public:
  half_bits(const float* frame, int bursts) : frame_(frame), durations_(2 * bursts - 1) {
    left_ = 1;  // of the double space behind the lead-in mark the first half belongs to it
  }
  [[nodiscard]] bool atEnd() const { return at_ >= durations_; }
  /// 1 for a mark, 0 for a space; behind the last mark all is space.
  int next() {
    if (atEnd()) return 0;
    const int level = at_ % 2 == 0 ? 1 : 0;
    if (--left_ == 0 && ++at_ < durations_) left_ = halves(at_);
    return level;
  }

 private:
  [[nodiscard]] int halves(int i) const {
    return frame_[i] > (i % 2 == 0 ? kDoubleMarkUs : kDoubleSpaceUs) ? 2 : 1;
  }

  const float* frame_;
  int durations_;
  int at_ = 1;
  int left_;
};

bool readFrame(const float* frame, int bursts, solidtek_frame* found) {
  expected_frame expected;
  expected.mark(kLeadMarkUs);
  expected.space(kLeadSpaceUs);
  half_bits halves(frame, bursts);
  while (!halves.atEnd()) {
    const int first = halves.next();
    if (found->count == kMostBits || halves.next() == first) return false;
    if (first == 1) {
      expected.mark(kMarkUs);
      expected.space(kSpaceUs);
    } else {
      expected.space(kSpaceUs);
      expected.mark(kMarkUs);
    }
    found->bits |= static_cast<uint64_t>(first) << found->count++;
  }
  const bool framedByBits = (found->bits & 1) == 0 && (found->bits >> (found->count - 1) & 1) == 1;
  return framedByBits && expected.bursts() == bursts && expected.fits(frame, kFit);
}

}  // namespace

void Signal::tryQ2() {
  if (!within(kSolidtekBounds) || on(0) < 0.8F * kLeadMarkUs || on(0) > 1.3F * kLeadMarkUs) return;
  if (burst(0) < kShortestLeadUs || setOn_.second > 1.6F * kDoubleMarkUs) return;
  if (setOff_.largest > 1.6F * kDoubleSpaceUs) return;
  solidtek_frame found;
  if (!readFrame(frame_, frameLength_, &found)) return;

  const auto device = static_cast<int>(found.field(1, 4));
  const int dataBits = found.count - kFramingBits;
  if (dataBits == 16) {
    const unsigned function = found.field(5, 7);
    const unsigned repeat = found.field(12, 1);
    if (found.field(13, 4) != ((function & 15) + (function >> 4) + 8 * repeat) % 16) return;
    claim("Solidtek16", device, -1, static_cast<int>(function), static_cast<int>(msb(function, 7)));
  } else if (dataBits == 20) {
    const unsigned function = found.field(11, 6);
    remark("X = %u", found.field(17, 4));
    claim("Solidtek20", device, static_cast<int>(found.field(5, 6)), static_cast<int>(function),
          static_cast<int>(msb(function, 6)));
  } else if (dataBits >= 8 && dataBits % 8 == 0) {
    std::array<char, 20> name{};
    int length = std::snprintf(name.data(), name.size(), "S:%02d-", found.count);
    for (int at = 0; at < found.count; at += 8) {
      const unsigned byte = msb(found.field(at, std::min(8, found.count - at)), 8);
      length += std::snprintf(name.data() + length, name.size() - static_cast<size_t>(length),
                              "%02X", byte);
    }
    claim(name.data(), -1, -1, -1);
  }
}
