// SPDX-License-Identifier: GPL-3.0-or-later
// Ad Notam.
//
// Carrier 35.7 kHz, bi-phase, half bit 895 µs, most significant bit first; a zero is a mark and a
// space, a one a space and a mark. A frame lasts 114 ms with its gap.
//
//   <1,-2,1> DDDDDD FFFFFF
//   D device, F function
//
// Sample, D = 0, F = 0:
//   895,1790,1790,895,895,895,(...),895
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

constexpr slice_rule kRule{.unit_us = 895};
constexpr auto kCoding = bi_phase::space_first_is_one;
constexpr int kFieldBits = 6;

}  // namespace

void Signal::tryAdNotam() {
  if (!within(kAdNotamBounds)) return;
  slicer frame;
  if (!sliceFrame(kRule, &frame) || frame.units(0) != 1 || frame.units(1) != 2) return;
  level_reader reader(frame, 2);
  uint64_t device = 0;
  uint64_t function = 0;
  if (reader.level() != 1 || !reader.bits(kFieldBits, kCoding, &device) ||
      !reader.bits(kFieldBits, kCoding, &function) || !reader.atEnd())
    return;
  const int obc = static_cast<int>(function);
  claim("Ad Notam", static_cast<int>(device), -1, obc, obc);
}
