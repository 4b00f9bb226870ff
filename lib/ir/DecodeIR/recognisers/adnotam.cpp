// SPDX-License-Identifier: GPL-3.0-or-later
// Ad Notam and RTI_Relay.
//
// Bi-phase, most significant bit first; a zero is a mark and a space, a one a space and a mark.
//
//   Ad Notam   35.7 kHz, half bit 895 µs, a frame lasts 114 ms:  <1,-2,1> DDDDDD FFFFFF
//   RTI_Relay  40.2 kHz, half bit 398 µs, gap 19.5 ms:
//              <1> 7FE08080(31) F FFFFFFFF DDDDDDDD(23) DDDDDDDD 0000
//   D device, F function (of RTI_Relay 0 or 1, both times)
//
// Sample, D = 0, F = 0:
//   895,1790,1790,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,895,
//   895,895
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr slice_rule kRule{.unit_us = 895, .lead = 1, .lead_space = 2};
constexpr auto kCoding = bi_phase::space_first_is_one;
constexpr int kFieldBits = 6;

constexpr slice_rule kRelay{.unit_us = 398};
constexpr int kFewestRelayBursts = 38;
constexpr uint64_t kRelayHead = 0x7FE08080;  // 31 bits

/// The function is sent as 1 and 8 bits, the device as 23 and 8.
bool readRelay(const slicer& frame, int* device, int* function) {
  level_reader reader(frame);
  uint64_t head = 0;
  uint64_t body = 0;
  if (reader.level() != 1 || !reader.bits(31, kCoding, &head) || head != kRelayHead) return false;
  if (!reader.bits(1 + 8 + 23 + 8 + 4, kCoding, &body) || !reader.atEnd()) return false;
  *device = static_cast<int>(body >> 4 & 0xFF);
  *function = static_cast<int>(body >> 35 & 0xFF);
  return (body & 0xF) == 0 && (body >> 12 & 0x7FFFFF) == static_cast<uint64_t>(*device) &&
         body >> 43 == static_cast<uint64_t>(*function);
}

}  // namespace

void Signal::tryAdNotam() {
  if (!within(kAdNotamBounds)) return;
  slicer frame;
  if (frameLength_ >= kFewestRelayBursts) {
    int relay = 0;
    int on = 0;
    if (sliceFrame(kRelay, &frame) && readRelay(frame, &relay, &on))
      claim("RTI_Relay", relay, -1, on, on);
    return;
  }
  if (!sliceFrame(kRule, &frame) || frame.units(0) != 1) return;
  level_reader reader(frame, 2);
  uint64_t device = 0;
  uint64_t function = 0;
  if (reader.level() != 1 || !reader.bits(kFieldBits, kCoding, &device) ||
      !reader.bits(kFieldBits, kCoding, &function) || !reader.atEnd())
    return;
  const int obc = static_cast<int>(function);
  claim("Ad Notam", static_cast<int>(device), -1, obc, obc);
}
