// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/analyzer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <random>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/contract.h"
#include "tests/support/frames.h"
#include "tests/support/own_decoders.h"

namespace {

using frames::Durations;

using Analyzers = FreshAnalyzers;

/// What an analyzer adds for durations that all have this index.
uint16_t error_of(std::string_view name, uint8_t index, std::initializer_list<uint32_t> durations) {
  for (const protocol* p : analyzers()) {
    if (p->name != name) continue;
    auto* analyzer = static_cast<IR_PROTOCOL_ANALYZER*>(p->iface);
    ir_t event = {};
    event.count = index;
    analyzer->acc = 0;
    for (const uint32_t duration : durations) analyzer->analyze(duration, &event, analyzer);
    return std::exchange(analyzer->acc, uint16_t{0});
  }
  ADD_FAILURE() << name;
  return 0;
}

const Durations kNecFrame = contract::frame("NEC1", {{"D", 4}, {"F", 8}});
const Durations kNecRepeat = {9024, 2256, 564};

/// What an analyzer adds for one duration.
struct Expectation {
  const char* analyzer;
  uint8_t index;
  uint32_t duration, expected;  // the error is their distance
};

constexpr uint32_t kAny = 0;  // the duration is not looked at

TEST_F(Analyzers, ExpectADurationByItsPlaceAndLength) {
  const Expectation kCases[] = {
      {"nec", 0, 6767, 4512},   {"nec", 0, 6768, 9024},   {"nec", 1, 3383, 4512},
      {"nec", 2, 1127, 564},    {"nec", 2, 1128, 1692},   {"nec", 3, 1127, 564},
      {"rc5", 0, 1400, 889},    {"rc5", 1, 1332, 889},    {"rc5", 1, 1333, 1778},
      {"mce", 0, 888, 2664},    {"mce", 1, 444, 888},     {"mce", 2, 888, 444},
      {"mce", 6, 888, 444},     {"mce", 7, 444, 888},     {"mce", 8, 888, 444},
      {"mce", 9, 444, 888},     {"mce", 10, 665, 444},    {"mce", 10, 666, 888},
      {"xmp", 0, 300, 210},     {"xmp", 2, 300, 210},     {"xmp", 15, 300, kAny},
      {"xmp", 16, 300, 210},    {"xmp", 17, 300, 13800},  {"xmp", 18, 300, 210},
      {"xmp", 19, 300, kAny},   {"ortek", 0, 480, 1920},  {"ortek", 1, 719, 480},
      {"ortek", 1, 720, 960},   {"sharp", 0, 527, 264},   {"sharp", 0, 528, 792},
      {"sharp", 0, 1319, 792},  {"sharp", 0, 1320, 1848}, {"sharp", 1, 264, 1848},
      {"sharp", 2, 527, 264},   {"sony", 0, 600, 2400},   {"sony", 1, 1200, 600},
      {"sony", 2, 899, 600},    {"sony", 2, 900, 1200},   {"sony", 3, 900, 600},
      {"denon", 0, 1848, 264},  {"denon", 1, 1320, 792},  {"denon", 1, 1321, 1848},
      {"denon", 2, 1848, 264},  {"zarvo", 0, 840, 4900},  {"zarvo", 1, 100, kAny},
      {"zarvo", 2, 4900, 840},  {"zarvo", 16, 4900, 840}, {"zarvo", 17, 100, kAny},
      {"zarvo", 18, 840, 4480}, {"zarvo", 19, 100, kAny}, {"zarvo", 20, 100, kAny},
      {"nokia", 0, 164, 412},   {"nokia", 1, 164, 276},   {"nokia", 2, 412, 164},
      {"nokia", 3, 412, kAny},  {"nokia", 4, 412, 164},   {"tdc", 0, 630, 315},
      {"tdc", 1, 472, 315},     {"tdc", 1, 473, 630},     {"tdc", 2, 14000, 630},
  };
  for (const auto& c : kCases) {
    const auto error = c.expected == kAny ? 0 : std::abs(static_cast<int>(c.duration - c.expected));
    EXPECT_EQ(error_of(c.analyzer, c.index, {c.duration}), error)
        << c.analyzer << ' ' << int{c.index} << ' ' << c.duration;
  }
  EXPECT_EQ(error_of("rc5", 1, {1700, 1800, 1778 + 65436}), 0) << "the sum wraps at 65536";
  vote(kNecFrame);
  EXPECT_EQ(error_of("nec", 1, {3383}), 3383 - 2256) << "a repeat's space, after a frame";
  EXPECT_EQ(error_of("nec", 1, {3384}), 4512 - 3384);
}

TEST_F(Analyzers, DropOutAboveALimit) {
  const struct {
    const char* what;
    uint8_t index;
    uint16_t error;
    bool stays;
  } kCases[] = {
      {"the first edges", 0, 2000, true},
      {"one more", 0, 2001, false},
      {"the last early edge", 5, 2000, true},
      {"one more", 5, 2001, false},
      {"then 800 an edge", 6, 4800, true},
      {"one more", 6, 4801, false},
      {"the last before it wraps", 81, 64800, true},
      {"after it", 82, 64, true},
      {"one more", 82, 65, false},
  };
  for (const auto& c : kCases) {
    forget();
    probe_error = 0;
    probe_analyzer.result = 7;
    ir_t event = {};
    analyze_edge(UINT16_MAX, &event);  // too far off for all others
    probe_error = c.error;
    event.count = c.index;
    EXPECT_EQ(analyze_edge(0, &event), c.stays ? 7 : 0) << c.what << ' ' << int{c.index};
    EXPECT_EQ(analyze_finish(5, &event), c.stays ? 1005U : 0U) << c.what << ' ' << int{c.index};
    probe_analyzer.result = 7;
    reset_analyzer();
    EXPECT_EQ(probe_analyzer.result, 0) << "whether it was dropped or not";
    EXPECT_EQ(probe_analyzer.acc, 0);
  }
}

TEST_F(Analyzers, GiveATieToTheFirstInTheList) {
  EXPECT_EQ(vote({}), RC_PROTO_NEC);
  const Durations exact_for_both = {264};
  EXPECT_EQ(vote(exact_for_both), RC_PROTO_SHARP);
  vote({264, 100, 0});  // too far off for sharp alone, which goes to the end of the list
  EXPECT_EQ(vote(exact_for_both), RC_PROTO_DENON);
  vote({1319, 1848, 1319});  // too far off for denon, not for sharp
  EXPECT_EQ(vote(exact_for_both), RC_PROTO_SHARP);
  vote({14000});  // too far off for all: they come back in the order in which they stood
  EXPECT_EQ(vote(exact_for_both), RC_PROTO_SHARP);

  probe_error = 0;  // it leads, and gives a tie to those before it
  probe_analyzer.result = 7;
  ir_t event = {};
  EXPECT_EQ(analyze_edge(264, &event), 0);
  EXPECT_EQ(analyze_edge(265, &event), 7);
}

TEST_F(Analyzers, NameTheProtocolOfAFrame) {
  const Durations ortek = {1920, 480, 480, 480, 960, 960, 480, 480, 960, 480, 480};
  const Durations sharp = {264, 1848, 264, 1848, 700, 1848, 264};
  const Durations denon = {264, 792, 264, 1848, 264, 792, 264};
  const Durations sony = {2400, 600, 600, 600, 1200, 600, 600};
  const struct {
    const char* what;
    uint32_t expected;
    Durations durations;
  } kCases[] = {
      {"NEC", RC_PROTO_NEC, kNecFrame},
      {"NECX, with its short lead", RC_PROTO_NEC, {4512, 4512, 564, 564, 564, 1692, 564}},
      {"RC5", RC_PROTO_RC5, {889, 889, 1778, 889, 889, 1778, 1778}},
      {"RC6", RC_PROTO_RC6_MCE, contract::frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}})},
      {"XMP", RC_PROTO_XMP, frames::xmp(0x13FF4415, 0x1D0F1200)},
      {"Ortek", RC_PROTO_ORTEK, ortek},
      {"Sharp", RC_PROTO_SHARP, sharp},
      {"Sony", RC_PROTO_SONY12, sony},
      {"Denon", RC_PROTO_DENON, denon},
      {"ZARVO", RC_PROTO_ZARVO, frames::zarvo(0x2A, 1, 0x35)},
      {"Nokia", RC_PROTO_NOKIA, frames::nokia(0xA53, 12)},
      {"TDC", RC_PROTO_TDC, frames::tdc(0xA35B)},
      {"nobody's", RC_PROTO_UNKNOWN, {14000, 14000, 14000}},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    forget();
    EXPECT_EQ(vote(c.durations), c.expected);
    const std::vector<uint16_t> bare(c.durations.begin(), c.durations.end());
    EXPECT_EQ(analyze_protocol(bare.data(), static_cast<uint8_t>(bare.size())), c.expected);
  }
}

