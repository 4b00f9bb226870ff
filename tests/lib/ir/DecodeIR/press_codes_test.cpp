// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of bi-phase codes whose frames mark the start and end of a press (Blaupunkt, NRC,
// OrtekMCE, Amino, Zaptor), and of TDC and the keyboards Sejin and Solidtek.
#include <gtest/gtest.h>

#include "tests/support/decode_ir_call.h"

namespace {

using namespace decode_ir;

TEST(PressCodes, NamesNumbersAndRemarks) {
  expectTexts({
      {"TDC-38", {{"D", 10}, {"S", 26}, {"F", 74}}, "TDC-38 D10 S26 F74 H74 [no repeat]"},
      {"TDC-56", {{"D", 31}, {"S", 0}, {"F", 127}}, "TDC-56 D31 S0 F127 H127 [no repeat]"},
      {"OrtekMCE", {{"D", 21}, {"F", 34}}, "OrtekMCE D21 F34 H17 [no repeat: only start frame]"},
      {"Amino", {{"D", 9}, {"F", 37}}, "Amino D9 F37 H37 [no repeat: T=1]"},
      {"Zaptor-36",
       {{"D", 16}, {"S", 3}, {"F", 63}, {"E", 7}},
       "Zaptor-36 D16 S3 F63 H63 [no repeat: E = 7]"},
      {"Sejin-1-38",
       {{"D", 16}, {"F", 126}, {"S", 9}, {"E", 2}},
       "Sejin-1-38 D16 S9 F126 H126 [no repeat: E = 2]"},
      {"Solidtek16", {{"D", 8}, {"F", 98}}, "Solidtek16 D8 F98 H35 [no repeat]"},
      {"Blaupunkt", {{"D", 5}, {"F", 1}}, "Blaupunkt{prefix} D7 F63 H63 [no repeat]"},
      {"NRC16", {{"D", 5}, {"F", 1}}, "NRC16{prefix} D127 F254 H127 [no repeat]"},
      {"NRC17", {{"D", 5}, {"F", 1}}, "NRC17{prefix} D255 F254 H127 [no repeat]"},
  });
}

TEST(PressCodes, TheCarrierTellsPairsApart) {
  const std::pair<const char*, irp::Parameters> cases[] = {
      {"Amino-56", {{"D", 9}, {"F", 37}}},
      {"Zaptor-56", {{"D", 16}, {"S", 3}, {"F", 63}, {"E", 7}}},
      {"Sejin-1-56", {{"D", 16}, {"F", 126}, {"S", 9}}},
  };
  for (const auto& [name, given] : cases) EXPECT_EQ(call(frame(name, given), 56000).name, name);
}

TEST(PressCodes, FailingChecksHaveNoName) {
  expectUnnamed({
      {"OrtekMCE, C one too large", "{38.6k,480}<1,-1|-1,1>(4,-1,21:5,0:2,34:6,9:4,-48m)"},
      {"OrtekMCE, P = 3", "{38.6k,480}<1,-1|-1,1>(4,-1,21:5,3:2,34:6,10:4,-48m)"},
      {"Amino, fixed bits",
       "{37.3k,268,msb}<-1,1|1,-1>(7,-6,3,9:4,1:1,1:1,1:2,1:8,37:8,15:4,1:4,-79m)"},
      {"Zaptor, C", "{36k,330,msb}<-1,1|1,-1>(8,-6,2,16:8,0:1,3:7,63:8,7:4,12:4,-74m)"},
      {"Sejin, C", "{38.8k,310,msb}<-1|1>(<8:4|4:4|2:4|1:4>(3,3:2,16:8,126:8,9:8,0:4,1:4,-77))"},
      {"Sejin, two marks in a symbol",
       "{38.8k,310,msb}<-1|1>(<8:4|4:4|2:4|9:4>(3,1:4,16:8,15:8,0:8,0:4,0:4,-77))"},
      {"Solidtek16, C", "{38k}<-624,468|468,-624>(1820,-590,0:1,8:4,98:7,0:1,9:4,1:1,-143m)"},
      {"TDC of 16 bits", "{38k,315,msb}<-1,1|1,-1>(1,-1,9:5,3:5,9:6,-89m)"},
      {"NRC of 15 bits", "{38k,500}<-1,1|1,-1>(1,-5,1:1,77:8,99:6,-110m)"},
      {"NRC that begins with a zero", "{38k,500}<-1,1|1,-1>(1,-5,0:1,77:8,99:7,-110m)"},
  });
}

TEST(PressCodes, CutFramesHaveNoName) {
  expectPiecesUnnamed({
      {"TDC-38", {{"D", 10}, {"S", 26}, {"F", 74}}},
      {"OrtekMCE", {{"D", 21}, {"F", 34}}},
      {"Amino", {{"D", 9}, {"F", 37}}},
      {"Zaptor-36", {{"D", 16}, {"S", 3}, {"F", 63}, {"E", 7}}},
      {"Sejin-1-38", {{"D", 16}, {"F", 126}, {"S", 9}, {"E", 2}}},
  });
}

TEST(PressCodes, StartFrameAndBodyAreOneFrame) {
  struct {
    const char *protocol, *whole, *body;
  } const cases[] = {
      {"Blaupunkt", "Blaupunkt D5 F33 H33 [+ 1 copy]", "Blaupunkt D5 F33 H33 [no repeat]"},
      {"NRC16", "NRC16 D5 F33 H132 [+ 1 copy]", "NRC16{body} D5 F33 H132 [no repeat]"},
      {"NRC17", "NRC17 D5 F33 H132 [no repeat]", "NRC17{body} D5 F33 H132 [no repeat]"},
  };
  const irp::Parameters given = {{"D", 5}, {"F", 33}};
  for (const auto& c : cases) {
    EXPECT_EQ(text(call(signal(c.protocol, given, 1))), c.whole);
    EXPECT_EQ(text(call(contract::single_frame(irp::protocol(c.protocol), given, "2"))), c.body);
  }
}

/// Frames of OrtekMCE, given by what they say of their place in the press.
std::vector<int> ortek(const std::vector<int>& places) {
  const irp::Protocol one("one",
                          "{38.6k,480}<1,-1|-1,1>(4,-1,D:5,P:2,F:6,C:4,-48m)"
                          "{C=3+#D+#P+#F,D=21,F=34}[P:0..2]");
  std::vector<int> sent;
  for (const int place : places) {
    const std::vector<int> next = one.render({{"P", place}}).whole();
    sent.insert(sent.end(), next.begin(), next.end());
  }
  return sent;
}

TEST(OrtekMce, TheRemarkTellsWhatIsMissingOfThePress) {
  std::vector<int> held(42, 1);
  held.front() = 0;
  held.back() = 2;
  const std::pair<std::vector<int>, const char*> cases[] = {
      {{0}, "no repeat: only start frame"},
      {{1}, "no repeat: no start and end frames"},
      {{2}, "no repeat: only end frame"},
      {{0, 1}, "+ 1 copy: no end frame"},
      {{1, 1}, "+ 1 copy: no start and end frames"},
      {{1, 1, 2}, "+ 2 copies: no start frame"},
      {{0, 1, 1, 2}, "+ 3 copies"},
      {{0, 2}, "+ 1 copy"},
      {{1, 0, 1}, "no repeat: no start and end frames"},
      {held, "+ 41 copies"},
  };
  for (const auto& [places, misc] : cases) {
    EXPECT_EQ(text(call(ortek(places))), "OrtekMCE D21 F34 H17 [" + std::string(misc) + ']');
  }
}

TEST(Amino, TheFramesOfAPressAreCopies) {
  EXPECT_EQ(call(signal("Amino", {{"D", 9}, {"F", 37}}, 2)).misc, "+ 2 copies: T=1");
}

TEST(Solidtek, OtherLengths) {
  const std::string start = "{38k}<-624,468|468,-624>(1820,-590,0:1,";
  const auto name = [&](const char* bits) { return call(broken((start + bits).c_str())).name; };
  EXPECT_EQ(name("8:4,33:6,9:6,5:4,1:1,-143m)"), "Solidtek20");
  EXPECT_EQ(name("5:4,6:4,1:1,-143m)"), "S:10-5340");
  expectUnnamed({{"a bit more", start + "5:4,6:5,1:1,-143m)"},
                 {"another last bit", start + "5:4,6:4,0:1,-143m)"}});
}

}  // namespace
