// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of bi-phase, four-phase and raw-level codes.
#include <gtest/gtest.h>

#include "tests/support/decode_ir_call.h"

namespace {

using decode_ir::expectNamed;
using decode_ir::frame;
using decode_ir::isNamed;
using decode_ir::Result;
using decode_ir::signal;

TEST(BiPhase, NamesNumbersAndRemarks) {
  const decode_ir::NameCase cases[] = {
      {"RC5", {{"D", 5}, {"F", 70}, {"T", 1}}, "RC5", "T=1", 5, -1, 70},
      {"RC5x", {{"D", 31}, {"S", 127}, {"F", 9}}, "RC5x", "T=0", 31, 127, 9},
      {"RC5-7F", {{"D", 40}, {"F", 127}}, "RC5-7F", "T=0", 40, -1, 127},
      {"RC6", {{"D", 4}, {"F", 200}, {"T", 1}}, "RC6", "T=1", 4, -1, 200},
      {"RC6-M-16", {{"D", 4}, {"F", 200}, {"M", 3}}, "RC6-3-16", "T=0", 4, -1, 200},
      {"RC6-6-20", {{"D", 4}, {"S", 9}, {"F", 1}}, "RC6-6-20", "T=0", 4, 9, 1},
      {"RC6-M-24", {{"D", 4}, {"S", 9}, {"F", 1}, {"M", 5}}, "RC6-5-24", "T=0", 4, 9, 1},
      {"Replay", {{"D", 4}, {"S", 9}, {"F", 1}}, "Replay", "T=0", 4, 9, 1},
      {"RC6-M-28", {{"D", 4}, {"S", 4000}, {"F", 1}, {"M", 6}}, "RC6-6-28", "T=0", 4, 4000, 1},
      {"MCE", {{"D", 4}, {"S", 15}, {"F", 12}, {"T", 1}}, "MCE", "T=1", 4, 15, 12},
      {"RC6-M-32",
       {{"OEM1", 7}, {"OEM2", 8}, {"D", 200}, {"F", 12}, {"M", 6}},
       "RC6-6-32",
       "T=0 OEM1=7 OEM2=8",
       200,
       -1,
       12},
      {"RC6-M-56", {{"C", 0x12345678}, {"M", 1}}, "RC6-1-56", "T=0 C=00000012345678", -1, -1, -1},
      {"entone", {{"F", 99}}, "entone", "", -1, -1, 99},
      {"CanalSat", {{"D", 9}, {"S", 33}, {"F", 100}}, "CanalSat", "", 9, 33, 100},
      {"CanalSatLD", {{"D", 9}, {"S", 33}, {"F", 60}}, "CanalSatLD", "", 9, 33, 60},
      {"PCTV", {{"D", 1}, {"F", 250}}, "PCTV", "", 1, -1, 250},
      {"Grundig16", {{"D", 99}, {"F", 17}, {"T", 1}}, "Grundig16", "T=1", 99, -1, 17},
      {"Humax 4Phase", {{"D", 33}, {"S", 7}, {"F", 101}}, "Humax 4Phase", "T=0", 33, 7, 101},
      {"AdNotam", {{"D", 33}, {"F", 7}}, "Ad Notam", "", 33, -1, 7},
      {"RTI_Relay", {{"D", 8}, {"F", 1}}, "RTI_Relay", "", 8, -1, 1},
      {"Lutron", {{"X", 0xA5A5A5}}, "Lutron", "", -1, -1, 0xA5A5A5},
  };
  for (const auto& c : cases) {
    const bool whole = std::string_view(c.protocol) == "Lutron";  // its gaps are inside the frame
    expectNamed(c, whole ? signal(c.protocol, c.given, 1) : frame(c.protocol, c.given));
  }
}

// Not of those with a relative that is shorter by whole bits, such as CanalSatLD and TDC-38: what a
// cut leaves of them can be the relative.
TEST(BiPhase, CutFramesHaveNoName) {
  struct {
    const char* protocol;
    irp::Parameters given;
  } const cases[] = {
      {"RC5", {{"D", 5}, {"F", 20}}},
      {"RC5x", {{"D", 5}, {"S", 77}, {"F", 20}}},
      {"RC6", {{"D", 200}, {"F", 77}}},
      {"CanalSat", {{"D", 77}, {"S", 20}, {"F", 99}}},
      {"PCTV", {{"D", 0xA9}, {"F", 0x35}}},
      {"Grundig16", {{"D", 77}, {"F", 99}, {"T", 1}}},
      {"Humax 4Phase", {{"D", 33}, {"S", 7}, {"F", 101}}},
      {"AdNotam", {{"D", 33}, {"F", 7}}},
      {"RTI_Relay", {{"D", 8}, {"F", 1}}},
  };
  for (const auto& c : cases) {
    const std::vector<int> whole = frame(c.protocol, c.given);
    ASSERT_TRUE(isNamed(decode_ir::call(whole))) << c.protocol;
    for (size_t length = 5; length < whole.size(); length += 2) {
      const Result tail =
          decode_ir::call({whole.begin(), whole.begin() + static_cast<long>(length)});
      EXPECT_FALSE(isNamed(tail)) << c.protocol << " cut to " << length << ": " << tail.name;
    }
    for (size_t from = 2; from + 5 < whole.size(); from += 2) {
      const Result late = decode_ir::call({whole.begin() + static_cast<long>(from), whole.end()});
      EXPECT_FALSE(isNamed(late)) << c.protocol << " without " << from << ": " << late.name;
    }
  }
}

TEST(BiPhase, AnOddDurationInsideIsNeverForgiven) {
  constexpr double kOdd = 0.45;  // units too long
  struct {
    const char* protocol;
    int unit;
  } const cases[] = {
      {"RC5", 889}, {"RC6", 444}, {"AdNotam", 895}, {"PCTV", 832}, {"Grundig16", 578}};
  for (const auto& c : cases) {
    const std::vector<int> whole = frame(c.protocol, {{"D", 5}, {"F", 20}});
    for (size_t i = 1; i + 1 < whole.size(); ++i) {
      std::vector<int> spoilt = whole;
      spoilt[i] += static_cast<int>(kOdd * c.unit);
      const Result result = decode_ir::call(spoilt);
      EXPECT_FALSE(isNamed(result)) << c.protocol << " at " << i << ": " << result.name;
    }
  }
}

TEST(BiPhase, AnOddLeadInOrLastMarkIsForgiven) {
  std::vector<int> sent = frame("RC6", {{"D", 4}, {"F", 200}});
  sent.front() += 250;
  EXPECT_EQ(decode_ir::call(sent).name, "RC6");
  sent = frame("RC5", {{"D", 4}, {"F", 20}});
  sent.back() /= 2;
  EXPECT_EQ(decode_ir::call(sent).name, "RC5");
}

TEST(BiPhase, FailingChecksAreRefused) {
  // The complement of the last bit: Humax and CanalSatLD end alike for both values of that bit.
  struct {
    const char *protocol, *definition;
  } const cases[] = {
      {"CanalSatLD", "{56k,320,msb}<-1,1|1,-1>(1,-1,9:7,3:6,0:1,0:1,5:6,1:1,-85m)"},
      {"CanalSat", "{55.5k,250,msb}<-1,1|1,-1>(1,-1,9:7,3:6,0:1,1:1,5:7,-89m)"},
      {"Humax 4Phase", "{56k,105,msb}<-2,2|-3,1|1,-3|2,-2>(2,-2,9:6,3:6,0:2,5:7,1:1,-50m)"},
      {"RTI_Relay", "{40.244k,398,msb}<1,-1|-1,1>(1,0x7fe08080:31,1:1,1:8,8:23,4:8,0:4,-19.5m)"},
  };
  for (const auto& c : cases) {
    std::vector<int> sent = irp::Protocol(c.protocol, c.definition).render({}).whole();
    sent.pop_back();
    const Result result = decode_ir::call(sent);
    EXPECT_FALSE(isNamed(result)) << c.protocol << ": " << result.name;
  }
}

TEST(BiPhase, CanalSatKnowsWhetherThePressWasHeardFromItsStart) {
  const irp::Parameters given = {{"D", 9}, {"S", 33}, {"F", 100}};
  const std::vector<int> press = signal("CanalSat", given, 3);
  const Result whole = decode_ir::call(press);
  EXPECT_EQ(whole.name, "CanalSat");
  EXPECT_EQ(whole.misc, "+ 3 copies");

  // The same press without its first frame, which ends at the first gap.
  size_t start = 1;
  while (press[start] < 40000) start += 2;
  const Result late = decode_ir::call({press.begin() + static_cast<long>(start) + 1, press.end()});
  EXPECT_EQ(late.name, "CanalSat");
  EXPECT_EQ(late.misc, "+ 2 copies: no start frame");
}

TEST(BiPhase, LutronIsFoundWhateverEndsItsCode) {
  for (const int64_t code : {0xA5A5A5, 0xF0F0F0, 0x0F0F0F}) {
    const Result result = decode_ir::call(signal("Lutron", {{"X", code}}, 2));
    EXPECT_EQ(result.name, "Lutron") << std::hex << code;
    EXPECT_EQ(result.obc, code);
  }
}

}  // namespace
