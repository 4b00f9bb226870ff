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

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/expected_frame.h"

namespace analysis {
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

/// The frame's levels behind its lead-in, half bit by half bit.
class half_bits {
 public:
  half_bits(const float* frame, int bursts) : frame_(frame), durations_(2 * bursts - 1) {
    left_ = 1;  // of the double space behind the lead-in mark the first half belongs to it
  }
  [[nodiscard]] bool at_end() const { return at_ >= durations_; }
  /// 1 for a mark, 0 for a space; behind the last mark all is space.
  int next() {
    if (at_end()) return 0;
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

bool read_frame(const frame& seen, bit_buffer* bits) {
  expected_frame expected;
  expected.mark(kLeadMarkUs);
  expected.space(kLeadSpaceUs);
  half_bits halves(seen.first, seen.length);
  while (!halves.at_end()) {
    const int first = halves.next();
    if (bits->size() == kMostBits || halves.next() == first) return false;
    if (first == 1) {
      expected.mark(kMarkUs);
      expected.space(kSpaceUs);
    } else {
      expected.space(kSpaceUs);
      expected.mark(kMarkUs);
    }
    bits->append(first == 1);
  }
  const bool framed_by_bits = bits->getBit(0) == 0 && bits->getBit(bits->size() - 1) == 1;
  if (framed_by_bits && expected.bursts() == seen.length) return expected.fits(seen, kFit);
  seen.refused({reason::edge});
  return false;
}

/// The answer with a function of `width` bits from bit `first` on.
answer code(const char* name, const bit_buffer& bits, int first, int width) {
  return answer{.name = name,
                .device = bits.lsb_number(1, 4),
                .function = bits.lsb_number(first, width),
                .hex = {bits.msb_number(first, width)}};
}

std::optional<answer> solidtek16(const bit_buffer& bits) {
  const unsigned function = bits.getLsb(5, 7);
  const unsigned repeat = bits.getBit(12);
  if (bits.getLsb(13, 4) != ((function & 15) + (function >> 4) + 8 * repeat) % 16) return {};
  return code("Solidtek16", bits, 5, 7);
}

answer solidtek20(const bit_buffer& bits) {
  answer found = code("Solidtek20", bits, 11, 6);
  found.subdevice = bits.lsb_number(5, 6);
  found.remark.print("X = %u", bits.getLsb(17, 4));
  return found;
}

/// Whole bytes of a length that is not public.
answer other_length(const bit_buffer& bits) {
  answer found;
  found.name.print("S:%02d-", bits.size());
  for (int at = 0; at < bits.size(); at += 8) {
    found.name.print("%02X", msb(bits.getLsb(at, std::min(8, bits.size() - at)), 8));
  }
  return found;
}

}  // namespace

std::optional<answer> solidtek(const frame& seen) {
  if (seen.on(0) < 0.8F * kLeadMarkUs || seen.on(0) > 1.3F * kLeadMarkUs) {
    return seen.refused({reason::lead_in, 0, seen.on(0), 0.8F * kLeadMarkUs, 1.3F * kLeadMarkUs});
  }
  if (seen.burst(0) < kShortestLeadUs || seen.on_times.second > 1.6F * kDoubleMarkUs) return {};
  if (seen.off_times.largest > 1.6F * kDoubleSpaceUs) return {};
  bit_buffer bits;
  if (!read_frame(seen, &bits)) return {};
  const int data_bits = bits.size() - kFramingBits;
  std::optional<answer> found;
  if (data_bits == 16) {
    found = solidtek16(bits);
  } else if (data_bits == 20) {
    found = solidtek20(bits);
  } else if (data_bits >= 8 && data_bits % 8 == 0) {
    found = other_length(bits);
  }
  if (!found) return seen.refused({reason::check});
  found->layout.lead = 1;
  return found;
}

}  // namespace analysis
