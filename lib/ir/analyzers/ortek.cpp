// SPDX-License-Identifier: GPL-3.0-or-later
// Ortek: a lead of four units, then bi-phase durations of one or two units.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kUnitUs = 480;
constexpr uint32_t kLeadUs = 4 * kUnitUs;
// A held key sends its frames this far apart.
constexpr uint16_t kMinRepeatGapMs = 48 - 4;
constexpr uint16_t kMaxRepeatGapMs = 48 + 4;

void analyze_ortek(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  uint32_t expected = nearer(duration, kUnitUs, 2 * kUnitUs);
  if (ir->count == 0) expected = kLeadUs;
  add_error(self, duration, expected);
}

uint32_t finish_ortek(uint32_t /*ticks*/, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  note_win(ir, self, kMinRepeatGapMs, kMaxRepeatGapMs);
  return RC_PROTO_ORTEK;
}

constinit win_memory memory = {};

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_ortek,
    .finish = finish_ortek,
    .reset = age_win_memory,
    .priv = &memory,
};

constinit protocol registration = {{}, "iranalyzer", "ortek", &analyzer};

[[gnu::constructor(startup::kAnalyzerOrtek)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
