// SPDX-License-Identifier: GPL-3.0-or-later
// The device's own protocol: a lead mark, eight marks of one length whose spaces carry bits, and
// a second lead mark before the bi-phase part, which is not looked at.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kUnitUs = 840;
constexpr uint32_t kLeadUs = 4900;
constexpr uint32_t kSecondLeadUs = 4480;
constexpr uint32_t kSecondLeadIndex = 18;

void analyze_zarvo(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  if (!is_mark(ir->count) || ir->count > kSecondLeadIndex) return;
  uint32_t expected = kUnitUs;
  if (ir->count == 0) expected = kLeadUs;
  if (ir->count == kSecondLeadIndex) expected = kSecondLeadUs;
  add_error(self, duration, expected);
}

uint32_t finish_zarvo(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_ZARVO;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = analyze_zarvo,
    .finish = finish_zarvo,
};

constinit protocol registration = {{}, "iranalyzer", "zarvo", &analyzer};

[[gnu::constructor(startup::kAnalyzerZarvo)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
