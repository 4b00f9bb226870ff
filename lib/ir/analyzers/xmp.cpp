// SPDX-License-Identifier: GPL-3.0-or-later
// XMP: short marks of one length, spaces that carry the nibbles, and one long space between the
// two halves of a frame.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kMarkUs = 210;
constexpr uint32_t kHalvesGapIndex = 17;
constexpr uint32_t kHalvesGapUs = 13800;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  if (is_mark(index)) return kMarkUs;
  return index == kHalvesGapIndex ? kHalvesGapUs : duration;
}

uint32_t finish_xmp(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_XMP;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_xmp,
};

constinit protocol registration = {{}, "iranalyzer", "xmp", &analyzer};

[[gnu::constructor(startup::kAnalyzerXmp)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
