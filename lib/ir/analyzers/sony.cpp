// SPDX-License-Identifier: GPL-3.0-or-later
// Sony: a lead mark of four units, marks of one or two units, spaces of one.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kUnitUs = 600;
constexpr uint32_t kLeadUs = 4 * kUnitUs;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  if (index == 0) return kLeadUs;
  return is_mark(index) ? nearer(duration, kUnitUs, 2 * kUnitUs) : kUnitUs;
}

uint32_t finish_sony(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_SONY12;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_sony,
};

constinit protocol registration = {{}, "iranalyzer", "sony", &analyzer};

[[gnu::constructor(startup::kAnalyzerSony)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
