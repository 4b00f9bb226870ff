// SPDX-License-Identifier: GPL-3.0-or-later
// The search and the repeat bookkeeping, driven by recognisers that answer by a script.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <string>
#include <tuple>
#include <utility>
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
const step kXmp = as_xmp({0, 4, "XMP"}), kXmpPlain = {0, 4, "XMP"}, kXmpCopy = {4, 4, "XMP"};
const step kTek = {0, 4, "Solidtek16", 1, -1, 2}, kTekCopy = {4, 4, "Solidtek16", 1, -1, 2};
const step kTek20 = {0, 4, "Solidtek20", 1, 2, 7}, kTek20Copy = {4, 4, "Solidtek20", 1, 2, 7};
const step kTek0 = {0, 4, "Solidtek16", 0, -1, 0}, kTek0Copy = {4, 4, "Solidtek16", 0, -1, 0};
const step kX10 = {0, 4, "X10:3", -1, -1, 5, "first", 20, true};
const step kX10Plain = {0, 4, "X10:3", -1, -1, 5, "plain", 20};
const step kX10Copy = {4, 4, "X10", -1, -1, 5, "", 20};
// What other recognisers make of them.
const step kPrefix = {1, 6, "Blaupunkt{prefix}"}, kZeros = {2, 5, "DirecTV", 0, -1, 0};
const step kPiece = {1, 3, "S:11-00"};
const step kCheck = {2, 5, "XX", -1, -1, -1, "BD 00"};
// What is longer than a name or a remark may be.
const std::string kLetters(300, 'x');
const char* const kLongText = kLetters.c_str();
const std::string kLongName = kLetters.substr(0, 63) + " [no repeat]";
const std::string kLongRemark = "RC5 [no repeat: " + kLetters.substr(0, 199) + "]";
step async(const char* bytes) {
  return {1, 5, "Async8-", -1, -1, -1, bytes};
}

