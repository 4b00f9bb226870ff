// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/analyzer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/contract.h"
#include "tests/support/frames.h"
#include "tests/support/own_decoders.h"

namespace {

using frames::Durations;

using Analyzers = FreshAnalyzers;

const Durations kNecFrame = contract::frame("NEC1", {{"D", 4}, {"F", 8}});
const Durations kNecRepeat = {9024, 2256, 564};

// Stands first, while the list is in its order of registration.
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

// The limit grows with the index and wraps: at the 83rd duration it is 64 µs.
TEST_F(Analyzers, DropOutByALimitThatWraps) {
  Durations long_frame = kNecFrame;
  while (long_frame.size() < 99) frames::append(long_frame, {564});
  long_frame[20] = 564 + 64;
  EXPECT_EQ(vote(long_frame), RC_PROTO_NEC);
  long_frame[20] = 564 + 65;
  EXPECT_EQ(vote(long_frame), RC_PROTO_UNKNOWN);
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
