// SPDX-License-Identifier: GPL-3.0-or-later
// The device's own protocol: a lead mark, eight marks of one length whose spaces carry bits, and
// a second lead mark before the bi-phase part, which is not looked at.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kUnitUs = 840;
constexpr uint32_t kLeadUs = 4900;
constexpr uint32_t kSecondLeadUs = 4480;
constexpr uint32_t kSecondLeadIndex = 18;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  if (index == 0) return kLeadUs;
  if (index == kSecondLeadIndex) return kSecondLeadUs;
  return is_mark(index) && index < kSecondLeadIndex ? kUnitUs : duration;
}

uint32_t finish_zarvo(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_ZARVO;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_zarvo,
};

constinit protocol registration = {{}, "iranalyzer", "zarvo", &analyzer};

[[gnu::constructor(startup::kAnalyzerZarvo)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
