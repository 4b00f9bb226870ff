// SPDX-License-Identifier: GPL-3.0-or-later
// Blaupunkt, NRC16 and NRC17: a start frame, the body some 14 to 22 ms later, both of one shape.
//
// Modulation: bi-phase, half bit 512 µs at 30.3 kHz (Blaupunkt), 500 µs at 38 kHz (NRC); a one is
//   mark, space
// Frame: lead-in 1,-5 half bits, then 7 (NRC7), 10 (Blaupunkt), 16 (NRC16) or 17 bits (NRC17)
// Layout (one letter per bit, least significant first; the first bit is always 1):
//   NRC7       1 FFFFFF          start frame: F = 62
//   Blaupunkt  1 FFFFFF DDD      start frame: F = 63,  D = 7
//   NRC16      1 FFFFFFFF DDDDDDD             F = 254, D = 127
//   NRC17      1 FFFFFFFF DDDDDDDD            F = 254, D = 255
// The end of a press is marked by another start frame.
// Checks: the first bit, an edge in the middle of each bit, the number of bits.
// Sample (Blaupunkt body, device 0, function 1), µs:
//   512,2560,512,512,512,1024,512,512,512,512,512,512,512,512,512,512,512,512,512,512,512
// Facts: public protocol definitions in IRP notation.
#include <array>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/levels.h"

namespace analysis {
namespace {

constexpr slice_rule kHalfBit{.unit_us = 506, .longest = 2, .clock_error = 0.07F};
constexpr float kLeadMarkMaxUs = 1.6F * kHalfBit.unit_us;
constexpr float kLeadSpaceMinUs = 4 * kHalfBit.unit_us;
constexpr float kLeadSpaceMaxUs = 6 * kHalfBit.unit_us;
constexpr float kFrameGapUs = 8000;  // ends a start frame or a body
constexpr float kBodyMinUs = 11000;  // from a start frame to its body
constexpr float kBodyMaxUs = 31000;
constexpr int kMostBits = 17;
constexpr int kLongestPlainBits = 10;  // NRC7 and Blaupunkt, whose bodies have no suffix

struct xx_variant {
  const char* name;
  int bits, function_bits, device_bits;
  unsigned start_function, start_device;
};

constexpr std::array<xx_variant, 4> kVariants = {{
    {"NRC7", 7, 6, 0, 62, 0},
    {"Blaupunkt", 10, 6, 3, 63, 7},
    {"NRC16", 16, 8, 7, 254, 127},
    {"NRC17", 17, 8, 8, 254, 255},
}};

struct xx_frame {
  const xx_variant* variant;
  unsigned function, device;

  [[nodiscard]] bool is_start() const {
    return function == variant->start_function && device == variant->start_device;
  }
};

/// Whether the burst can be the lead-in 1,-5.
bool lead_fits(const float* frame) {
  return frame[0] <= kLeadMarkMaxUs && frame[1] >= kLeadSpaceMinUs && frame[1] <= kLeadSpaceMaxUs;
}

/// Reads `bursts` bursts from `at` on; what stops it.
refusal read_frame(const float* at, int bursts, xx_frame* found) {
  if (!lead_fits(at)) return {reason::lead_in, 0, at[1], kLeadSpaceMinUs, kLeadSpaceMaxUs};
  // The space of the lead-in varies by half a unit; it tells nothing about the bits.
  slicer sliced;
  if (!sliced.slice(at + 2, 2 * bursts - 3, kHalfBit)) return sliced.why();
  if (!sliced.has_ordinary_bias(kHalfBit)) return {reason::bias, -1, sliced.bias()};
  level_reader levels(sliced);
  bit_buffer bits;
  if (!levels.rest(kMostBits, bi_phase::mark_first_is_one, &bits)) return {reason::edge};
  for (const xx_variant& variant : kVariants) {
    if (variant.bits != bits.size() || bits.getBit(0) == 0) continue;
    *found = {&variant, bits.getLsb(1, variant.function_bits),
              bits.getLsb(1 + variant.function_bits, variant.device_bits)};
    return {};
  }
  return {reason::check};
}

/// Bursts of the frame at `frame`, of at most `available`; 0 when it does not end among them.
int bursts_to_gap(const float* frame, int available) {
  for (int i = 0; i < available && i <= kMostBits; ++i) {
    if (frame[2 * i + 1] >= kFrameGapUs) return i + 1;
  }
  return 0;
}

/// Reads the body behind a start frame; its bursts, 0 when there is none.
int read_body(const frame& seen, const xx_frame& start, xx_frame* body) {
  if (seen.trailing_gap < kBodyMinUs || seen.trailing_gap > kBodyMaxUs) return 0;
  const float* const rest = seen.first + 2 * seen.length;
  const int bursts = bursts_to_gap(rest, seen.reach - seen.length);
  const bool fits = bursts > 0 && !read_frame(rest, bursts, body).given() &&
                    body->variant == start.variant && !body->is_start();
  return fits ? bursts : 0;
}

}  // namespace

std::optional<answer> xx(const frame& seen) {
  if (seen.preempt_level >= kExtendedLevel || seen.off_times.largest > kLeadSpaceMaxUs) return {};
  xx_frame told{};
  if (const refusal why = read_frame(seen.first, seen.length, &told); why.given()) {
    return seen.refused(why);
  }

  answer found{.name = told.variant->name, .layout = {.lead = 1}};
  if (told.is_start()) {
    // A start frame and the body behind it are one frame.
    xx_frame body{};
    const int bursts = read_body(seen, told, &body);
    if (bursts > 0) {
      told = body;
      found.level = kExtendedLevel;
      found.length = seen.length + bursts;
      found.layout.split = seen.length - 1;
    } else {
      found.name.add("{prefix}");
    }
  } else if (told.variant->bits > kLongestPlainBits && seen.before == 0) {
    found.name.add("{body}");
  }
  if (told.variant->device_bits > 0) found.device = static_cast<int>(told.device);
  found.function = static_cast<int>(told.function);
  found.hex.first = static_cast<int>(msb(told.function, told.variant->function_bits));
  return found;
}

}  // namespace analysis
