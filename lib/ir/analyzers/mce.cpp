// SPDX-License-Identifier: GPL-3.0-or-later
// RC6 as media-centre remotes send it: a lead of six and two half bits, the start bit and the
// mode bits 110, then bi-phase durations of one or two half bits.
#include "lib/ir/analyzer.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint32_t kHalfBitUs = 444;
constexpr uint32_t kBitUs = 2 * kHalfBitUs;
constexpr uint32_t kLeadUs = 6 * kHalfBitUs;

// Where the lead and the mode bits fix the length, and where the free bits begin.
constexpr uint32_t kLeadSpaceIndex = 1;
constexpr uint32_t kFirstFreeIndex = 7;
constexpr uint32_t kSingleIndex = 8;
constexpr uint32_t kDoubleIndex = 9;

uint32_t expected_us(uint32_t index, uint32_t duration) {
  if (index == 0) return kLeadUs;
  if (index == kLeadSpaceIndex || index == kFirstFreeIndex || index == kDoubleIndex) return kBitUs;
  if (index < kFirstFreeIndex || index == kSingleIndex) return kHalfBitUs;
  return nearer(duration, kHalfBitUs, kBitUs);
}

uint32_t finish_mce(uint32_t /*ticks*/, ir_t* /*ir*/, IR_PROTOCOL_ANALYZER* /*self*/) {
  return RC_PROTO_RC6_MCE;
}

constinit IR_PROTOCOL_ANALYZER analyzer = {
    .analyze = score<expected_us>,
    .analyze_all = score_all<expected_us>,
    .finish = finish_mce,
};

constinit protocol registration = {{}, "iranalyzer", "mce", &analyzer};

[[gnu::constructor(startup::kAnalyzerMce)]] void REGFUNC__iranalyzer() {
  _register_protocol_iranalyzer(&registration);
}

}  // namespace