TEST_F(Bookkeeping, CopiesAbsorbedResultsAndEnds) {
  const struct {
    const char* what;
    std::vector<step> script;
    std::string answer;
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
       "Solidtek20 D1 S2 F7 [+ 1 copy]"},
      {"a check of 00", {kTek0, kPrefix, kZeros, kTek0Copy}, "Solidtek16 D0 F0 [+ 1 copy]"},
      {"Sony as asynchronous", {kSony, async("80-98-E6-98"), kSonyCopy}, "Sony12 D1 [+ 1 copy]"},
      {"asynchronous itself", {kSony, async("80-98-00-98"), kSonyCopy}, "Sony12 D1 [no repeat]"},
      {"X10 repeats",
       {kX10, kX10Copy, {8, 4, "X10", -1, -1, 5, "", 20}},
       "X10:3 F5 H20 [+ 2 copies]"},
      {"another function",
       {kX10, {4, 4, "X10", -1, -1, 6, "", 12}},
       "X10:3 F5 H20 [no repeat: first]"},
      {"a Mitsubishi reading", {kXmp, {0, 5, "Mitsubishi"}, kXmpCopy}, "XMP [+ 1 copy]"},
      {"no repeat information", {as_xmp({0, 4, "XMP-1"}), {4, 4, "XMP-2"}}, "XMP-1 [no repeat]"},
      {"an error ends it", {with_error(kRc5, "invalid"), kRc5Copy}, "RC5 D1 []invalid"},
      {"an error behind it is dropped",
       {kRc5, with_error({4, 4, "?"}, "invalid")},
       "RC5 D1 [no repeat]"},
      {"another device", {kToggled, {4, 4, "RC5", 2, -1, 2, "T=1"}}, "RC5 D1 F2 [no repeat: T=1]"},
      {"another subdevice",
       {kToggled, {4, 4, "RC5", 1, 1, 2, "T=1"}},
       "RC5 D1 F2 [no repeat: T=1]"},
      {"another function",
       {kToggled, {4, 4, "RC5", 1, -1, 3, "T=1"}},
       "RC5 D1 F2 [no repeat: T=1]"},
      {"a copy with dittos", {kNec, with_dittos(kNecCopy, 1)}, "NEC [no repeat]"},
      {"two dittos", {with_dittos(kNec, 2)}, "NEC [+ 2 dittos]"},
      {"a ditto and a copy",
       {with_dittos(kX10Plain, 1), kX10Copy},
       "X10:3 F5 H20 [+ 1 dittos, 1 copies: plain]"},
      {"NECx", {{0, 4, "NECx"}, {4, 4, "NECx"}}, "NECx2 [+ 1 copy]"},
      {"48-NEC", {{0, 4, "48-NEC"}, {4, 4, "48-NEC"}}, "48-NEC2 [+ 1 copy]"},
      {"a name after a gap, one burst in only",
       {{0, 4, "Gap-4-500"}, {2, 3, "RC5", 1}},
       "Gap-4-500 [no repeat]"},
      {"a name after a gap with dittos",
       {with_dittos({0, 4, "Gap-4-500"}, 1), {1, 3, "RC5", 1}, kRc5Copy},
       "RC5 D1 [+ 1 copy]"},
      {"a gap at the same place", {kRc5, {0, 5, "Gap-5-500"}, kRc5Copy}, "RC5 D1 [+ 1 copy]"},
      {"a gap after a gap",
       {{0, 4, "Gap-4-500"}, {1, 3, "Gap-3-500"}, {4, 4, "Gap-4-500"}},
       "Gap-4-500 [+ 1 copy]"},
      {"a piece to the end",
       {kRc5, {2, 2, "S:1"}, {2, 2, "Solidtek4"}, kRc5Copy},
       "RC5 D1 [+ 1 copy]"},
      {"a piece beyond it", {kRc5, {2, 3, "S:1"}, kRc5Copy}, "RC5 D1 [no repeat]"},
      {"a whole Solidtek is no piece",
       {kRc5, {1, 2, "Solidtek16"}, kRc5Copy},
       "RC5 D1 [no repeat]"},
      {"nor the long one", {kRc5, {1, 2, "Solidtek20"}, kRc5Copy}, "RC5 D1 [no repeat]"},
      // device 0xF and function 7: 8 * 15 + 7 = 0x7F
      {"the largest check",
       {{0, 4, "Solidtek16", 0xF, -1, 7}, {1, 6, "S:11-7F"}, {4, 4, "Solidtek16", 0xF, -1, 7}},
       "Solidtek16 D15 F7 [+ 1 copy]"},
      {"a check cut short", {kTek, {1, 6, "S:11-4"}, kTekCopy}, "Solidtek16 D1 F2 [no repeat]"},
      {"a prefix of another check", {kTek, kPrefix, kTekCopy}, "Solidtek16 D1 F2 [no repeat]"},
      {"zeros of another check", {kTek, kZeros, kTekCopy}, "Solidtek16 D1 F2 [no repeat]"},
      {"not all zeros, the device",
       {kTek0, {2, 5, "DirecTV", 1, -1, 0}, kTek0Copy},
       "Solidtek16 D0 F0 [no repeat]"},
      {"not all zeros, the function",
       {kTek0, {2, 5, "DirecTV", 0, -1, 1}, kTek0Copy},
       "Solidtek16 D0 F0 [no repeat]"},
      {"another complement",
       {kTek, {2, 5, "XX", -1, -1, -1, "BC"}, kTekCopy},
       "Solidtek16 D1 F2 [no repeat]"},
      {"another name",
       {kTek, {2, 5, "YY", -1, -1, -1, "BD"}, kTekCopy},
       "Solidtek16 D1 F2 [no repeat]"},
      {"the other pulse width", {kSony, async("80 E6 98 E6"), kSonyCopy}, "Sony12 D1 [+ 1 copy]"},
      {"another first byte", {kSony, async("81 98 98 98"), kSonyCopy}, "Sony12 D1 [no repeat]"},
      {"another second byte", {kSony, async("80 97 98 98"), kSonyCopy}, "Sony12 D1 [no repeat]"},
      {"another last byte", {kSony, async("80 98 98 97"), kSonyCopy}, "Sony12 D1 [no repeat]"},
      {"three bytes", {kSony, async("80 98 98 9"), kSonyCopy}, "Sony12 D1 [no repeat]"},
      {"asynchronous after another code",
       {kRc5, async("80 98 98 98"), kRc5Copy},
       "RC5 D1 [no repeat]"},
      {"another code after Sony",
       {kSony, {1, 5, "RC6", -1, -1, -1, "80 98 98 98"}, kSonyCopy},
       "Sony12 D1 [no repeat]"},
      {"a pause in a press of X10", {kX10Plain, kX10Copy}, "X10:3 F5 H20 [+ 1 copy: plain]"},
      {"X10 of another code",
       {kX10, {4, 4, "X10", -1, -1, 5, "", 21}},
       "X10:3 F5 H20 [no repeat: first]"},
      {"X10 with a number",
       {kX10, {4, 4, "X10:3", -1, -1, 5, "", 20}},
       "X10:3 F5 H20 [no repeat: first]"},
      {"X10 after another code", {kRc5, {4, 4, "X10"}}, "RC5 D1 [no repeat]"},
      {"Mitsubishi elsewhere", {kXmp, {1, 5, "Mitsubishi"}, kXmpCopy}, "XMP [no repeat]"},
      {"Mitsubishi after a plain XMP",
       {kXmpPlain, {0, 5, "Mitsubishi"}, kXmpCopy},
       "XMP [no repeat]"},
      {"Mitsubishi after another code",
       {as_xmp(kRc5), {0, 5, "Mitsubishi"}, kRc5Copy},
       "RC5 D1 [no repeat]"},
      {"a suffix of what is superseded",
       {with_suffix({0, 4, "Gap-4-500"}, "-f16"), {1, 3, "NEC"}},
       "NEC [no repeat]"},
      {"a long name", {{0, 4, kLongText}}, kLongName},
      {"a long remark", {{0, 4, "RC5", -1, -1, -1, kLongText}}, kLongRemark},
      {"a name that only begins like XMP",
       {as_xmp({0, 4, "XMPx"}), {0, 5, "Mitsubishi"}, {4, 4, "XMPx"}},
       "XMPx [no repeat]"},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    EXPECT_EQ(press(c.script), c.answer) << c.what;
  }
}

