// SPDX-License-Identifier: GPL-3.0-or-later
// Denon: marks of one unit, spaces of three or seven; no lead.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kUnitUs = 264;
constexpr uint32_t kShortSpaceUs = 3 * kUnitUs;
constexpr uint32_t kLongSpaceUs = 7 * kUnitUs;
// A frame is followed by its complemented copy this much later.
constexpr uint16_t kMinRepeatGapMs = 43;
constexpr uint16_t kMaxRepeatGapMs = 50;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  return is_mark(index) ? kUnitUs : nearer(duration, kShortSpaceUs, kLongSpaceUs);
}

uint32_t finish_denon(uint32_t /*ticks*/, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  note_win(ir, self, kMinRepeatGapMs, kMaxRepeatGapMs);
  return RC_PROTO_DENON;
}

constinit win_memory memory = {};

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_denon,
    .reset = age_win_memory,
    .priv = &memory,
};

constinit protocol registration = {{}, "iranalyzer", "denon", &analyzer};

[[gnu::constructor(startup::kAnalyzerDenon)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
