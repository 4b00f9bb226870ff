// SPDX-License-Identifier: GPL-3.0-or-later
// The search and the repeat bookkeeping, driven by recognisers that answer by a script.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "lib/ir/DecodeIR/signal.h"

namespace {

/// What a scripted recogniser answers when it sees one candidate frame.
struct step {
  int start, length;  // bursts
  const char* name;
  int device = -1, subDevice = -1, obc = -1;
  const char* remark = "";
  int hex0 = -1;
  bool variant = false;
  int dittos = 0;
  bool xmp = false;
  int row = 0;  // the recogniser that answers
  const char* suffix = "";
};

class ScriptedSignal : public Signal {
 public:
  using Signal::Signal;
  std::vector<step> script;

  void play() {
    for (const step& s : script) {
      if (s.start != frameStart_ || s.length != frameLength_ || s.row != recogniserIndex_) continue;
      remark("%s", s.remark);
      nameVariant_ = s.variant;
      dittos_ = s.dittos;
      if (s.xmp) xmpFlag_ = true;
      std::snprintf(suffix_.data(), suffix_.size(), "%s", s.suffix);
      claim(s.name, s.device, s.subDevice, s.obc, s.hex0);
      return;
    }
  }
};

std::array<recogniser, 32> scriptedTable() {
  std::array<recogniser, 32> table;
  table.fill({"scripted", static_cast<void (Signal::*)()>(&ScriptedSignal::play), {}});
  return table;
}

/// Twelve bursts of which every one may start a frame; the caller's parameters can be changed.
class Bookkeeping : public testing::Test {
 protected:
  static constexpr int kMarkUs = 15000;  // longer than any inside a frame: a frame may start here

  std::vector<int> bursts_ = [] {
    std::vector<int> list;
    for (int i = 0; i < 16; ++i) list.insert(list.end(), {kMarkUs, 500});
    return list;
  }();
  std::array<unsigned, 16> context_{};
  int single_ = 12, repeat_ = 0;
  int device_ = -1, subDevice_ = -1, obc_ = -1;
  std::array<int, 4> hex_{};
  char protocol_[64] = "", misc_[255] = "", error_[255] = "";

