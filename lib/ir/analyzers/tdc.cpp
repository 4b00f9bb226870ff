// SPDX-License-Identifier: GPL-3.0-or-later
// TDC: bi-phase, every duration one or two half bits; the first is one.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kHalfBitUs = 315;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  return index == 0 ? kHalfBitUs : nearer(duration, kHalfBitUs, 2 * kHalfBitUs);
}

uint32_t finish_tdc(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_TDC;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_tdc,
};

constinit protocol registration = {{}, "iranalyzer", "tdc", &analyzer};

[[gnu::constructor(startup::kAnalyzerTdc)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
