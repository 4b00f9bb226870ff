// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of codes that send digits and symbols: XMP, Zenith, X10, DirecTV, Epson, Nokia,
// Xiaomi, Somfy.
#include <gtest/gtest.h>

#include "tests/support/decode_ir_call.h"

namespace {

using namespace decode_ir;

TEST(SymbolCodes, NamesNumbersAndRemarks) {
  expectTexts({
      {"XMP-1", {{"D", 62}, {"S", 16}, {"F", 15}}, "XMP-1 D62 S16 F15 H15 [no repeat: OEM = 68]"},
      {"XMP-2",
       {{"D", 62}, {"S", 15}, {"F", 9}, {"OEM", 7}},
       "XMP-2 D62 S15 F9 H9 [no repeat: OEM = 7]"},
      {"XMP",
       {{"D", 1}, {"S", 255}, {"F", 0x1234}},
       "XMP D1 S255 F18 H18 [no repeat: OEM = 68, OBC2 = 52 Hex2 = 34]"},
      {"Velodyne", {{"D", 9}, {"S", 171}, {"F", 200}}, "Velodyne D9 S171 F200 H200 [no repeat]"},
      {"Zenith5", {{"S", 1}, {"F", 18}}, "Zenith D5 S1 F18 H18 [no repeat: E=1]"},
      {"Zenith8", {{"S", 0}, {"F", 129}}, "Zenith D8 S0 F129 H129 [no repeat: E=0]"},
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}, "DirecTV D12 F131 H131 [no repeat]"},
      {"Epson",
       {{"D", 98}, {"OBC", 33}, {"S", 170}, {"T1", 1}, {"T2", 2}, {"F1", 0}, {"F2", 0}},
       "Epson D98 S170 F33 H33 [no repeat: T1 = 1, T2 = 2]"},
      {"Nokia12", {{"D", 8}, {"F", 65}}, "Nokia12 D8 F65 H65 [no repeat]"},
      {"Nokia", {{"D", 13}, {"S", 64}, {"F", 255}}, "Nokia D13 S64 F255 H255 [no repeat]"},
      {"Nokia32",
       {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 38}, {"T", 1}},
       "Nokia32 D36 S128 F4 H4 [no repeat: X=38 T=1]"},
      {"Xiaomi", {{"D", 154}, {"F", 66}}, "Xiaomi D154 F66 H66 [no repeat]"},
      {"Somfy", {{"D", 5}, {"F", 1}}, "Somfy D5 F1 H2 [no repeat]"},
      {"X10-command", {{"C", 3}}, "X10 F19 H25 [no repeat]"},
      {"X10-device", {{"D", 10}}, "X10 F10 H10 [no repeat]"},
      {"X10-house", {{"H", 6}}, "X10-house F6 H6 [no repeat]"},
  });
}

TEST(SymbolCodes, CutFramesHaveNoName) {
  expectBeginningsUnnamed({
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}},
      {"Xiaomi", {{"D", 154}, {"F", 66}}},
      {"Somfy", {{"D", 5}, {"F", 1}}},
      {"Nokia12", {{"D", 8}, {"F", 65}}},
      {"Zenith5", {{"S", 1}, {"F", 18}}},
      {"X10-command", {{"C", 3}}},
  });
}

TEST(SymbolCodes, FailingChecksHaveNoName) {
  expectUnnamed({
      {"DirecTV, C one too large",
       "{38k,600,msb}<1,-1|1,-2|2,-1|2,-2>(10,-2,12:4,131:8,2:4,1,-30m)"},
      {"Xiaomi, C of another function",
       "{36k,290,msb}<2,-2|2,-3|2,-4|2,-5>(1000u,-2,154:8,66:8,6:4,2,-10m)"},
      {"Somfy, C one too small", "{35.7k}<308,-881|669,-520>(2072,-484,1:2,5:3,11:4,-2300)"},
      {"X10, F not complemented", "{38.4k,570}<2,-12|7,-7>(7,-7,3:5,3:5,21,-7)"},
      {"Zenith, a bit of two equal levels",
       "{40k,520,msb}<1,-10|1,-1,1,-8>(0:1,1:2,3:2,0:2,2:2,1:2,-90m)"},
  });
}

TEST(SymbolCodes, OneOddDurationIsForgivenAtTheEndsOrWhereAllBitsAreChecked) {
  struct {
    const char* protocol;
    irp::Parameters given;
    size_t index;
    int added;
    bool accepted;
  } const cases[] = {
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}, 0, -500, true},
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}, 18, 400, true},
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}, 7, 320, false},
      {"Zenith6", {{"S", 0}, {"F", 9}}, 12, 260, true},
      {"Nokia32", {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 38}, {"T", 1}}, 34, 150, true},
      {"Nokia32", {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 38}, {"T", 1}}, 9, 70, false},
  };
  for (const auto& c : cases) {
    std::vector<int> sent = frame(c.protocol, c.given);
    sent.at(c.index) += c.added;
    EXPECT_EQ(isNamed(call(sent)), c.accepted) << c.protocol << " at " << c.index;
  }
}

// A receiver may swallow a carrier period of every mark, which moves all bursts alike.
TEST(SymbolCodes, NokiaMarksMayBeShortInEveryBurst) {
  std::vector<int> sent = frame("Nokia32", {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 3}, {"T", 1}});
  for (size_t i = 2; i < sent.size(); i += 2) sent[i] -= 28;
  EXPECT_EQ(text(call(sent)), "Nokia32 D36 S128 F4 H4 [no repeat: X=3 T=1]");
}

