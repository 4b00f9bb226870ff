// SPDX-License-Identifier: GPL-3.0-or-later
// Sony: a lead mark of four units, marks of one or two units, spaces of one.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kUnitUs = 600;
constexpr uint32_t kLeadUs = 4 * kUnitUs;

void analyze_sony(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  uint32_t expected = is_mark(ir->count) ? nearer(duration, kUnitUs, 2 * kUnitUs) : kUnitUs;
  if (ir->count == 0) expected = kLeadUs;
  add_error(self, duration, expected);
}

uint32_t finish_sony(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_SONY12;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_sony,
    .finish = finish_sony,
};

constinit protocol registration = {{}, "iranalyzer", "sony", &analyzer};

[[gnu::constructor(startup::kAnalyzerSony)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
