// SPDX-License-Identifier: GPL-3.0-or-later
// NEC: a lead of 16 or 8 units, then every mark one unit and every space one or three. A key
// that is held sends short repeat frames whose lead space has half the length.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kUnitUs = 564;
constexpr uint32_t kLeadUs = 16 * kUnitUs;
constexpr uint32_t kShortLeadUs = 8 * kUnitUs;
constexpr uint32_t kLeadSpaceUs = 8 * kUnitUs;
constexpr uint32_t kRepeatSpaceUs = 4 * kUnitUs;
constexpr uint32_t kLongUs = 3 * kUnitUs;

constinit win_memory memory = {};

uint32_t expected_us(uint32_t index, uint32_t duration) {
  if (index == 0) return nearer(duration, kShortLeadUs, kLeadUs);
  if (index > 1) return nearer(duration, kUnitUs, kLongUs);
  return memory.decodes_left > 0 ? nearer(duration, kRepeatSpaceUs, kLeadSpaceUs) : kLeadSpaceUs;
}

// A frame shorter than the one remembered is its repeat; any other one is remembered itself.
uint32_t finish_nec(uint32_t /*ticks*/, ir_t* ir, IR_PROTOCOL_ANALYZER* /*self*/) {
  if (memory.decodes_left > 0 && memory.frame_entries > ir->count) {
    ir->repeat = 1;
  } else {
    memory.frame_entries = ir->count;
  }
  remember_win(memory);
  return RC_PROTO_NEC;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_nec,
    .reset = age_win_memory,
    .priv = &memory,
    .remembers = true,
};

constinit protocol registration = {{}, "iranalyzer", "nec", &analyzer};

[[gnu::constructor(startup::kAnalyzerNec)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
