// SPDX-License-Identifier: GPL-3.0-or-later
// TDC: bi-phase, every duration one or two half bits; the first is one.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kHalfBitUs = 315;
constexpr uint32_t kSplitUs = 473;

void analyze_tdc(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  const bool two_halves = ir->count > 0 && duration >= kSplitUs;
  add_error(self, duration, two_halves ? 2 * kHalfBitUs : kHalfBitUs);
}

uint32_t finish_tdc(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_TDC;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .node = {},
    .analyze = analyze_tdc,
    .finish = finish_tdc,
    .reset = nullptr,
    .priv = nullptr,
    .acc = 0,
    .result = 0,
};

constinit protocol registration = {{}, "iranalyzer", "tdc", &analyzer};

[[gnu::constructor(startup::kAnalyzerTdc)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
