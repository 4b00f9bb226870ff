// SPDX-License-Identifier: GPL-3.0-or-later
// Nokia: a lead mark and space, then short marks of one length and spaces that carry two bits.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kLeadUs = 412;
constexpr uint32_t kLeadSpaceUs = 276;
constexpr uint32_t kMarkUs = 164;

void analyze_nokia(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  if (ir->count == 0) {
    add_error(self, duration, kLeadUs);
  } else if (ir->count == 1) {
    add_error(self, duration, kLeadSpaceUs);
  } else if (is_mark(ir->count)) {
    add_error(self, duration, kMarkUs);
  }
}

uint32_t finish_nokia(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_NOKIA;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_nokia,
    .finish = finish_nokia,
};

constinit protocol registration = {{}, "iranalyzer", "nokia", &analyzer};

[[gnu::constructor(startup::kAnalyzerNokia)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