/// What a vote leaves behind: the winner, what it says of the event, every error sum, and the
/// order of the analyzers afterwards.
std::string trace_of_vote(ir_t& event) {
  std::ostringstream trace;
  trace << analyze_finish(kFinishTicks, &event) << ' ' << int{event.repeat};
  for (const protocol* p : analyzers()) {
    trace << ' ' << static_cast<IR_PROTOCOL_ANALYZER*>(p->iface)->acc;
  }
  reset_analyzer();
  for (list_head* n = probe_analyzer.node.next; n != &probe_analyzer.node; n = n->next) {
    trace << ' ' << n;
  }
  return trace.str();
}

TEST_F(Analyzers, ScoreAPatternAsTheyScoreItsEdges) {
  constexpr int kPatterns = 20'000;
  std::mt19937 random(1);
  const uint16_t nominal_us[] = {210, 264, 444, 564, 840, 889, 1692, 1848, 2400, 9024, 13800};
  std::vector<std::vector<uint16_t>> patterns(kPatterns);
  for (auto& pattern : patterns) {
    const bool noise = random() % 4 == 0;
    pattern.resize(random() % 8 == 0 ? random() % 201 : random() % 12);
    for (uint16_t& us : pattern) {
      us = noise ? static_cast<uint16_t>(random() % 3000) : nominal_us[random() % 11];
    }
    if (&pattern != patterns.data() && random() % 2 == 0) pattern = *(&pattern - 1);
  }
  const auto traces = [&patterns](auto score) {
    forget();
    std::vector<std::string> found;
    for (const auto& pattern : patterns) {
      ir_t event = {};
      event.te = static_cast<uint16_t>(pattern.size() + 40);  // repeats need a gap
      score(pattern, event);
      event.count = static_cast<uint8_t>(pattern.size());
      found.push_back(trace_of_vote(event));
    }
    return found;
  };
  const auto by_edge = traces([](const std::vector<uint16_t>& pattern, ir_t& event) {
    for (const uint16_t us : pattern) {
      analyze_edge(us, &event);
      ++event.count;
    }
  });
  EXPECT_EQ(traces([](const auto& pattern, ir_t& event) { analyze_all(pattern, &event); }),
            by_edge);
}

