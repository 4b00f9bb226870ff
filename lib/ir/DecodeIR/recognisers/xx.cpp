// SPDX-License-Identifier: GPL-3.0-or-later
// Blaupunkt, NRC16 and NRC17: a start frame, the body some 14 to 22 ms later, both of one shape.
//
// Modulation: bi-phase, half bit 512 µs at 30.3 kHz (Blaupunkt), 500 µs at 38 kHz (NRC); a one is
//   mark, space
// Frame: lead-in 1,-5 half bits, then 10 (Blaupunkt), 16 (NRC16) or 17 bits (NRC17)
// Layout (one letter per bit, least significant first; the first bit is always 1):
//   Blaupunkt  1 FFFFFF DDD      start frame: F = 63,  D = 7
//   NRC16      1 FFFFFFFF DDDDDDD             F = 254, D = 127
//   NRC17      1 FFFFFFFF DDDDDDDD            F = 254, D = 255
// The end of a press is marked by another start frame.
// Checks: the first bit, an edge in the middle of each bit, the number of bits.
// Sample (Blaupunkt body, device 0, function 1), µs:
//   512,2560,512,512,512,1024,512,512,512,512,512,512,512,512,512,512,512,512,512,512,512
// Facts: public protocol definitions in IRP notation.
#include <array>
#include <cstdint>
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/slicer.h"

namespace {

constexpr slice_rule kHalfBit{.unit_us = 506, .longest = 2, .clock_error = 0.07F};
constexpr float kLeadMarkMaxUs = 1.6F * kHalfBit.unit_us;
constexpr float kLeadSpaceMinUs = 4 * kHalfBit.unit_us;
constexpr float kLeadSpaceMaxUs = 6 * kHalfBit.unit_us;
constexpr float kFrameGapUs = 8000;  // ends a start frame or a body
constexpr float kBodyMinUs = 11000;  // from a start frame to its body
constexpr float kBodyMaxUs = 28000;
constexpr int kMostBits = 17;
constexpr int kFewestBits = 10;  // Blaupunkt, whose body has no suffix

struct xx_variant {
  const char* name;
  int bits, functionBits, deviceBits;
  unsigned startFunction, startDevice;
};

constexpr std::array<xx_variant, 3> kVariants = {{
    {"Blaupunkt", 10, 6, 3, 63, 7},
    {"NRC16", 16, 8, 7, 254, 127},
    {"NRC17", 17, 8, 8, 254, 255},
}};

struct xx_frame {
  const xx_variant* variant;
  unsigned function, device;

  [[nodiscard]] bool isStart() const {
    return function == variant->startFunction && device == variant->startDevice;
  }
};

/// Whether the burst can be the lead-in 1,-5.
bool leadFits(const float* frame) {
  return frame[0] <= kLeadMarkMaxUs && frame[1] >= kLeadSpaceMinUs && frame[1] <= kLeadSpaceMaxUs;
}

bool readFrame(const float* frame, int bursts, xx_frame* found) {
  // The space of the lead-in varies by half a unit; it tells nothing about the bits.
  slicer sliced;
  if (!leadFits(frame) || !sliced.slice(frame + 2, 2 * bursts - 3, kHalfBit)) return false;
  if (!sliced.biasIsOrdinary(kHalfBit)) return false;
  level_reader levels(sliced);
  unsigned bits = 0;
  int count = 0;
  for (; !levels.atEnd(); ++count) {
    uint64_t bit = 0;
    if (count == kMostBits || !levels.bits(1, bi_phase::mark_first_is_one, &bit)) return false;
    bits |= static_cast<unsigned>(bit) << count;
  }
  for (const xx_variant& variant : kVariants) {
    if (variant.bits != count || (bits & 1) == 0) continue;
    const unsigned function = bits >> 1 & ((1U << variant.functionBits) - 1);
    *found = {&variant, function, bits >> (1 + variant.functionBits)};
    return true;
  }
  return false;
}

/// Bursts of the frame at `frame`, of at most `available`; 0 when it does not end among them.
int burstsToGap(const float* frame, int available) {
  for (int i = 0; i < available && i <= kMostBits; ++i) {
    if (frame[2 * i + 1] >= kFrameGapUs) return i + 1;
  }
  return 0;
}

}  // namespace

void Signal::tryXX() {
  if (!within(kXxBounds) || !leadFits(frame_) || insideExtended()) return;
  xx_frame told{};
  if (setOff_.largest > kLeadSpaceMaxUs || !readFrame(frame_, frameLength_, &told)) return;

  const char* part = "";
  if (told.isStart()) {
    // A start frame and the body behind it are one frame.
    const float* const rest = frame_ + 2 * frameLength_;
    const int bodyBursts = burstsToGap(rest, burstsFromFrame() - frameLength_);
    xx_frame body{};
    if (trailingGap_ >= kBodyMinUs && trailingGap_ <= kBodyMaxUs && bodyBursts > 0 &&
        readFrame(rest, bodyBursts, &body) && body.variant == told.variant && !body.isStart()) {
      told = body;
      extendFrame(frameLength_ + bodyBursts);
    } else {
      part = "{prefix}";
    }
  } else if (told.variant->bits > kFewestBits && frameStart_ == 0) {
    part = "{body}";
  }
  std::array<char, 24> name{};
  std::snprintf(name.data(), name.size(), "%s%s", told.variant->name, part);
  claim(name.data(), static_cast<int>(told.device), -1, static_cast<int>(told.function),
        static_cast<int>(msb(told.function, told.variant->functionBits)));
}
