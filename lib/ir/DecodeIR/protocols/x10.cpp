// SPDX-License-Identifier: GPL-3.0-or-later
// X10: pulse width, bursts of equal length, a very long end mark.
//
// Modulation: 38 to 41 kHz, unit 565 to 570 µs; 0 = 2,-12  1 = 7,-7 units
// Layout (one letter per bit, least significant first, N most significant first); > is a lead-in
// like a one, E the end 21,-7:
//   start frame  FFFFF NNNN E             sent once, at the start of a press
//   repeat       > FFFFF fffff E          f: complement of F; follows without a pause
//   house code   > HHHH hhhh E            h: complement of H
// F is command + 16 or a device. N counts presses.
// Checks: the complements; a start frame has none, but its repeat has to send the same F.
// Sample (repeat, function 17), µs:
//   3990,3990,3990,3990,1140,6840,1140,6840,1140,6840,3990,3990,1140,6840,3990,3990,3990,3990,
//   3990,3990,1140,6840,11970
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/expected_frame.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 567;
constexpr float kShortMark = 2;
constexpr float kLongMark = 7;
constexpr float kBurst = 14;
constexpr float kEndMark = 21;
constexpr float kLongMarkMinUs = 4.5F * kUnitUs;
constexpr float kEndMarkMinUs = 17 * kUnitUs;
constexpr fit_rule kFit{.tolerance_us = 130};

constexpr int kStartBursts = 10;
constexpr int kRepeatBursts = 12;
constexpr int kFunctionBits = 5;
constexpr int kHouseBits = 4;

/// Reads `bursts` bursts from burst `first` on, the last one the end mark.
bool read_frame(const frame& seen, int first, int bursts, bit_buffer* bits) {
  const int last = first + bursts - 1;
  if (seen.on(last) < kEndMarkMinUs) {
    seen.refused({reason::stop, last, seen.on(last), kEndMarkMinUs, kEndMark * kUnitUs});
    return false;
  }
  *bits = bit_buffer(seen.first + ptrdiff_t{2} * first, 2 * bursts);
  bits->threshold = kLongMarkMinUs;
  bits->decodeX(bursts - 1);
  expected_frame expected;
  for (int i = 0; i < bursts - 1; ++i) {
    const float mark = bits->getBit(i) != 0 ? kLongMark : kShortMark;
    expected.mark(mark * kUnitUs);
    expected.space((kBurst - mark) * kUnitUs);
  }
  expected.mark(kEndMark * kUnitUs);
  return expected.fits(seen, kFit, first);
}

/// Whether bit 0 is the lead-in and `width` bits are sent twice, complemented the second time.
bool is_doubled(const bit_buffer& bits, int width) {
  const unsigned both = bits.getLsb(1, width) ^ bits.getLsb(1 + width, width);
  return bits.getBit(0) != 0 && both == (1U << width) - 1;
}

bool read_repeat(const frame& seen, int first, bit_buffer* bits) {
  return read_frame(seen, first, kRepeatBursts, bits) && is_doubled(*bits, kFunctionBits);
}

answer code(const char* name, const bit_buffer& bits, int first, int width) {
  return answer{.name = name,
                .function = bits.lsb_number(first, width),
                .hex = {bits.msb_number(first, width)},
                .layout = {.lead = first, .stop = true}};
}

}  // namespace

std::optional<answer> x10(const frame& seen) {
  bit_buffer bits;
  if (seen.length == kRepeatBursts && read_repeat(seen, 0, &bits)) {
    return code("X10", bits, 1, kFunctionBits);
  }
  if (seen.length != kStartBursts || !read_frame(seen, 0, kStartBursts, &bits)) return {};
  bit_buffer repeated;
  const bool has_repeat =
      seen.reach >= kStartBursts + kRepeatBursts && read_repeat(seen, kStartBursts, &repeated);
  if (!has_repeat && is_doubled(bits, kHouseBits)) return code("X10-house", bits, 1, kHouseBits);

  answer found = code("X10", bits, 0, kFunctionBits);
  found.name.print(":%d", bits.msb_number(kFunctionBits, 4));
  if (has_repeat && repeated.lsb_number(1, kFunctionBits) != found.function) {
    found.error = "invalid signal";
  }
  found.variant = true;
  found.remark = "only start frame";
  return found;
}

}  // namespace analysis