// However many frames a press has, it is looked at once.
TEST_F(Bookkeeping, TheRemarkOfAPressIsMadeOfAllItsFrames) {
  using enum analysis::press_part;
  const step frames[] = {{0, 4, "Amino", 1}, {4, 4, "Amino", 1}, {8, 4, "Amino", 1}};
  const struct {
    analysis::press_part parts[3];
    const char* answer;
  } cases[] = {
      {{first, middle, last}, "Amino D1 [+ 2 copies: 3, first, last, 15002 us]"},
      {{middle, middle, middle}, "Amino D1 [+ 2 copies: 3, 15002 us]"},
      {{middle, last, first}, "Amino D1 [+ 1 copy: 2, last, 15001 us]"},
      {{first, first, middle}, "Amino D1 [+ 2 copies: 3, first, 15002 us]"},
  };
  for (int i = 0; i < 3; ++i) bursts_[static_cast<size_t>(8 * i)] += i;
  for (const auto& c : cases) {
    context_.fill(0);
    presses_told = 0;
    std::vector<step> played;
    for (size_t i = 0; i < 3; ++i) played.push_back(as_part(frames[i], c.parts[i]));
    EXPECT_EQ(press(played), c.answer);
    EXPECT_EQ(presses_told, 1);
  }
}

TEST_F(Bookkeeping, LongPauseEndsThePress) {
  bursts_[7] = 200000;
  EXPECT_EQ(press({kNec, kNecCopy}), "NEC2 [+ 1 copy]");
  context_.fill(0);
  bursts_[7] = 200001;
  EXPECT_EQ(press({kNec, kNecCopy}), "NEC [no repeat]");
  EXPECT_EQ(press({kNec, kNecCopy}), "NEC [no repeat]");
  EXPECT_EQ(context_[0], 4U);
  EXPECT_EQ(press({kNec, kNecCopy}), " []");

  context_.fill(0);
  EXPECT_EQ(press({kNec, {1, 3, "Gap-3-500"}, kNecCopy}), "NEC [no repeat]")
      << "what is absorbed does not take the end away";
  context_.fill(0);
  bursts_[7] = 500;
  bursts_[9] = 200001;  // behind what is absorbed, which ends nothing
  EXPECT_EQ(press({kNec, {1, 4, "Gap-4-500"}, kNecCopy}), "NEC2 [+ 1 copy]");
}