TEST(DirecTV, ThePressTellsCarrierAndGap) {
  for (int parameter = 0; parameter < 6; ++parameter) {
    const std::string name = "DirecTV_P" + std::to_string(parameter);
    const std::vector<int> sent = signal(name.c_str(), {{"D", 12}, {"F", 3}}, 2);
    EXPECT_EQ(text(call(sent, irp::protocol(name).carrier())),
              "DirecTV D12 F3 H3 [+ 2 copies: Parm = " + std::to_string(parameter) + ']');
  }
}

TEST(SymbolCodes, ThePressEndsWithItsLastFrame) {
  const std::pair<const char*, irp::Parameters> cases[] = {
      {"DirecTV_P3", {{"D", 12}, {"F", 3}}}, {"Humax 4Phase", {{"D", 33}, {"S", 7}, {"F", 101}}}};
  for (const auto& [name, given] : cases) {
    Press press(signal(name, given, 2));
    EXPECT_TRUE(press.next().misc.starts_with("+ ")) << name;
    EXPECT_EQ(text(press.next()), " []") << name;
  }
}

TEST(DirecTV, RepeatsWithTheirShortLeadInAreNamedAlone) {
  std::vector<int> repeat = frame("DirecTV_P3", {{"D", 12}, {"F", 3}});
  repeat[0] = 3000;
  EXPECT_EQ(call(repeat).name, "DirecTV");
}

class Xmp : public testing::Test {
 protected:
  const std::vector<int> whole_ = frame("XMP", {{"D", 62}, {"S", 16}, {"F", 0x0F21}});
  const std::vector<int> first_{whole_.begin(), whole_.begin() + 17};
  const std::vector<int> second_{whole_.begin() + 18, whole_.end()};
};

TEST_F(Xmp, HalvesAreNamedAlone) {
  EXPECT_EQ(text(call(first_)), "XMP:16.062-device D62 S16 [no repeat: first half, OEM = 68]");
  const Result second = call(second_);
  EXPECT_EQ(text(second),
            "XMP:16.015-function S16 F15 H15 [no repeat: second half, OBC2 = 33 Hex2 = 21]");
  EXPECT_EQ(second.hex[1], 33);
}

TEST_F(Xmp, TwoLengthsAloneAreNoHalf) {
  expectUnnamed("Sharp", {264, 792, 264, 792, 264, 792, 264, 1848, 264, 792, 264, 792, 264, 1848,
                          264, 1848, 264});
}

TEST_F(Xmp, AFrameWithADamagedHalfHasNoName) {
  for (const size_t space : {1U, 7U, 9U, 19U, 25U, 33U}) {
    std::vector<int> sent = whole_;
    sent[space] += sent[space] < 1500 ? 136 : -136;
    expectUnnamed("space " + std::to_string(space), sent);
  }
  expectUnnamed("cut", {whole_.begin(), whole_.begin() + 31});
}

TEST_F(Xmp, ALengthBetweenTwoDigitsIsTheOneThatTheSumsName) {
  constexpr int kStepUs = 136;
  std::vector<int> sent = whole_;
  sent[31] += kStepUs * 55 / 100;
  EXPECT_EQ(call(sent).misc, "no repeat: OEM = 68, OBC2 = 33 Hex2 = 21");
  sent[11] -= kStepUs / 2;
  sent[13] += kStepUs / 2;
  expectUnnamed("a 4 and a 3 that may have changed places", sent);
}

TEST_F(Xmp, AStrayMarkBeforeTheFrameDoesNotHideIt) {
  std::vector<int> sent = {120, 8000};
  sent.insert(sent.end(), whole_.begin(), whole_.end());
  EXPECT_EQ(call(sent).name, "XMP");
}

TEST_F(Xmp, HalvesOfTwoKeysAreNoFrame) {
  std::vector<int> mixed = first_;
  const std::vector<int> other = frame("XMP", {{"D", 62}, {"S", 17}, {"F", 0x0F21}});
  mixed.insert(mixed.end(), other.begin() + 17, other.end());
  EXPECT_FALSE(isNamed(call(mixed)));
}

TEST_F(Xmp, FramesOfAPressAreCopiesAlthoughTheirToggleDigitDiffers) {
  EXPECT_EQ(call(signal("XMP", {{"D", 62}, {"S", 16}, {"F", 0x0F21}}, 3)).misc,
            "+ 3 copies: OEM = 68, OBC2 = 33 Hex2 = 21");
}

TEST(X10, AStartFrameAndItsRepeatsAreOnePress) {
  const std::vector<int> sent = signal("X10.n", {{"F", 9}, {"N", 5}}, 2);
  EXPECT_TRUE(text(call(sent)).starts_with("X10:5 F9 H18 [+ "));
  EXPECT_EQ(text(call({sent.begin(), sent.begin() + 19})),
            "X10:5 F9 H18 [no repeat: only start frame]");
}

TEST(X10, AStartFrameThatItsRepeatContradictsIsInvalid) {
  std::vector<int> sent = signal("X10.n", {{"F", 9}, {"N", 5}}, 2);
  const std::vector<int> other = signal("X10.n", {{"F", 8}, {"N", 5}}, 2);
  std::copy(other.begin(), other.begin() + 20, sent.begin());
  EXPECT_EQ(call(sent).error, "invalid signal");
}

}  // namespace
