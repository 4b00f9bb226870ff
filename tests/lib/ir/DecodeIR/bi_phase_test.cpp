// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of bi-phase, four-phase and raw-level codes.
#include <gtest/gtest.h>

#include "tests/support/decode_ir_call.h"

namespace {

using namespace decode_ir;

TEST(BiPhase, NamesNumbersAndRemarks) {
  expectTexts({
      {"RC5", {{"D", 5}, {"F", 70}, {"T", 1}}, "RC5 D5 F70 H70 [no repeat: T=1]"},
      {"RC5x", {{"D", 31}, {"S", 127}, {"F", 9}}, "RC5x D31 S127 F9 H9 [no repeat: T=0]"},
      {"RC5-7F", {{"D", 40}, {"F", 127}}, "RC5-7F D40 F127 H127 [no repeat: T=0]"},
      {"RC6", {{"D", 4}, {"F", 200}, {"T", 1}}, "RC6 D4 F200 H200 [no repeat: T=1]"},
      {"RC6-M-16", {{"D", 4}, {"F", 200}, {"M", 3}}, "RC6-3-16 D4 F200 H200 [no repeat: T=0]"},
      {"RC6-6-20", {{"D", 4}, {"S", 9}, {"F", 1}}, "RC6-6-20 D4 S9 F1 H1 [no repeat: T=0]"},
      {"RC6-M-24",
       {{"D", 4}, {"S", 9}, {"F", 1}, {"M", 5}},
       "RC6-5-24 D4 S9 F1 H1 [no repeat: T=0]"},
      {"Replay", {{"D", 4}, {"S", 9}, {"F", 1}}, "Replay D4 S9 F1 H1 [no repeat: T=0]"},
      {"RC6-M-28",
       {{"D", 4}, {"S", 4000}, {"F", 1}, {"M", 6}},
       "RC6-6-28 D4 S4000 F1 H1 [no repeat: T=0]"},
      {"MCE", {{"D", 4}, {"S", 15}, {"F", 12}, {"T", 1}}, "MCE D4 S15 F12 H12 [no repeat: T=1]"},
      {"RC6-M-32",
       {{"OEM1", 7}, {"OEM2", 8}, {"D", 200}, {"F", 12}, {"M", 6}},
       "RC6-6-32 D200 F12 H12 [no repeat: T=0 OEM1=7 OEM2=8]"},
      {"RC6-M-56", {{"C", 0x12345678}, {"M", 1}}, "RC6-1-56 [no repeat: T=0 C=00000012345678]"},
      {"entone", {{"F", 99}}, "entone F99 H99 [no repeat]"},
      {"CanalSat", {{"D", 9}, {"S", 33}, {"F", 100}}, "CanalSat D9 S33 F100 H100 [no repeat]"},
      {"CanalSatLD", {{"D", 9}, {"S", 33}, {"F", 60}}, "CanalSatLD D9 S33 F60 H60 [no repeat]"},
      {"PCTV", {{"D", 1}, {"F", 250}}, "PCTV D1 F250 H95 [no repeat]"},
      {"Grundig16", {{"D", 99}, {"F", 17}, {"T", 1}}, "Grundig16 D99 F17 H17 [no repeat: T=1]"},
      {"Humax 4Phase",
       {{"D", 33}, {"S", 7}, {"F", 101}},
       "Humax 4Phase D33 S7 F101 H101 [no repeat: T=0]"},
      {"AdNotam", {{"D", 33}, {"F", 7}}, "Ad Notam D33 F7 H7 [no repeat]"},
      {"RTI_Relay", {{"D", 8}, {"F", 1}}, "RTI_Relay D8 F1 H1 [no repeat]"},
      {"Lutron", {{"X", 0xA5A5A5}}, "Lutron F10855845 [no repeat]", true},
  });
}

// Not of those with a relative that is shorter by whole bits, such as CanalSatLD and TDC-38: what a
// cut leaves of them can be the relative.
TEST(BiPhase, CutFramesHaveNoName) {
  expectPiecesUnnamed({
      {"RC5", {{"D", 5}, {"F", 20}}},
      {"RC5x", {{"D", 5}, {"S", 77}, {"F", 20}}},
      {"RC6", {{"D", 200}, {"F", 77}}},
      {"CanalSat", {{"D", 77}, {"S", 20}, {"F", 99}}},
      {"PCTV", {{"D", 0xA9}, {"F", 0x35}}},
      {"Grundig16", {{"D", 77}, {"F", 99}, {"T", 1}}},
      {"Humax 4Phase", {{"D", 33}, {"S", 7}, {"F", 101}}},
      {"AdNotam", {{"D", 33}, {"F", 7}}},
      {"RTI_Relay", {{"D", 8}, {"F", 1}}},
  });
}

TEST(BiPhase, AnOddDurationInsideIsNeverForgiven) {
  constexpr double kOdd = 0.45;  // units too long
  struct {
    const char* protocol;
    int unit;
    size_t first = 1;  // the long space of PCTV's lead-in may be off by as much
  } const cases[] = {
      {"RC5", 889}, {"RC6", 444}, {"AdNotam", 895}, {"PCTV", 832, 2}, {"Grundig16", 578}};
  for (const auto& c : cases) {
    const std::vector<int> whole = frame(c.protocol, {{"D", 5}, {"F", 20}});
    for (size_t i = c.first; i + 1 < whole.size(); ++i) {
      std::vector<int> spoilt = whole;
      spoilt[i] += static_cast<int>(kOdd * c.unit);
      expectUnnamed(c.protocol, spoilt);
    }
  }
}

TEST(BiPhase, AnOddLeadInOrLastMarkIsForgiven) {
  std::vector<int> sent = frame("RC6", {{"D", 4}, {"F", 200}});
  sent.front() += 250;
  EXPECT_EQ(call(sent).name, "RC6");
  sent = frame("RC5", {{"D", 4}, {"F", 20}});
  sent.back() /= 2;
  EXPECT_EQ(call(sent).name, "RC5");
}

TEST(BiPhase, FailingChecksAreRefused) {
  // The complement of the last bit: Humax and CanalSatLD end alike for both values of that bit.
  expectUnnamed({
      {"CanalSatLD", "{56k,320,msb}<-1,1|1,-1>(1,-1,9:7,3:6,0:1,0:1,5:6,1:1,-85m)"},
      {"CanalSat", "{55.5k,250,msb}<-1,1|1,-1>(1,-1,9:7,3:6,0:1,1:1,5:7,-89m)"},
      {"Humax 4Phase", "{56k,105,msb}<-2,2|-3,1|1,-3|2,-2>(2,-2,9:6,3:6,0:2,5:7,1:1,-50m)"},
      {"RTI_Relay", "{40.244k,398,msb}<1,-1|-1,1>(1,0x7fe08080:31,1:1,1:8,8:23,4:8,0:4,-19.5m)"},
  });
}

TEST(BiPhase, CanalSatKnowsWhetherThePressWasHeardFromItsStart) {
  const irp::Parameters given = {{"D", 9}, {"S", 33}, {"F", 100}};
  const std::vector<int> press = signal("CanalSat", given, 3);
  EXPECT_EQ(text(call(press)), "CanalSat D9 S33 F100 H100 [+ 3 copies]");

  // The same press without its first frame, which ends at the first gap.
  size_t start = 1;
  while (press[start] < 40000) start += 2;
  EXPECT_EQ(text(call({press.begin() + static_cast<long>(start) + 1, press.end()})),
            "CanalSat D9 S33 F100 H100 [+ 2 copies: no start frame]");
}

TEST(BiPhase, LutronIsFoundWhateverEndsItsCode) {
  for (const int64_t code : {0xA5A5A5, 0xF0F0F0, 0x0F0F0F}) {
    EXPECT_TRUE(text(call(signal("Lutron", {{"X", code}}, 2)))
                    .starts_with("Lutron F" + std::to_string(code) + ' '));
  }
}

}  // namespace
