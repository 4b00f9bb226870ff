// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of pulse-width codes: Sony, F12 and their like.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/decode_ir_call.h"

namespace {

using decode_ir::broken;
using decode_ir::expectNamed;
using decode_ir::expectUnnamed;
using decode_ir::frame;
using decode_ir::isNamed;
using decode_ir::Result;
using decode_ir::signal;

constexpr char kRoomba130[] = "{38k,1000,msb}<1,-3|3,-1>(130:8,-50m)";

TEST(PulseWidth, NamesNumbersAndRemarks) {
  const decode_ir::NameCase cases[] = {
      {"Sony8", {{"F", 0x51}}, "Sony8", "", -1, -1, 0x51, 0x8A},
      {"Sony12", {{"D", 1}, {"F", 21}}, "Sony12", "", 1, -1, 21, 84},
      {"Sony15", {{"D", 164}, {"F", 1}}, "Sony15", "", 164, -1, 1, 64},
      {"Sony20", {{"D", 26}, {"S", 73}, {"F", 64}}, "Sony20", "", 26, 73, 64, 1},
      {"F12", {{"D", 3}, {"S", 1}, {"F", 64}}, "F12", "", 3, 1, 64, 2},
      {"F32", {{"D", 1}, {"S", 2}, {"F", 3}, {"E", 4}}, "F32", "E = 4", 1, 2, 3, 3},
      {"arctech", {{"D", 16}, {"S", 3}, {"F", 1}}, "arctech", "", 16, 3, 1, -1},
      {"Elunevision", {{"F", 0x33}}, "Elunevision", "", -1, -1, 0x33, 0x33},
      {"pid-0003", {{"F", 1}}, "pid-0003", "", -1, -1, 1, 0x80},
      {"GXB", {{"D", 1}, {"F", 3}}, "GXB-103.1", "", 1, -1, 3, 3},
      {"Sunfire", {{"D", 1}, {"F", 2}}, "Sunfire", "", 1, -1, 2, 2},
      {"Rs200",
       {{"H1", 1}, {"H2", 2}, {"H3", 3}, {"H4", 4}, {"D", 6}, {"F", 2}},
       "Rs200",
       "",
       6,
       0b11100100,
       2,
       2},
      {"Elan", {{"D", 1}, {"F", 2}}, "Elan", "", 1, -1, 2, 2},
      {"Bryston", {{"D", 777}, {"F", 2}}, "Bryston", "", 777, -1, 2, 0x40},
      {"B&O", {{"D", 257}, {"F", 197}}, "B&O", "", 257, -1, 197, 197},
  };
  for (const auto& c : cases) {
    const bool whole = std::string_view(c.protocol) == "B&O";  // its gaps are inside the frame
    expectNamed(c, whole ? signal(c.protocol, c.given, 1) : frame(c.protocol, c.given));
  }
  const Result cleaner = decode_ir::call(broken(kRoomba130));
  EXPECT_EQ(cleaner.name, "Roomba");
  EXPECT_EQ(cleaner.obc, 130);
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
    const Result result = decode_ir::call(
        signal(c.protocol, c.given, std::string_view(c.protocol) == "F12-1" ? 1 : 2));
    EXPECT_EQ(result.name, c.name);
    EXPECT_EQ(result.misc, c.misc) << c.protocol;
  }
}

TEST(PulseWidth, CutFramesHaveNoName) {
  struct {
    const char* protocol;
    irp::Parameters given;
    std::vector<size_t> relatives;  // lengths at which a shorter relative ends
  } const cases[] = {
      {"Sony12", {{"D", 1}, {"F", 21}}, {17}},
      {"Sony20", {{"D", 26}, {"S", 73}, {"F", 64}}, {17, 25, 31}},
      {"F12", {{"D", 3}, {"S", 1}, {"F", 64}}, {}},
      {"F32", {{"D", 1}, {"S", 2}, {"F", 3}, {"E", 4}}, {23}},
      {"pid-0003", {{"F", 33}}, {}},
      {"GXB", {{"D", 10}, {"F", 0x57}}, {}},
      {"Sunfire", {{"D", 1}, {"F", 2}}, {}},
      {"Elan", {{"D", 1}, {"F", 2}}, {}},
      {"Bryston", {{"D", 777}, {"F", 2}}, {}},
      {"arctech", {{"D", 16}, {"S", 3}, {"F", 1}}, {}},
  };
  for (const auto& c : cases) {
    const std::vector<int> whole = frame(c.protocol, c.given);
    ASSERT_TRUE(isNamed(decode_ir::call(whole))) << c.protocol;
    for (size_t length = 5; length < whole.size(); length += 2) {
      if (std::ranges::count(c.relatives, length) != 0) continue;
      const Result cut =
          decode_ir::call({whole.begin(), whole.begin() + static_cast<long>(length)});
      EXPECT_FALSE(isNamed(cut)) << c.protocol << " cut to " << length << ": " << cut.name;
    }
  }
}

TEST(PulseWidth, FailingChecksAreRefused) {
  struct {
    const char *what, *definition;
  } const cases[] = {
      {"GXB with even parity", "{38.3k,520,msb}<1,-3|3,-1>(1,-1,1:4,3:8,0:1,1,-50m)"},
      {"pid-0003 without complement", "{40.2k,389}<2,-2|3,-1>(1:8,1:8,-50m)"},
      {"Sunfire without complement", "{38k,558,msb}<1,-1|3,-1>(16,-8,1:4,2:8,14:4,252:8,-33)"},
      {"Elan without complement", "{0k,398,msb}<1,-1|1,-2>(3,-2,1:8,254:8,2,-2,2:8,252:8,1,-30m)"},
      {"arctech with another tail", "{0k,388}<1,-3|3,-1>(<0:2|2:2>(1:4,2:4),41:7,1:1,0:1,-10.2m)"},
      {"a cleaner's code below 128", "{38k,1000,msb}<1,-3|3,-1>(100:8,-50m)"},
      {"Sony with eleven bits", "{40k,600}<1,-1|2,-1>(4,-1,21:7,1:4,-20m)"},
  };
  for (const auto& c : cases) expectUnnamed(c.what, broken(c.definition));
}

TEST(PulseWidth, ALastMarkBetweenZeroAndOneIsNoBit) {
  std::vector<int> sent = frame("Sony12", {{"D", 1}, {"F", 21}});
  sent.back() = 900;
  EXPECT_FALSE(isNamed(decode_ir::call(sent)));
}

TEST(PulseWidth, TheSonyDspSequenceComesInPieces) {
  std::array<unsigned, 16> context{};
  std::vector<int> sent = signal("SonyDSP", {{"F", 3}}, 1);
  const int bursts = static_cast<int>(sent.size() / 2);
  std::vector<std::string> names;
  for (int call = 0; call < 10; ++call) {
    const Result result = decode_ir::call(sent, decode_ir::kCarrier, bursts, 0, &context);
    if (result.name.empty()) break;
    names.push_back(result.name + ' ' + std::to_string(result.obc));
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Sony15 96", "Sony8 195", "Sony8 81", "Sony8 3",
                                             "Sony15 18"}));
}

}  // namespace
