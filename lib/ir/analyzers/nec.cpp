// SPDX-License-Identifier: GPL-3.0-or-later
// NEC: a lead of 16 or 8 units, then every mark one unit and every space one or three. A key
// that is held sends short repeat frames whose lead space has half the length.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kUnitUs = 564;
constexpr uint32_t kLeadUs = 16 * kUnitUs;
constexpr uint32_t kShortLeadUs = 8 * kUnitUs;
constexpr uint32_t kLeadSpaceUs = 8 * kUnitUs;
constexpr uint32_t kRepeatSpaceUs = 4 * kUnitUs;
constexpr uint32_t kLongUs = 3 * kUnitUs;

void analyze_nec(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  const auto* memory = static_cast<const win_memory*>(self->priv);
  uint32_t expected = nearer(duration, kUnitUs, kLongUs);
  if (ir->count == 0) {
    expected = nearer(duration, kShortLeadUs, kLeadUs);
  } else if (ir->count == 1) {
    expected = kLeadSpaceUs;
    if (memory->decodes_left > 0) expected = nearer(duration, kRepeatSpaceUs, kLeadSpaceUs);
  }
  add_error(self, duration, expected);
}

// A frame shorter than the one remembered is its repeat; any other one is remembered itself.
uint32_t finish_nec(uint32_t /*ticks*/, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  auto* memory = static_cast<win_memory*>(self->priv);
  if (memory->decodes_left > 0 && memory->frame_entries > ir->count) {
    ir->repeat = 1;
  } else {
    memory->frame_entries = ir->count;
  }
  remember_win(*memory);
  return RC_PROTO_NEC;
}

void reset_nec(IR_PROTOCOL_ANALYZER* self) {
  age_win_memory(self);
}

constinit win_memory memory = {};

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_nec,
    .finish = finish_nec,
    .reset = reset_nec,
    .priv = &memory,
};

constinit protocol registration = {{}, "iranalyzer", "nec", &analyzer};

[[gnu::constructor(startup::kAnalyzerNec)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
