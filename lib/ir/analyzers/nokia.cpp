// SPDX-License-Identifier: GPL-3.0-or-later
// Nokia: a lead mark and space, then short marks of one length and spaces that carry two bits.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kLeadUs = 412;
constexpr uint32_t kLeadSpaceUs = 276;
constexpr uint32_t kMarkUs = 164;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  if (index == 0) return kLeadUs;
  if (index == 1) return kLeadSpaceUs;
  return is_mark(index) ? kMarkUs : duration;
}

uint32_t finish_nokia(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_NOKIA;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_nokia,
};

constinit protocol registration = {{}, "iranalyzer", "nokia", &analyzer};

[[gnu::constructor(startup::kAnalyzerNokia)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
