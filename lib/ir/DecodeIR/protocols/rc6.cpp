// SPDX-License-Identifier: GPL-3.0-or-later
// RC6 in all its modes and lengths.
//
// Carrier 36 kHz, bi-phase, half bit 444 µs, most significant bit first; a one is a mark and a
// space. Lead-in: mark 6, space 2 half bits. The toggle bit is twice as wide as the others.
//
//   <6,-2> 1 MMM TT DDDDDDDD FFFFFFFF                     RC6 (mode 0), RC6-M-16
//   <6,-2> 1 MMM TT DDDDDDDD SSSS FFFFFFFF                RC6-M-20
//   <6,-2> 1 MMM TT DDDDDDDD SSSSSSSS FFFFFFFF            RC6-M-24; mode 6: Replay
//   <6,-2> 1 MMM TT DDDDDDDD SSSSSSSSSSSS FFFFFFFF        RC6-M-28
//   <6,-2> 1 MMM TT OOOOOOOO PPPPPPPP DDDDDDDD FFFFFFFF   RC6-M-32; mode 6 with O = 128: MCE,
//                                                         where P is the subdevice and the first
//                                                         bit of D the toggle
//   <6,-2> 1 MMM TT C x 56                                RC6-M-56; a fixed head: entone
//   M mode, T toggle, D device, S subdevice, F function, O and P maker
//
// RC6 has no check; bi-phase, the wide toggle, the exact number of bits and the gaps stand for it.
//
// Sample, RC6, D = 0, F = 12, T = 0:
//   2664,888,444,888,444,444,444,444,444,888,888,444,444,444,444,444,444,444,444,444,444,444,444,
//   444,444,444,444,444,444,444,444,444,444,444,888,444,444,888,444,444,444
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/readers/levels.h"

namespace analysis {
namespace {

constexpr int kLeadMark = 6;
constexpr int kLeadSpace = 2;
constexpr slice_rule kRule{
    .unit_us = 444, .longest = kLeadMark, .lead = kLeadMark, .lead_space = kLeadSpace};
constexpr float kShortestLeadUs = 4 * 444;
constexpr auto kCoding = bi_phase::mark_first_is_one;
constexpr int kToggleWidth = 2;
constexpr int kMostBits = 56;

constexpr int kMceMode = 6;
constexpr int kMceMaker = 128;
constexpr unsigned kEntoneHead[] = {0xE60396, 0xFFFFF};  // the first 24 and the next 20 of 56 bits

/// The start bit and the mode, the toggle, and what follows it.
bool read_frame(const frame& seen, bit_buffer* head, bit_buffer* data) {
  slicer frame;
  if (!frame.slice(seen, kRule)) {
    seen.refused(frame.why());
    return false;
  }
  level_reader reader(frame, 2);
  return reader.bits(4, kCoding, head) && reader.bits(1, kCoding, head, kToggleWidth) &&
         head->getBit(0) == 1 && reader.rest(kMostBits, kCoding, data);
}

/// The numbers of the lengths up to 28 bits.
answer short_form(const bit_buffer& data) {
  const int count = data.size();
  const int function = data.msb_number(count - 8, 8);
  answer found{.device = data.msb_number(0, 8), .function = function, .hex = {function}};
  if (count > 16) found.subdevice = data.msb_number(8, count - 16);
  return found;
}

answer form_32(const bit_buffer& data, int mode, int toggle) {
  const int maker = data.msb_number(0, 8);
  const int second = data.msb_number(8, 8);
  const int function = data.msb_number(24, 8);
  answer found{.device = data.msb_number(16, 8), .function = function, .hex = {function}};
  if (mode == kMceMode && maker == kMceMaker) {
    found.name = "MCE";
    found.remark.print("T=%d", found.device >> 7);
    found.device &= 0x7F;
    found.subdevice = second;
  } else {
    found.remark.print("T=%d OEM1=%d OEM2=%d", toggle, maker, second);
  }
  return found;
}

answer form_56(const bit_buffer& data, int mode, int toggle) {
  const bool entone = mode == kMceMode && msb(data.getLsb(0, 24), 24) == kEntoneHead[0] &&
                      msb(data.getLsb(24, 20), 20) == kEntoneHead[1] && data.getLsb(52, 4) == 0;
  answer found;
  if (entone) {
    found.name = "entone";
    found.function = found.hex.first = data.msb_number(44, 8);
  } else {
    found.remark.print("T=%d C=%06X%08X", toggle, msb(data.getLsb(0, 24), 24),
                       msb(data.getLsb(24, 32), 32));
  }
  return found;
}

}  // namespace

std::optional<answer> rc6(const frame& seen) {
  bit_buffer head;
  bit_buffer data;
  if (seen.on(0) < kShortestLeadUs || !read_frame(seen, &head, &data)) return {};
  const int mode = head.msb_number(1, 3);
  const int toggle = head.msb_number(4, 1);
  const int count = data.size();
  answer found;
  if (count == 16 || count == 20 || count == 24 || count == 28) {
    found = short_form(data);
    if (count == 16 && mode == 0) found.name = "RC6";
    if (count == 24 && mode == kMceMode) found.name = "Replay";
    found.remark.print("T=%d", toggle);
  } else if (count == 32) {
    found = form_32(data, mode, toggle);
  } else if (count == kMostBits) {
    found = form_56(data, mode, toggle);
  } else {
    return {};
  }
  if (found.name.empty()) found.name.print("RC6-%d-%d", mode, count);
  found.layout.lead = 1;
  return found;
}

}  // namespace analysis