TEST_F(Bookkeeping, RepeatPartIsRepeatInformation) {
  const step carried = as_xmp({0, 4, "XMP-1", -1, -1, -1, "R"});
  const step dittos = as_xmp(with_dittos({0, 4, "XMP-1"}, 1));
  const struct {
    const char* what;
    int single, repeat, device;
    std::vector<step> script;
    const char* answer;
    unsigned start;  // of the last frame that was counted
  } cases[] = {
      {"no description", 4, 4, -1, {kToggled, kToggledCopy}, "RC5 D1 F2 [T=1]", 4},
      {"nor with a device given", 12, 0, -2, {kToggled, kToggledCopy}, "RC5 D1 F2 [T=1]", 4},
      {"nor for -2^31 of them", 12, 0, INT_MIN, {kToggled}, "RC5 D1 F2 [T=1]", 0},
      {"six bursts may be dittos", 4, 6, -1, {kNec}, "NEC []", 0},
      {"seven are a frame", 4, 7, -1, {kNec}, "NEC2 []", 0},
      {"but not behind dittos", 4, 7, -1, {with_dittos(kNec, 1)}, "NEC []", 0},
      {"a continuation is counted", 4, 7, -1, {carried, {4, 4, "XMP-2"}}, "XMP-1 [R]", 4},
      {"of a plain name, too", 4, 7, -1, {kXmp, {4, 4, "XMP-2"}}, "XMP []", 4},
      {"not apart from the frame", 4, 7, -1, {carried, {5, 4, "XMP-2"}}, "XMP-1 [R]", 0},
      {"not of another code", 4, 7, -1, {carried, {4, 4, "RC5"}}, "XMP-1 [R]", 0},
      {"counted dittos leave a burst out", 4, 7, -1, {dittos, {5, 4, "XMP-2"}}, "XMP-1 []", 5},
      {"or none", 4, 7, -1, {dittos, {4, 4, "XMP-2"}}, "XMP-1 []", 4},
      {"not two", 4, 7, -1, {dittos, {6, 4, "XMP-2"}}, "XMP-1 []", 0},
      {"nor without dittos", 4, 7, -1, {from_row(carried, 10), {5, 4, "XMP-2"}}, "XMP-1 [R]", 0},
      {"nor by another", 4, 7, -1, {from_row(dittos, 9), {5, 4, "XMP-2"}}, "XMP-1 []", 0},
      {"not without its flag", 4, 7, -1, {kXmpPlain, {4, 4, "XMP-2"}}, "XMP []", 0},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    single_ = c.single;
    repeat_ = c.repeat;
    EXPECT_EQ(press(c.script, c.device), c.answer) << c.what;
    EXPECT_EQ(context_[0], c.start) << c.what;
  }
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
  // The frame begins behind a lead burst, and the copy is shorter.
  const std::vector<step> script = {with_preempt(from_row({1, 4, "NEC"}, 10), 2),
                                    from_row({5, 3, "NEC"}, 10)};
  constexpr unsigned kFirst = 11 + (2U << 8) + (2U << 16);
  constexpr unsigned kLast = 11 + (1U << 16);
  const std::pair<int, std::array<unsigned, 9>> cases[] = {
      {-1, {5, kLast}},
      {2, {5, kLast}},
      {3, {0xFFF00005, kLast, 0}},
      {4, {0xFFE00005, kLast, 0, kFirst}},
      {5, {0xFFE00005, kLast, 0, kFirst}},
      {6, {0xFFC00005, kLast, 0, kFirst, 5, kLast}},
      {7, {0xFFC00005, kLast, 0, kFirst, 5, kLast}},
      {8, {0xFFA00005, kLast, 0, kFirst, 5, kLast, 0, 0}},
      {9, {0xFF900005, kLast, 0, kFirst, 5, kLast, 0, 0, 2U << 16 | 2}},
  };
  for (const auto& [level, words] : cases) {
    context_.fill(0);
    press(script, -1, -level);
    for (size_t i = 0; i < words.size(); ++i) {
      EXPECT_EQ(context_[i], words[i]) << "level " << level << " word " << i;
    }
  }
  context_.fill(0);
  press({with_preempt({2, 4, "RC5"}, 2)}, -1, INT_MIN);
  EXPECT_EQ(context_[0], 0xFF900002) << "any level beyond the highest is that";
  EXPECT_EQ(context_[2], 4U << 20 | 2) << "the countdown moves here";
  EXPECT_EQ(context_[4], 4U << 20 | 2);
  context_.fill(0);
  press({from_row({0, 4, "NEC"}, 10)}, -1, -3);
  EXPECT_EQ(context_[2], 0U) << "no burst before it";
}