  /// One call: the name, the numbers and the remark as one text.
  std::string press(std::vector<step> script, int device = -1, int subDevice = -1) {
    static const auto table = scriptedTable();
    device_ = device;
    subDevice_ = subDevice;
    ScriptedSignal signal(context_.data(), bursts_.data(), 38000, single_, repeat_, protocol_,
                          &device_, &subDevice_, &obc_, hex_.data(), misc_, error_, table);
    signal.script = std::move(script);
    signal.decode2();
    return std::string(protocol_) + ' ' + std::to_string(device_) + ' ' + std::to_string(obc_) +
           " [" + misc_ + ']';
  }
};

struct press_case {
  const char* what;
  std::vector<step> script;
  const char* answer;
};

TEST_F(Bookkeeping, CopiesAbsorbedResultsAndEnds) {
  const press_case cases[] = {
      {"nothing", {}, " -1 -1 []"},
      {"one frame", {{0, 4, "RC5", 1, -1, 2, "T=0"}}, "RC5 1 2 [no repeat: T=0]"},
      {"one copy",
       {{0, 4, "RC5", 1, -1, 2, "T=0"}, {4, 4, "RC5", 1, -1, 2, "T=0"}},
       "RC5 1 2 [+ 1 copy: T=0]"},
      {"two copies make NEC2",
       {{0, 4, "NEC", 1, -1, 2}, {4, 4, "NEC", 1, -1, 2}, {8, 4, "NEC", 1, -1, 2}},
       "NEC2 1 2 [+ 2 copies]"},
      {"the suffix follows the number",
       {{.start = 0, .length = 4, .name = "NEC", .suffix = "-f16"}, {4, 4, "NEC"}},
       "NEC2-f16 -1 -1 [+ 1 copy]"},
      {"another remark is another press",
       {{0, 4, "RC5", 1, -1, 2, "T=0"}, {4, 4, "RC5", 1, -1, 2, "T=1"}},
       "RC5 1 2 [no repeat: T=0]"},
      {"a copy starts where the frame ended",
       {{0, 4, "RC5", 1, -1, 2}, {5, 4, "RC5", 1, -1, 2}},
       "RC5 1 2 [no repeat]"},
      {"one ditto",
       {{.start = 0, .length = 4, .name = "NEC", .dittos = 1, .row = 10}},
       "NEC -1 -1 [+ 1 ditto]"},
      {"dittos end the press",
       {{.start = 0, .length = 4, .name = "NEC", .dittos = 3, .row = 10}, {4, 4, "NEC"}},
       "NEC -1 -1 [+ 3 dittos]"},
      {"JVC with lead-in, repeats without",
       {{.start = 0, .length = 4, .name = "JVC", .variant = true}, {4, 4, "JVC"}},
       "JVC -1 -1 [+ 1 copy]"},
      {"JVC without lead-in", {{0, 4, "JVC"}}, "JVC{2} -1 -1 [no repeat]"},
      {"a second lead-in is another press",
       {{.start = 0, .length = 4, .name = "JVC", .variant = true},
        {.start = 4, .length = 4, .name = "JVC", .variant = true}},
       "JVC -1 -1 [no repeat]"},
      {"RCA with a long first mark",
       {{.start = 0, .length = 4, .name = "RCA-38", .variant = true}, {4, 4, "RCA-38"}},
       "RCA-38(Old) -1 -1 [+ 1 copy]"},
      {"a name supersedes a gap one burst before it",
       {{0, 4, "Gap-4-500"}, {1, 3, "RC5", 3}, {4, 3, "RC5", 3}},
       "RC5 3 -1 [+ 1 copy]"},
      {"a gap inside a frame is absorbed",
       {{0, 4, "RC5", 1}, {1, 3, "Gap-3-500"}, {4, 4, "RC5", 1}},
       "RC5 1 -1 [+ 1 copy]"},
      {"a gap further in ends the press",
       {{0, 4, "RC5", 1}, {2, 3, "Gap-3-500"}, {4, 4, "RC5", 1}},
       "RC5 1 -1 [no repeat]"},
      {"pieces inside a frame are absorbed",
       {{0, 4, "Solidtek16", 5}, {1, 3, "S:11-00"}, {2, 2, "SolidtekXX"}, {4, 4, "Solidtek16", 5}},
       "Solidtek16 5 -1 [+ 1 copy]"},
      // device 1 and function 2 reversed: 8 * 8 + 2 = 0x42, and 255 less it 0xBD
      {"the check names a further piece",
       {{0, 4, "Solidtek16", 1, -1, 2},
        {1, 6, "S:11-42"},
        {2, 5, "XX", -1, -1, -1, "BD 00"},
        {4, 4, "Solidtek16", 1, -1, 2}},
       "Solidtek16 1 2 [+ 1 copy]"},
      {"a piece with another check ends the press",
       {{0, 4, "Solidtek16", 1, -1, 2}, {1, 6, "S:11-43"}, {4, 4, "Solidtek16", 1, -1, 2}},
       "Solidtek16 1 2 [no repeat]"},
      {"Solidtek20 checks its subdevice",
       {{0, 4, "Solidtek20", 1, 2, 7}, {1, 6, "S:11-42"}, {4, 4, "Solidtek20", 1, 2, 7}},
       "Solidtek20 1 7 [+ 1 copy]"},
      {"a check of 00 absorbs what reads as zeros",
       {{0, 4, "Solidtek16", 0, -1, 0},
        {1, 6, "Blaupunkt{prefix}"},
        {2, 5, "DirecTV", 0, -1, 0},
        {4, 4, "Solidtek16", 0, -1, 0}},
       "Solidtek16 0 0 [+ 1 copy]"},
      {"asynchronous reading of a Sony frame",
       {{0, 4, "Sony12", 1}, {1, 5, "Async8-", -1, -1, -1, "80-98-E6-98"}, {4, 4, "Sony12", 1}},
       "Sony12 1 -1 [+ 1 copy]"},
      {"another asynchronous signal",
       {{0, 4, "Sony12", 1}, {1, 5, "Async8-", -1, -1, -1, "80-98-00-98"}, {4, 4, "Sony12", 1}},
       "Sony12 1 -1 [no repeat]"},
      {"X10 repeats",
       {{.start = 0,
         .length = 4,
         .name = "X10:3",
         .obc = 5,
         .remark = "first",
         .hex0 = 20,
         .variant = true},
        {.start = 4, .length = 4, .name = "X10", .obc = 5, .hex0 = 20},
        {.start = 8, .length = 4, .name = "X10", .obc = 5, .hex0 = 20}},
       "X10:3 -1 5 [+ 2 copies]"},
      {"X10 with another function",
       {{.start = 0, .length = 4, .name = "X10:3", .obc = 5, .hex0 = 20},
        {.start = 4, .length = 4, .name = "X10", .obc = 6, .hex0 = 12}},
       "X10:3 -1 5 [no repeat]"},
      {"a Mitsubishi reading of an XMP frame",
       {{.start = 0, .length = 4, .name = "XMP", .xmp = true}, {0, 5, "Mitsubishi"}, {4, 4, "XMP"}},
       "XMP -1 -1 [+ 1 copy]"},
      {"XMP continues only with repeat information",
       {{.start = 0, .length = 4, .name = "XMP-1", .xmp = true}, {4, 4, "XMP-2"}},
       "XMP-1 -1 -1 [no repeat]"},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    EXPECT_EQ(press(c.script), c.answer) << c.what;
  }
}

TEST_F(Bookkeeping, LongPauseEndsThePress) {
  bursts_[7] = 200001;
  EXPECT_EQ(press({{0, 4, "NEC"}, {4, 4, "NEC"}}), "NEC -1 -1 [no repeat]");
  EXPECT_EQ(press({{0, 4, "NEC"}, {4, 4, "NEC"}}), "NEC -1 -1 [no repeat]");
  EXPECT_EQ(context_[0], 4U);
  EXPECT_EQ(press({{0, 4, "NEC"}, {4, 4, "NEC"}}), " -1 -1 []");
}

TEST_F(Bookkeeping, RepeatPartIsRepeatInformation) {
  single_ = 4;
  repeat_ = 4;
  EXPECT_EQ(press({{0, 4, "RC5", 1, -1, 2, "T=0"}, {4, 4, "RC5", 1, -1, 2, "T=0"}}),
            "RC5 1 2 [T=0]");
  context_.fill(0);
  single_ = 4;
  repeat_ = 7;
  EXPECT_EQ(press({{0, 4, "NEC"}}), "NEC2 -1 -1 []");
  context_.fill(0);
  EXPECT_EQ(press({{.start = 0, .length = 4, .name = "XMP-1", .xmp = true}, {4, 4, "XMP-2"}}),
            "XMP-1 -1 -1 []");
  EXPECT_EQ(context_[0], 4U) << "the continuation was counted";
}

TEST_F(Bookkeeping, NextCallGoesOnAfterTheGroup) {
  const std::vector<step> script = {{0, 4, "RC5", 1},
                                    {4, 4, "RC5", 1},
                                    {.start = 4, .length = 4, .name = "Other", .row = 3},
                                    {8, 3, "RC6", 2}};
  EXPECT_EQ(press(script), "RC5 1 -1 [+ 1 copy]");
  EXPECT_EQ(context_[0], 4U);
  EXPECT_EQ(context_[1], 1U + (2U << 16));
  EXPECT_EQ(press(script), "Other -1 -1 [no repeat]");
  EXPECT_EQ(press(script), "RC6 2 -1 [no repeat]");
  EXPECT_EQ(press(script), " -1 -1 []");
}

TEST_F(Bookkeeping, InterfaceLevelsWriteFurtherWords) {
  const std::vector<step> script = {{.start = 1, .length = 4, .name = "NEC", .row = 10},
                                    {.start = 5, .length = 4, .name = "NEC", .row = 10}};
  struct level_case {
    int level;
    std::array<unsigned, 9> context;
  };
  constexpr unsigned kPlace = 11 + (2U << 16);
  const level_case cases[] = {
      {2, {5, kPlace}},
      {3, {0xFFF00005, kPlace, 0}},
      {4, {0xFFE00005, kPlace, 0, kPlace}},
      {6, {0xFFC00005, kPlace, 0, kPlace, 5, kPlace}},
      {8, {0xFFA00005, kPlace, 0, kPlace, 5, kPlace, 0, 0}},
      {9, {0xFF900005, kPlace, 0, kPlace, 5, kPlace, 0, 0, 2U << 16 | 2}},
  };
  for (const auto& c : cases) {
    context_.fill(0);
    press(script, -1, -c.level);
    for (size_t i = 0; i < c.context.size(); ++i) {
      EXPECT_EQ(context_[i], c.context[i]) << "level " << c.level << " word " << i;
    }
  }
}

TEST_F(Bookkeeping, CycleCountsGiveTheCarrier) {
  const std::vector<uint32_t> cycles(16, 0xABCD0000U | 570);  // the high half is not the count
  const auto* data = cycles.data();
  std::memcpy(&context_[6], &data, sizeof data);
  press({{0, 4, "RC5"}}, -1, -8);
  EXPECT_EQ(context_[6], 38000U);

  context_.fill(0);
  const std::vector<uint32_t> unmodulated(16, 1);
  data = unmodulated.data();
  std::memcpy(&context_[6], &data, sizeof data);
  press({{0, 4, "RC5"}}, -1, -8);
  EXPECT_EQ(context_[6], 0U);
}

TEST_F(Bookkeeping, ExtraPartFollowsBothRepeats) {
  single_ = 3;
  repeat_ = 4;
  const std::vector<step> script = {{0, 3, "RC5"}, {11, 4, "RC6"}};
  EXPECT_EQ(press(script, -5), "RC5 -1 -1 []");
  EXPECT_EQ(press(script, -5), "RC6 -1 -1 []");
  EXPECT_EQ(context_[0], 0xFFFFFU) << "the search has reached the extra part";
  EXPECT_EQ(press(script, -5), " -1 -1 []");
}

TEST_F(Bookkeeping, CycleCountsKnowTheRepeatPartOnce) {
  single_ = 3;
  repeat_ = 4;
  std::vector<uint32_t> cycles(12, 570);
  std::fill(cycles.begin() + 7, cycles.end(), 285);  // the extra part's
  const auto* data = cycles.data();
  std::memcpy(&context_[6], &data, sizeof data);
  press({{11, 5, "RC6"}}, -5, -8);
  EXPECT_EQ(context_[6], 19000U);
}

/// Records the frames that the search offers.
class OfferedFrames : public Signal {
 public:
  using Signal::Signal;
  std::string seen;
  void look() { seen += std::to_string(frameStart_) + '+' + std::to_string(frameLength_) + ' '; }
};

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
