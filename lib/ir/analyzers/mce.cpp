// SPDX-License-Identifier: GPL-3.0-or-later
// RC6 as media-centre remotes send it: a lead of six and two half bits, the start bit and the
// mode bits 110, then bi-phase durations of one or two half bits.
#include "lib/ir/analyzer.h"
#include "lib/libutil/startup.h"

namespace {

constexpr uint32_t kHalfBitUs = 444;
constexpr uint32_t kLeadUs = 6 * kHalfBitUs;
constexpr uint32_t kSplitUs = 665;

// Where the lead and the mode bits fix the length, and where the free bits begin.
constexpr uint32_t kLeadSpaceIndex = 1;
constexpr uint32_t kFirstFreeIndex = 7;
constexpr uint32_t kSingleIndex = 8;
constexpr uint32_t kDoubleIndex = 9;

bool two_halves(uint32_t index, uint32_t duration) {
  if (index == kLeadSpaceIndex || index == kFirstFreeIndex || index == kDoubleIndex) return true;
  return index > kFirstFreeIndex && index != kSingleIndex && duration > kSplitUs;
}

void analyze_mce(uint32_t duration, ir_t* ir, IR_PROTOCOL_ANALYZER* self) {
  uint32_t expected = two_halves(ir->count, duration) ? 2 * kHalfBitUs : kHalfBitUs;
  if (ir->count == 0) expected = kLeadUs;
  add_error(self, duration, expected);
}

uint32_t finish_mce(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_RC6_MCE;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .node = {},
    .analyze = analyze_mce,
    .finish = finish_mce,
    .reset = nullptr,
    .priv = nullptr,
    .acc = 0,
    .result = 0,
};

constinit protocol registration = {{}, "iranalyzer", "mce", &analyzer};

[[gnu::constructor(startup::kAnalyzerMce)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
