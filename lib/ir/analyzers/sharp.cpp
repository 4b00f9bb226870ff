// SPDX-License-Identifier: GPL-3.0-or-later
// Sharp: marks of one unit, spaces of three or seven; no lead. The first space is always taken
// for a long one.
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
  if (index == 1) return kLongSpaceUs;
  return nearer(duration, kUnitUs, nearer(duration, kShortSpaceUs, kLongSpaceUs));
}

uint32_t finish_sharp(uint32_t /*ticks*/, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  note_win(ir, self, kMinRepeatGapMs, kMaxRepeatGapMs);
  return RC_PROTO_SHARP;
}

constinit win_memory memory = {};

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_sharp,
    .reset = age_win_memory,
    .priv = &memory,
};

constinit protocol registration = {{}, "iranalyzer", "sharp", &analyzer};

[[gnu::constructor(startup::kAnalyzerSharp)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
