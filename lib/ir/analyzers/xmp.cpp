// SPDX-License-Identifier: GPL-3.0-or-later
// XMP: short marks of one length, spaces that carry the nibbles, and one long space between the
// two halves of a frame.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kMarkUs = 210;
constexpr uint32_t kHalvesGapIndex = 17;
constexpr uint32_t kHalvesGapUs = 13800;

void analyze_xmp(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  if (is_mark(ir->count)) {
    add_error(self, duration, kMarkUs);
  } else if (ir->count == kHalvesGapIndex) {
    add_error(self, duration, kHalvesGapUs);
  }
}

uint32_t finish_xmp(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_XMP;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_xmp,
    .finish = finish_xmp,
};

constinit protocol registration = {{}, "iranalyzer", "xmp", &analyzer};

[[gnu::constructor(startup::kAnalyzerXmp)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