// Word 8: the second kind, the kind, and how often.
TEST_F(Bookkeeping, RepeatsHaveAKindAndACount) {
  const struct {
    const char* what;
    std::vector<step> script;
    int kind2, kind, count;
  } cases[] = {
      {"one frame", {kRc5}, -1, 1, 1},
      {"copies", {kRc5, kRc5Copy, {8, 4, "RC5", 1}}, -1, 1, 3},
      {"dittos", {with_dittos(kNec, 5)}, -1, 3, 5},
      {"X10", {kX10, kX10Copy}, -1, 4, 2},
      {"X10 that a recogniser told of", {with_kinds(kX10, 6, 7), kX10Copy}, -1, 4, 2},
      {"X10 without a first frame", {kX10Plain, kX10Copy}, -1, 1, 2},
      {"unknown", {{0, 4, "Gap-4-500"}}, -1, 8, 1},
      {"questionable", {{0, 4, "??1"}}, -1, 8, 1},
      {"one question mark is a name", {{0, 4, "?1"}}, -1, 1, 1},
      {"old RCA", {with_variant(kRca)}, -1, 11, 1},
      {"new RCA", {kRca}, -1, 1, 1},
      {"JVC by its repeats", {with_kinds(kJvc, 6, 7)}, 7, 1, 1},
      {"not as one said of what is superseded",
       {with_kinds({0, 4, "Gap-4-500"}, 6, 7), {1, 3, "RC5"}},
       -1,
       1,
       1},
      {"as a recogniser says", {with_kinds(kRc5, 6, 7), kRc5Copy}, 7, 6, 2},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    press(c.script, -1, -9);
    const int word = (c.kind2 + 1) << 24 | (c.kind + 1) << 16 | c.count;
    EXPECT_EQ(context_[8], static_cast<unsigned>(word)) << c.what;
  }
}

