// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of pulse-width codes: Sony, F12 and their like.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/decode_ir_call.h"

namespace {

using namespace decode_ir;

constexpr char kRoomba130[] = "{38k,1000,msb}<1,-3|3,-1>(130:8,-50m)";

TEST(PulseWidth, NamesNumbersAndRemarks) {
  expectTexts({
      {"Sony8", {{"F", 0x51}}, "Sony8 F81 H138 [no repeat]"},
      {"Sony12", {{"D", 1}, {"F", 21}}, "Sony12 D1 F21 H84 [no repeat]"},
      {"Sony15", {{"D", 164}, {"F", 1}}, "Sony15 D164 F1 H64 [no repeat]"},
      {"Sony20", {{"D", 26}, {"S", 73}, {"F", 64}}, "Sony20 D26 S73 F64 H1 [no repeat]"},
      {"F12", {{"D", 3}, {"S", 1}, {"F", 64}}, "F12 D3 S1 F64 H2 [no repeat]"},
      {"F32", {{"D", 1}, {"S", 2}, {"F", 3}, {"E", 4}}, "F32 D1 S2 F3 H3 [no repeat: E = 4]"},
      {"arctech", {{"D", 16}, {"S", 3}, {"F", 1}}, "arctech D16 S3 F1 [no repeat]"},
      {"Elunevision", {{"F", 0x33}}, "Elunevision F51 H51 [no repeat]"},
      {"pid-0003", {{"F", 1}}, "pid-0003 F1 H128 [no repeat]"},
      {"GXB", {{"D", 1}, {"F", 3}}, "GXB-103.1 D1 F3 H3 [no repeat]"},
      {"Sunfire", {{"D", 1}, {"F", 2}}, "Sunfire D1 F2 H2 [no repeat]"},
      {"Rs200",
       {{"H1", 1}, {"H2", 2}, {"H3", 3}, {"H4", 4}, {"D", 6}, {"F", 2}},
       "Rs200 D6 S228 F2 H2 [no repeat]"},
      {"Elan", {{"D", 1}, {"F", 2}}, "Elan D1 F2 H2 [no repeat]"},
      {"Bryston", {{"D", 777}, {"F", 2}}, "Bryston D777 F2 H64 [no repeat]"},
      {"B&O", {{"D", 257}, {"F", 197}}, "B&O D257 F197 H197 [no repeat]", true},
  });
  EXPECT_EQ(text(call(broken(kRoomba130))), "Roomba F130 H130 [no repeat]");
}

TEST(PulseWidth, TheGapTellsTheKindsOfF12) {
  struct {
    const char* protocol;
    irp::Parameters given;
    const char *name, *misc;
  } const cases[] = {
      {"F12", {{"D", 3}, {"S", 0}, {"F", 64}}, "F12", "+ 3 copies"},
      {"F12-0", {{"D", 3}, {"F", 64}}, "F12-0", "+ 1 copy"},
      {"F12-1", {{"D", 3}, {"F", 64}}, "F12-1", "+ 3 copies"},
      {"F12x", {{"D", 3}, {"S", 1}, {"F", 64}, {"E", 9}}, "F12x", "+ 1 copy: E = 9"},
  };
  for (const auto& c : cases) {
    const Result result =
        call(signal(c.protocol, c.given, std::string_view(c.protocol) == "F12-1" ? 1 : 2));
    EXPECT_EQ(result.name, c.name);
    EXPECT_EQ(result.misc, c.misc) << c.protocol;
  }
}

TEST(PulseWidth, CutFramesHaveNoName) {
  expectBeginningsUnnamed({
      {"Sony12", {{"D", 1}, {"F", 21}}, {"Sony8"}},
      {"Sony20", {{"D", 26}, {"S", 73}, {"F", 64}}, {"Sony8", "Sony12", "Sony15"}},
      {"F12", {{"D", 3}, {"S", 1}, {"F", 64}}},
      {"F32", {{"D", 1}, {"S", 2}, {"F", 3}, {"E", 4}}, {"F12"}},
      {"pid-0003", {{"F", 33}}},
      {"GXB", {{"D", 10}, {"F", 0x57}}},
      {"Sunfire", {{"D", 1}, {"F", 2}}},
      {"Elan", {{"D", 1}, {"F", 2}}},
      {"Bryston", {{"D", 777}, {"F", 2}}},
      {"arctech", {{"D", 16}, {"S", 3}, {"F", 1}}},
  });
}

TEST(PulseWidth, FailingChecksAreRefused) {
  expectUnnamed({
      {"GXB with even parity", "{38.3k,520,msb}<1,-3|3,-1>(1,-1,1:4,3:8,0:1,1,-50m)"},
      {"pid-0003 without complement", "{40.2k,389}<2,-2|3,-1>(1:8,1:8,-50m)"},
      {"Sunfire without complement", "{38k,558,msb}<1,-1|3,-1>(16,-8,1:4,2:8,14:4,252:8,-33)"},
      {"Elan without complement", "{0k,398,msb}<1,-1|1,-2>(3,-2,1:8,254:8,2,-2,2:8,252:8,1,-30m)"},
      {"arctech with another tail", "{0k,388}<1,-3|3,-1>(<0:2|2:2>(1:4,2:4),41:7,1:1,0:1,-10.2m)"},
      {"a cleaner's code below 128", "{38k,1000,msb}<1,-3|3,-1>(100:8,-50m)"},
      {"Sony with eleven bits", "{40k,600}<1,-1|2,-1>(4,-1,21:7,1:4,-20m)"},
  });
}

TEST(PulseWidth, ALastMarkBetweenZeroAndOneIsNoBit) {
  std::vector<int> sent = frame("Sony12", {{"D", 1}, {"F", 21}});
  sent.back() = 900;
  EXPECT_FALSE(isNamed(call(sent)));
}

TEST(PulseWidth, TheSonyDspSequenceComesInPieces) {
  Press press(signal("SonyDSP", {{"F", 3}}, 1));
  for (const char* wanted : {"Sony15 96", "Sony8 195", "Sony8 81", "Sony8 3", "Sony15 18", " -1"}) {
    const Result result = press.next();
    EXPECT_EQ(result.name + ' ' + std::to_string(result.obc), wanted);
  }
}

}  // namespace
