// SPDX-License-Identifier: GPL-3.0-or-later
// The search and the repeat bookkeeping, driven by recognisers that answer by a script.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "tests/support/scripted_signal.h"

namespace {

using namespace scripted;
using Bookkeeping = ScriptedCall;

// Frames, and their copies behind them.
const step kNec = {0, 4, "NEC"}, kNecCopy = {4, 4, "NEC"};
const step kRc5 = {0, 4, "RC5", 1}, kRc5Copy = {4, 4, "RC5", 1};
const step kToggled = {0, 4, "RC5", 1, -1, 2, "T=1"}, kToggledCopy = {4, 4, "RC5", 1, -1, 2, "T=1"};
const step kJvc = {0, 4, "JVC"}, kJvcCopy = {4, 4, "JVC"};
const step kRca = {0, 4, "RCA-38"}, kRcaCopy = {4, 4, "RCA-38"};
const step kSony = {0, 4, "Sony12", 1}, kSonyCopy = {4, 4, "Sony12", 1};
const step kXmp = as_xmp({0, 4, "XMP"}), kXmpCopy = {4, 4, "XMP"};
const step kTek = {0, 4, "Solidtek16", 1, -1, 2}, kTekCopy = {4, 4, "Solidtek16", 1, -1, 2};
const step kTek20 = {0, 4, "Solidtek20", 1, 2, 7}, kTek20Copy = {4, 4, "Solidtek20", 1, 2, 7};
const step kTek0 = {0, 4, "Solidtek16", 0, -1, 0}, kTek0Copy = {4, 4, "Solidtek16", 0, -1, 0};
const step kX10 = {0, 4, "X10:3", -1, -1, 5, "first", 20, true};
const step kX10Copy = {4, 4, "X10", -1, -1, 5, "", 20};
// What other recognisers make of them.
const step kPrefix = {1, 6, "Blaupunkt{prefix}"}, kZeros = {2, 5, "DirecTV", 0, -1, 0};
const step kPiece = {1, 3, "S:11-00"};
const step kCheck = {2, 5, "XX", -1, -1, -1, "BD 00"};
step async(const char* bytes) {
  return {1, 5, "Async8-", -1, -1, -1, bytes};
}

TEST_F(Bookkeeping, CopiesAbsorbedResultsAndEnds) {
  const struct {
    const char* what;
    std::vector<step> script;
    const char* answer;
  } cases[] = {
      {"nothing", {}, " []"},
      {"one frame", {kToggled}, "RC5 D1 F2 [no repeat: T=1]"},
      {"one copy", {kToggled, kToggledCopy}, "RC5 D1 F2 [+ 1 copy: T=1]"},
      {"two copies make NEC2", {kNec, kNecCopy, {8, 4, "NEC"}}, "NEC2 [+ 2 copies]"},
      {"the suffix follows", {with_suffix(kNec, "-f16"), kNecCopy}, "NEC2-f16 [+ 1 copy]"},
      {"another remark", {kToggled, {4, 4, "RC5", 1, -1, 2, "T=0"}}, "RC5 D1 F2 [no repeat: T=1]"},
      {"a copy starts where the frame ended", {kRc5, {5, 4, "RC5", 1}}, "RC5 D1 [no repeat]"},
      {"one ditto", {with_dittos(kNec, 1)}, "NEC [+ 1 ditto]"},
      {"dittos end the press", {with_dittos(kNec, 3), kNecCopy}, "NEC [+ 3 dittos]"},
      {"only the first with lead-in", {with_variant(kJvc), kJvcCopy}, "JVC [+ 1 copy]"},
      {"without lead-in", {kJvc}, "JVC{2} [no repeat]"},
      {"a second lead-in", {with_variant(kJvc), with_variant(kJvcCopy)}, "JVC [no repeat]"},
      {"a long first mark", {with_variant(kRca), kRcaCopy}, "RCA-38(Old) [+ 1 copy]"},
      {"a name after a gap",
       {{0, 4, "Gap-4-500"}, {1, 3, "RC5", 1}, kRc5Copy},
       "RC5 D1 [+ 1 copy]"},
      {"a gap inside is absorbed", {kRc5, {1, 3, "Gap-3-500"}, kRc5Copy}, "RC5 D1 [+ 1 copy]"},
      {"a gap further in ends it", {kRc5, {2, 3, "Gap-3-500"}, kRc5Copy}, "RC5 D1 [no repeat]"},
      {"pieces", {kTek, kPiece, {2, 2, "SolidtekXX"}, kTekCopy}, "Solidtek16 D1 F2 [+ 1 copy]"},
      // device 1 and function 2 reversed: 8 * 8 + 2 = 0x42, and 255 less it 0xBD
      {"a piece of the check",
       {kTek, {1, 6, "S:11-42"}, kCheck, kTekCopy},
       "Solidtek16 D1 F2 [+ 1 copy]"},
      {"another check", {kTek, {1, 6, "S:11-43"}, kTekCopy}, "Solidtek16 D1 F2 [no repeat]"},
      {"a subdevice's check",
       {kTek20, {1, 6, "S:11-42"}, kTek20Copy},
       "Solidtek20 D1 F7 [+ 1 copy]"},
      {"a check of 00", {kTek0, kPrefix, kZeros, kTek0Copy}, "Solidtek16 D0 F0 [+ 1 copy]"},
      {"Sony as asynchronous", {kSony, async("80-98-E6-98"), kSonyCopy}, "Sony12 D1 [+ 1 copy]"},
      {"asynchronous itself", {kSony, async("80-98-00-98"), kSonyCopy}, "Sony12 D1 [no repeat]"},
      {"X10 repeats", {kX10, kX10Copy, {8, 4, "X10", -1, -1, 5, "", 20}}, "X10:3 F5 [+ 2 copies]"},
      {"another function", {kX10, {4, 4, "X10", -1, -1, 6, "", 12}}, "X10:3 F5 [no repeat: first]"},
      {"a Mitsubishi reading", {kXmp, {0, 5, "Mitsubishi"}, kXmpCopy}, "XMP [+ 1 copy]"},
      {"no repeat information", {as_xmp({0, 4, "XMP-1"}), {4, 4, "XMP-2"}}, "XMP-1 [no repeat]"},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    EXPECT_EQ(press(c.script), c.answer) << c.what;
  }
}

TEST_F(Bookkeeping, LongPauseEndsThePress) {
  bursts_[7] = 200001;
  EXPECT_EQ(press({{0, 4, "NEC"}, {4, 4, "NEC"}}), "NEC [no repeat]");
  EXPECT_EQ(press({{0, 4, "NEC"}, {4, 4, "NEC"}}), "NEC [no repeat]");
  EXPECT_EQ(context_[0], 4U);
  EXPECT_EQ(press({{0, 4, "NEC"}, {4, 4, "NEC"}}), " []");
}

TEST_F(Bookkeeping, RepeatPartIsRepeatInformation) {
  single_ = 4;
  repeat_ = 4;
  EXPECT_EQ(press({{0, 4, "RC5", 1, -1, 2, "T=0"}, {4, 4, "RC5", 1, -1, 2, "T=0"}}),
            "RC5 D1 F2 [T=0]");
  context_.fill(0);
  single_ = 4;
  repeat_ = 7;
  EXPECT_EQ(press({{0, 4, "NEC"}}), "NEC2 []");
  context_.fill(0);
  EXPECT_EQ(press({as_xmp({0, 4, "XMP-1"}), {4, 4, "XMP-2"}}), "XMP-1 []");
  EXPECT_EQ(context_[0], 4U) << "the continuation was counted";
}

TEST_F(Bookkeeping, NextCallGoesOnAfterTheGroup) {
  const std::vector<step> script = {
      {0, 4, "RC5", 1}, {4, 4, "RC5", 1}, from_row({4, 4, "Other"}, 3), {8, 3, "RC6", 2}};
  EXPECT_EQ(press(script), "RC5 D1 [+ 1 copy]");
  EXPECT_EQ(context_[0], 4U);
  EXPECT_EQ(context_[1], 1U + (2U << 16));
  EXPECT_EQ(press(script), "Other [no repeat]");
  EXPECT_EQ(press(script), "RC6 D2 [no repeat]");
  EXPECT_EQ(press(script), " []");
}

TEST_F(Bookkeeping, InterfaceLevelsWriteFurtherWords) {
  const std::vector<step> script = {from_row({1, 4, "NEC"}, 10), from_row({5, 4, "NEC"}, 10)};
  constexpr unsigned kPlace = 11 + (2U << 16);
  const std::pair<int, std::array<unsigned, 9>> cases[] = {
      {2, {5, kPlace}},
      {3, {0xFFF00005, kPlace, 0}},
      {4, {0xFFE00005, kPlace, 0, kPlace}},
      {6, {0xFFC00005, kPlace, 0, kPlace, 5, kPlace}},
      {8, {0xFFA00005, kPlace, 0, kPlace, 5, kPlace, 0, 0}},
      {9, {0xFF900005, kPlace, 0, kPlace, 5, kPlace, 0, 0, 2U << 16 | 2}},
  };
  for (const auto& [level, words] : cases) {
    context_.fill(0);
    press(script, -1, -level);
    for (size_t i = 0; i < words.size(); ++i) {
      EXPECT_EQ(context_[i], words[i]) << "level " << level << " word " << i;
    }
  }
}

TEST_F(Bookkeeping, CycleCountsGiveTheCarrier) {
  const std::pair<uint32_t, unsigned> cases[] = {
      {0xABCD0000U | 570, 38000},  // the high half is not the count
      {1, 0},                      // not modulated
  };
  for (const auto& [cycles, carrier] : cases) {
    context_.fill(0);
    EXPECT_EQ(carrierOf(std::vector<uint32_t>(16, cycles), {{0, 4, "RC5"}}), carrier);
  }
}

TEST_F(Bookkeeping, ExtraPartFollowsBothRepeats) {
  single_ = 3;
  repeat_ = 4;
  const std::vector<step> script = {{0, 3, "RC5"}, {11, 4, "RC6"}};
  EXPECT_EQ(press(script, -5), "RC5 []");
  EXPECT_EQ(press(script, -5), "RC6 []");
  EXPECT_EQ(context_[0], 0xFFFFFU) << "the search has reached the extra part";
  EXPECT_EQ(press(script, -5), " []");
}

TEST_F(Bookkeeping, CycleCountsKnowTheRepeatPartOnce) {
  single_ = 3;
  repeat_ = 4;
  std::vector<uint32_t> cycles(12, 570);
  std::fill(cycles.begin() + 7, cycles.end(), 285);  // the extra part's
  EXPECT_EQ(carrierOf(cycles, {{11, 5, "RC6"}}, -5), 19000U);
}

TEST(Search, FramesStartAfterAGapAndGrowToTheEnd) {
  std::array<recogniser, 32> table;
  table.fill({"none", static_cast<void (Signal::*)()>(&OfferedFrames::look), {.min_bursts = 101}});
  table[5].bounds = {};
  const int bursts[] = {500, 500, 500, 5000, 500, 600, 500, 500};
  unsigned context[2] = {0, 0};
  char text[3][255] = {"", "", ""};
  int numbers[3] = {-1, -1, -1}, hex[4];
  OfferedFrames signal(context, bursts, 0, 4, 0, text[0], &numbers[0], &numbers[1], &numbers[2],
                       hex, text[1], text[2], table);
  signal.decode2();
  EXPECT_EQ(signal.seen, "0+2 0+3 0+4 2+2 ");
}

}  // namespace