// Longer than an event: the durations behind its 200 count as well.
TEST_F(Analyzers, AreFedAllOfABareArray) {
  std::vector<uint16_t> xmp;
  for (int i = 0; i < 255; ++i) xmp.push_back(i % 2 == 0 ? 210 : 13800);
  EXPECT_EQ(analyze_protocol(xmp.data(), 255), RC_PROTO_XMP);
  xmp[202] = 60000;
  EXPECT_EQ(analyze_protocol(xmp.data(), 202), RC_PROTO_XMP);
  EXPECT_EQ(analyze_protocol(xmp.data(), 255), RC_PROTO_UNKNOWN);
}

TEST_F(Analyzers, RememberTheLastNecFrameForOneMoreDecode) {
  EXPECT_FALSE(is_repeat(kNecFrame));
  EXPECT_TRUE(is_repeat(kNecRepeat));
  EXPECT_TRUE(is_repeat(kNecRepeat)) << "a repeat keeps the memory";
  EXPECT_FALSE(is_repeat(kNecFrame)) << "as long as the one remembered";
  ASSERT_EQ(vote({264, 792, 264, 792, 264}), RC_PROTO_DENON);
  EXPECT_FALSE(is_repeat(kNecRepeat)) << "forgotten after one other decode";
}

TEST_F(Analyzers, ExpectTheShortLeadSpaceOnlyAfterANecFrame) {
  // Off by 2256 without a frame before it, so nec drops out at once.
  EXPECT_EQ(vote(kNecRepeat), RC_PROTO_UNKNOWN);
  ASSERT_EQ(vote(kNecFrame), RC_PROTO_NEC);
  EXPECT_EQ(vote(kNecRepeat), RC_PROTO_NEC);
}

TEST_F(Analyzers, TellRepeatsOfSomeProtocolsByTheGapBeforeThem) {
  const Durations ortek = {1920, 480, 480, 480, 960, 960, 480};
  const Durations sharp = {264, 1848, 264, 792, 264};
  const Durations denon = {264, 792, 264, 1848, 264};
  const struct {
    const char* what;
    const Durations& frame;
    uint16_t gap_ms;
    bool repeat;
  } kCases[] = {
      {"ortek, too soon", ortek, 43, false}, {"ortek, earliest", ortek, 44, true},
      {"ortek, latest", ortek, 52, true},    {"ortek, too late", ortek, 53, false},
      {"sharp, too soon", sharp, 42, false}, {"sharp, earliest", sharp, 43, true},
      {"sharp, latest", sharp, 50, true},    {"sharp, too late", sharp, 51, false},
      {"denon, earliest", denon, 43, true},  {"denon, too late", denon, 51, false},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    forget();
    EXPECT_FALSE(is_repeat(c.frame, c.gap_ms)) << "nothing remembered yet";
    EXPECT_EQ(is_repeat(c.frame, c.gap_ms), c.repeat);
  }
}

}  // namespace
