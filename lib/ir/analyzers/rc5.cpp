// SPDX-License-Identifier: GPL-3.0-or-later
// RC5: bi-phase, every duration one or two half bits; the first is one.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kHalfBitUs = 889;
constexpr uint32_t kSplitUs = 1332;  // not quite the middle

uint32_t expected_us(uint32_t index, uint32_t duration) {
  return index > 0 && duration > kSplitUs ? 2 * kHalfBitUs : kHalfBitUs;
}

uint32_t finish_rc5(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_RC5;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_rc5,
};

constinit protocol registration = {{}, "iranalyzer", "rc5", &analyzer};

[[gnu::constructor(startup::kAnalyzerRc5)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