TEST_F(Bookkeeping, SureClaimsHoldForAsManyStartsAsTheyAreLong) {
  const struct {
    const char* what;
    std::vector<step> script;
    unsigned level, countdown;  // behind the second claim, at start 1
  } cases[] = {
      {"held, one start given up", {with_preempt({0, 4, "A"}, 2), {1, 3, "B"}}, 2, 3},
      {"a weaker claim", {with_preempt({0, 4, "A"}, 2), with_preempt({1, 5, "B"}, 1)}, 2, 3},
      {"as sure, as long as is left",
       {with_preempt({0, 4, "A"}, 2), with_preempt({1, 3, "B"}, 2)},
       2,
       3},
      {"as sure and longer", {with_preempt({0, 4, "A"}, 2), with_preempt({1, 4, "B"}, 2)}, 2, 4},
      {"surer", {with_preempt({0, 4, "A"}, 2), with_preempt({1, 2, "B"}, 3)}, 3, 2},
      {"almost over", {with_preempt({0, 2, "A"}, 2), {1, 3, "B"}}, 2, 1},
      {"over", {with_preempt({0, 2, "A"}, 2), {2, 3, "B"}}, 0, 0},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    press(c.script);
    press(c.script);
    EXPECT_EQ(context_[1] >> 8 & 0xFF, c.level) << c.what;
    EXPECT_EQ(context_[0] >> 20, c.countdown) << c.what;
  }
}

TEST_F(Bookkeeping, CycleCountsGiveTheCarrier) {
  const std::pair<uint32_t, unsigned> cases[] = {
      {0xABCD0000U | 570, 38000},  // the high half is not the count
      {2, 133},                    // of the lowest that counts as one
      {1, 0},                      // not modulated
  };
  for (const auto& [cycles, carrier] : cases) {
    context_.fill(0);
    EXPECT_EQ(carrierOf(std::vector<uint32_t>(16, cycles), {{0, 4, "RC5"}}), carrier);
  }
  // Only the frame's bursts count, whose marks differ.
  context_.fill(0);
  bursts_[2] = 2 * kMarkUs;
  std::vector<uint32_t> unlike(16, 9999);
  std::copy_n(std::array{570U, 1140U, 570U, 570U}.begin(), 4, unlike.begin());
  EXPECT_EQ(carrierOf(unlike, {{1, 3, "RC5"}}), 38000U);
  for (int& duration : bursts_) duration = 20;
  context_.fill(0);
  EXPECT_EQ(carrierOf(std::vector<uint32_t>(16, 65535), {{0, 4, "RC5"}}), unsigned{INT_MAX});
  std::fill(bursts_.begin(), bursts_.end(), 0);
  subDevice_ = -8;
  const uint32_t* const cycles = unlike.data();
  std::memcpy(&context_[6], &cycles, sizeof cycles);
  const Signal dark(context_.data(), bursts_.data(), 38000, single_, repeat_, protocol_, &device_,
                    &subDevice_, &obc_, hex_.data(), misc_, error_);
  EXPECT_EQ(dark.getFreq(0, 4), 0) << "no marks at all";
}

TEST_F(Bookkeeping, ExtraPartFollowsBothRepeats) {
  single_ = 3;
  repeat_ = 4;
  const std::vector<step> script = {{0, 3, "RC5"}, {7, 4, "Sony12"}, {11, 4, "RC6"}};
  EXPECT_EQ(press(script, -5), "RC5 []");
  EXPECT_EQ(press(script, -5), "Sony12 []");
  EXPECT_EQ(context_[0], 7U) << "the extra part begins at burst 11";
  EXPECT_EQ(press(script, -5), "RC6 []");
  EXPECT_EQ(context_[0], 0xFFFFFU) << "the search has reached the extra part";
  EXPECT_EQ(press(script, -5), " []");
  context_.fill(0);
  EXPECT_EQ(press({{8, 4, "RC5"}}, -5), "RC5 []");
  EXPECT_EQ(context_[0], 0xFFFFFU) << "by one burst";
  context_.fill(0);
  EXPECT_EQ(press({{11, 2, "RC5"}}, -2), "RC5 []") << "the shortest";
  context_.fill(0);
  EXPECT_EQ(press(script, INT_MIN), " []") << "more than any signal has";
}

TEST_F(Bookkeeping, CycleCountsKnowTheRepeatPartOnce) {
  single_ = 3;
  repeat_ = 4;
  std::vector<uint32_t> cycles(12, 570);
  std::fill(cycles.begin() + 7, cycles.end(), 285);  // the extra part's
  EXPECT_EQ(carrierOf(cycles, {{11, 5, "RC6"}}, -5), 19000U);
  context_.fill(0);
  EXPECT_EQ(carrierOf(cycles, {{6, 3, "RC6"}}), 38000U) << "across both copies";
}

