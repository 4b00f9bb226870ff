// SPDX-License-Identifier: GPL-3.0-or-later
// The functions that the component shows to the outside.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>
#include <vector>

#include "tests/support/decode_ir_call.h"
#include "tests/support/results.h"

namespace {

struct answer {
  std::array<unsigned, 16> context{};
  char protocol[64] = "untouched";
  char misc[255] = "untouched";
  char error[255] = "untouched";
  int device = -1, subDevice = -1, obc = -2;
  std::array<int, 4> hex{7, 7, 7, 7};

  void ask(std::vector<int> bursts, int single, int repeat) {
    _DecodeIR(context.data(), bursts.data(), 38000, single, repeat, protocol, &device, &subDevice,
              &obc, hex.data(), misc, error);
  }
};

TEST(DecodeIR, OneBurstOrFewerChangesNothing) {
  const std::pair<int, int> counts[] = {{1, 0}, {0, 1}, {0, 0}, {-5, 2}, {INT_MIN, INT_MIN}};
  for (const auto& [single, repeat] : counts) {
    answer a;
    a.ask({500, 500}, single, repeat);
    EXPECT_STREQ(a.protocol, "untouched") << single << ' ' << repeat;
    EXPECT_EQ(a.obc, -2);
    EXPECT_EQ(a.hex[0], 7);
  }
}

TEST(DecodeIR, NothingFoundClearsEveryResult) {
  answer a;
  a.ask({1, 1, 1, 1}, 2, 0);
  EXPECT_STREQ(a.protocol, "");
  EXPECT_STREQ(a.misc, "");
  EXPECT_STREQ(a.error, "");
  EXPECT_EQ(a.obc, -1);
  EXPECT_EQ(a.hex, (std::array<int, 4>{-1, -1, -1, -1}));
}

TEST(DecodeIR, TooManyBurstsAreNotRead) {
  answer a;
  a.ask({500, 500}, INT_MAX, INT_MAX);
  EXPECT_STREQ(a.protocol, "");
}

TEST(DecodeIR, ResumeStateOfAnyBitsIsHarmless) {
  for (const unsigned start : {0U, 5U, 0xFFFFFU, 0xFFF00000U, 0xFFFFFFFFU}) {
    for (const unsigned place : {0U, 32U, 255U, 0x620000U, 0xFFFF0000U, 0xFFFFFFFFU}) {
      answer a;
      a.context = {start, place};
      a.ask({9000, 4500, 560, 560, 560, 560, 560, 40000}, 4, 0);
      EXPECT_STREQ(a.protocol, "");
    }
  }
}

TEST(DecodeIR, ListOfProtocols) {
  char name[16];
  EXPECT_STREQ(EnumerateProtocols(0, name), "Acer");
  EXPECT_STREQ(EnumerateProtocols(35, name), "Russsound");
  EXPECT_STREQ(EnumerateProtocols(50, name), "Zenith7");
  EXPECT_STREQ(EnumerateProtocols(51, name), "");
  EXPECT_STREQ(EnumerateProtocols(-1, name), "");

  const std::pair<std::string, int> names[] = {{"nec1-f16", 1}, {"Sony12", 1}, {"RC5", 1},
                                               {"RC", 0},       {"", 0},       {"Nokia", 0}};
  for (auto [text, supported] : names) {
    EXPECT_EQ(ProtocolSupportLevel(text.data()), supported) << text;
  }
  EXPECT_STREQ(Version(name), "2.45");
}

std::string lineOf(const std::vector<int>& durations) {
  ir_packet packet = packet_of(durations);
  return reported([&] { DecodeIR(&packet, durations.size()); }).lines;
}

TEST(DecodeIR, LineOfAPacket) {
  EXPECT_EQ(lineOf(decode_ir::frame("Sony12", {{"D", 1}, {"F", 18}})),
            ":: DECODEIR :: Sony12        - scancode: 0x0024  D:0x0001  S:0xFFFFFFFF\n");
  // A device that may be Pioneer's, whose carrier the assumed one is not.
  EXPECT_EQ(lineOf(decode_ir::frame("NEC1", {{"D", 165}, {"S", 90}, {"F", 7}})),
            ":: DECODEIR :: NEC           - scancode: 0x001F  D:0x00A5  S:0xFFFFFFFF\n");
  EXPECT_EQ(lineOf({500, 500, 500}), ":: DECODEIR :: UNKNOWN       -\n");
  EXPECT_EQ(lineOf({}), ":: DECODEIR :: UNKNOWN       -\n");
  EXPECT_EQ(lineOf(std::vector<int>(255, 500)), ":: DECODEIR :: UNKNOWN       -\n");
}

}  // namespace
