// SPDX-License-Identifier: GPL-3.0-or-later
// TDC: bi-phase, every duration one or two half bits; the first is one.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kHalfBitUs = 315;

void analyze_tdc(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  uint32_t expected = nearer(duration, kHalfBitUs, 2 * kHalfBitUs);
  if (ir->count == 0) expected = kHalfBitUs;
  add_error(self, duration, expected);
}

uint32_t finish_tdc(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_TDC;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_tdc,
    .finish = finish_tdc,
};

constinit protocol registration = {{}, "iranalyzer", "tdc", &analyzer};

[[gnu::constructor(startup::kAnalyzerTdc)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