// Marks, and spaces between them, that start no frame; a mark of 20000 starts one.
TEST(Search, FramesStartAfterAGapAndGrowToTheEnd) {
  const struct {
    const char* what;
    std::vector<int> bursts;
    int single, repeat;
    const char* seen;
    analysis::frame_bounds bounds = {};
  } cases[] = {
      {"two bursts", {500, 500, 500, 500}, 2, 0, "0+2 "},
      {"after a long space", {500, 500, 500, 5000, 500, 600, 500, 500}, 4, 0, "0+2 0+3 0+4 2+2 "},
      {"the shortest such space",
       {500, 500, 500, 851, 500, 600, 500, 500},
       4,
       0,
       "0+2 0+3 0+4 2+2 "},
      {"too short by one", {500, 500, 500, 850, 500, 600, 500, 500}, 4, 0, "0+2 0+3 0+4 "},
      {"a long mark", {500, 500, 500, 500, 14001, 600, 500, 500}, 4, 0, "0+2 0+3 0+4 2+2 "},
      {"too short by one", {500, 500, 500, 500, 14000, 600, 500, 500}, 4, 0, "0+2 0+3 0+4 "},
      {"a lead-in", {500, 5000, 9000, 4500, 4499, 4600, 500, 500}, 4, 0, "0+2 0+3 0+4 1+2 1+3 "},
      {"whose mark is too short",
       {500, 5000, 9000, 4500, 4500, 4600, 500, 500},
       4,
       0,
       "0+2 0+3 0+4 "},
      {"or the gap", {500, 4999, 9000, 4500, 4499, 4600, 500, 500}, 4, 0, "0+2 0+3 0+4 "},
      {"marks too short for light", {4, 500, 4, 500, 5, 500}, 3, 0, "0+3 "},
      {"spaces that no receiver tells", {5, 20, 5, 19, 500, 500}, 3, 0, "0+2 "},
      // The repeat part follows twice, and starts a frame once whatever is before it.
      {"a repeat part", {500, 500, 500, 500, 500, 500}, 1, 2, "0+2 0+3 0+4 0+5 1+2 1+3 1+4 "},
      {"of one burst", {500, 500, 500, 500, 500, 500}, 2, 1, "0+2 0+3 0+4 2+2 "},
      {"alone", {500, 500, 500, 500}, 0, 2, "0+2 0+3 0+4 "},
      {"starts in its first copy", {500, 500, 500, 5000}, 0, 2, "0+2 0+3 0+4 "},
      {"and inside it",
       {500, 500, 20000, 500, 20000, 500},
       0,
       3,
       "0+2 0+3 0+4 0+5 0+6 1+2 1+3 1+4 1+5 2+2 2+3 2+4 "},
      {"negative counts are none", {500, 500, 500, 500}, -1, 2, "0+2 0+3 0+4 "},
      {"and", {500, 500, 500, 500}, 2, -1, "0+2 "},
      {"bounds on the bursts",
       std::vector<int>(12, 500),
       6,
       0,
       "0+3 0+4 ",
       {.min_bursts = 3, .max_bursts = 4}},
      {"bounds on the gaps",
       {500, 500, 500, 5000, 500, 4999, 500, 50},
       4,
       0,
       "0+2 0+4 ",
       {.min_gap = 5000}},
      {"a space that the signal was cut in is none",
       {500, 500, 500, 5000, 500, 4999, 500, 51},
       4,
       0,
       "0+2 ",
       {.min_gap = 5000}},
      {"but a long one is",
       {500, 500, 500, 5000, 500, 4999, 500, 5000},
       4,
       0,
       "0+2 0+4 ",
       {.min_gap = 5000}},
      {"on that before",
       {500, 500, 500, 5000, 500, 500, 500, 500},
       4,
       0,
       "0+2 0+3 0+4 2+2 ",
       {.min_gap_before = 5000}},
      {"too short by one",
       {500, 500, 500, 4999, 500, 500, 500, 500},
       4,
       0,
       "0+2 0+3 0+4 ",
       {.min_gap_before = 5000}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(offered(c.bursts, c.single, c.repeat, c.bounds).seen, c.seen) << c.what;
  }
  std::string to_the_hundredth;
  for (int length = 2; length <= 100; ++length) {
    to_the_hundredth += "0+" + std::to_string(length) + ' ';
  }
  EXPECT_EQ(offered(std::vector<int>(204, 500), 102, 0).seen, to_the_hundredth);
}

// The resume state has room for the place of every burst.
TEST_F(Bookkeeping, SignalsOfMoreThanTwentyBitsAreNotSearched) {
  bursts_.assign(size_t{2} << 20, kMarkUs);
  const std::tuple<int, int, const char*> cases[] = {
      {0xFFFFF, 0, "RC5 [no repeat]"},
      {0x100000, 0, " []"},
      {0xFFFF3, 6, "RC5 []"},  // which stands twice
      {0xFFFF4, 6, " []"},
  };
  for (const auto& [single, repeat, answer] : cases) {
    single_ = single;
    repeat_ = repeat;
    context_ = {0xFFFE0};
    EXPECT_EQ(press({{0xFFFF0, 3, "RC5"}}), answer) << single;
  }
}

TEST(Search, TellsTheRecognisersOfTheFrame) {
  const struct {
    const char* what;
    std::vector<int> bursts;
    int single, repeat;
    const char* details;
  } cases[] = {
      {"the silence around a signal",
       {500, 400, 700, 300, 600, 9999},
       3,
       0,
       "gaps 1e+09 999999 framing 999999 total 2500 largest 700 carrier 38000 marks 500 600 700 "
       "spaces 300 400 bursts 900 1000 middle 900 1000"},
      {"a space longer than the marks",
       {500, 400, 700, 800, 600, 500, 600, 20000, 900, 100, 500, 600, 500, 700},
       7,
       0,
       "gaps 20000 999999 framing 20000 total 2600 largest 900 carrier 38000 marks 500 500 900 "
       "spaces 100 600 bursts 1000 1100 middle 1000 1100"},
      {"a stray mark is part of the gap",
       {500, 5000, 200, 6000, 500, 5454, 500, 500},
       4,
       0,
       "gaps 11200 999999 framing 11200 total 6454 largest 5454 carrier 38000 marks 500 500 500 "
       "spaces 5454 5454 bursts 5954 5954 middle 5954 5954"},
      {"unless it is longer",
       {500, 5000, 201, 6000, 500, 5454, 500, 500},
       4,
       0,
       "gaps 6000 999999 framing 6000 total 6454 largest 5454 carrier 38000 marks 500 500 500 "
       "spaces 5454 5454 bursts 5954 5954 middle 5954 5954"},
      {"or the frame has as long spaces",
       {500, 5000, 200, 6000, 500, 5455, 500, 500},
       4,
       0,
       "gaps 6000 999999 framing 6000 total 6455 largest 5455 carrier 38000 marks 500 500 500 "
       "spaces 5455 5455 bursts 5955 5955 middle 5955 5955"},
      {"the gap before a repeat part is the longer of two",
       {500, 3000, 500, 400, 500, 20000},
       1,
       2,
       "gaps 20000 20000 framing 20000 total 22800 largest 20000 carrier 38000 marks 500 500 500 "
       "spaces 400 20000 bursts 900 20500 middle 900 20500"},
      {"the other",
       {500, 30000, 500, 400, 500, 20000},
       1,
       2,
       "gaps 30000 20000 framing 20000 total 22800 largest 20000 carrier 38000 marks 500 500 500 "
       "spaces 400 20000 bursts 900 20500 middle 900 20500"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(offered(c.bursts, c.single, c.repeat).details, c.details) << c.what;
  }
}

}  // namespace
