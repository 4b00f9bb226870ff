// SPDX-License-Identifier: GPL-3.0-or-later
// Humax 4Phase.
//
// Carrier 56 kHz, four-phase, unit 105 µs, most significant bit first. Two bits take four units:
//   00 = <-2,2>   01 = <-3,1>   10 = <1,-3>   11 = <2,-2>
// A frame lasts 95 ms with its gap.
//
//   <2,-2> DDDDDD SSSSSS TT FFFFFFF f
//   D device, S subdevice, T 0 in the first frame and 1 in repeats, F function, f the complement of
//   F's last bit
//
// Sample, D = 0, S = 0, F = 0, T = 0:
//   210,420,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,210,315,105
// Facts: public protocol definitions in IRP notation.
#include <cmath>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wire_bits.h"

namespace {

constexpr slice_rule kRule{
    .unit_us = 105, .longest = 6, .tolerance = 0.4F, .spread = 0.2F, .lead = 2};
constexpr slice_rule kBiased{
    .unit_us = 105, .longest = 6, .tolerance = 0.4F, .spread = 0.2F, .bias = 0.55F, .lead = 2};
constexpr float kLeadMarkUs = 2 * 105;
constexpr float kLeadToleranceUs = 130;
constexpr int kSymbols = 11;
constexpr four_phase kCode{4, {0b0011, 0b0001, 0b1000, 0b1100}};
constexpr unsigned kLead = 0b1100;

/// The bits behind the lead-in; false when the frame is no whole number of symbols.
bool readFrame(const slicer& frame, wire_bits* bits) {
  level_reader reader(frame);
  uint64_t lead = 0;
  reader.levels(kCode.units, &lead);
  return lead == kLead && readPhases(&reader, kSymbols, kCode, bits) && reader.atEnd();
}

}  // namespace

void Signal::tryHumax() {
  if (!within(kHumaxBounds) || std::abs(on(0) - kLeadMarkUs) > kLeadToleranceUs) return;
  slicer frame;
  wire_bits bits;
  if (!(sliceFrame(kRule, &frame) && readFrame(frame, &bits))) {
    // The unit is so short that a receiver's bias can look like one unit more or less.
    bits = {};
    if (!(sliceFrame(kBiased, &frame) && readFrame(frame, &bits))) return;
  }
  const unsigned toggle = bits.msb(12, 2);
  if (bits.bit(20) == bits.bit(21) || toggle > 1) return;
  const int function = static_cast<int>(bits.msb(14, 7));
  claim("Humax 4Phase", static_cast<int>(bits.msb(0, 6)), static_cast<int>(bits.msb(6, 6)),
        function, function);
  remark("T=%u", toggle);
}
