// SPDX-License-Identifier: GPL-3.0-or-later
// Ortek: a lead of four units, then bi-phase durations of one or two units.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kUnitUs = 480;
constexpr uint32_t kLeadUs = 4 * kUnitUs;
// A held key sends its frames this far apart.
constexpr uint16_t kMinRepeatGapMs = 48 - 4;
constexpr uint16_t kMaxRepeatGapMs = 48 + 4;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  return index == 0 ? kLeadUs : nearer(duration, kUnitUs, 2 * kUnitUs);
}

uint32_t finish_ortek(uint32_t /*ticks*/, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  note_win(ir, self, kMinRepeatGapMs, kMaxRepeatGapMs);
  return RC_PROTO_ORTEK;
}

constinit win_memory memory = {};

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_ortek,
    .reset = age_win_memory,
    .priv = &memory,
};

constinit protocol registration = {{}, "iranalyzer", "ortek", &analyzer};

[[gnu::constructor(startup::kAnalyzerOrtek)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
