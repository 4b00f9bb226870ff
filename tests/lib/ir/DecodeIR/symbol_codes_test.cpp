// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers of codes that send digits and symbols: XMP, Zenith, X10, DirecTV, Epson, Nokia,
// Xiaomi, Somfy.
#include <gtest/gtest.h>

#include "tests/support/decode_ir_call.h"

namespace {

using decode_ir::broken;
using decode_ir::expectNamed;
using decode_ir::expectUnnamed;
using decode_ir::frame;
using decode_ir::isNamed;
using decode_ir::Result;
using decode_ir::signal;

TEST(SymbolCodes, NamesNumbersAndRemarks) {
  const decode_ir::NameCase cases[] = {
      {"XMP-1", {{"D", 62}, {"S", 16}, {"F", 15}}, "XMP-1", "OEM = 68", 62, 16, 15, 15},
      {"XMP-2", {{"D", 62}, {"S", 15}, {"F", 9}, {"OEM", 7}}, "XMP-2", "OEM = 7", 62, 15, 9, 9},
      {"XMP",
       {{"D", 1}, {"S", 255}, {"F", 0x1234}},
       "XMP",
       "OEM = 68, OBC2 = 52 Hex2 = 34",
       1,
       255,
       0x12,
       0x12},
      {"Velodyne", {{"D", 9}, {"S", 171}, {"F", 200}}, "Velodyne", "", 9, 171, 200, 200},
      {"Zenith5", {{"S", 1}, {"F", 18}}, "Zenith", "E=1", 5, 1, 18, 18},
      {"Zenith8", {{"S", 0}, {"F", 129}}, "Zenith", "E=0", 8, 0, 129, 129},
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}, "DirecTV", "", 12, -1, 131, 131},
      {"Epson",
       {{"D", 98}, {"OBC", 33}, {"S", 170}, {"T1", 1}, {"T2", 2}, {"F1", 0}, {"F2", 0}},
       "Epson",
       "T1 = 1, T2 = 2",
       98,
       170,
       33,
       33},
      {"Nokia12", {{"D", 8}, {"F", 65}}, "Nokia12", "", 8, -1, 65, 65},
      {"Nokia", {{"D", 13}, {"S", 64}, {"F", 255}}, "Nokia", "", 13, 64, 255, 255},
      {"Nokia32",
       {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 38}, {"T", 1}},
       "Nokia32",
       "X=38 T=1",
       36,
       128,
       4,
       4},
      {"Xiaomi", {{"D", 154}, {"F", 66}}, "Xiaomi", "", 154, -1, 66, 66},
      {"Somfy", {{"D", 5}, {"F", 1}}, "Somfy", "", 5, -1, 1, 2},
      {"X10-command", {{"C", 3}}, "X10", "", -1, -1, 19, 25},
      {"X10-device", {{"D", 10}}, "X10", "", -1, -1, 10, 10},
      {"X10-house", {{"H", 6}}, "X10-house", "", -1, -1, 6, 6},
  };
  for (const auto& c : cases) expectNamed(c);
}

TEST(SymbolCodes, CutFramesHaveNoName) {
  struct {
    const char* protocol;
    irp::Parameters given;
  } const cases[] = {
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}}, {"Xiaomi", {{"D", 154}, {"F", 66}}},
      {"Somfy", {{"D", 5}, {"F", 1}}},         {"Nokia12", {{"D", 8}, {"F", 65}}},
      {"Zenith5", {{"S", 1}, {"F", 18}}},      {"X10-command", {{"C", 3}}},
  };
  for (const auto& c : cases) {
    const std::vector<int> whole = frame(c.protocol, c.given);
    ASSERT_TRUE(isNamed(decode_ir::call(whole))) << c.protocol;
    for (auto cut = whole.begin() + 5; cut != whole.end(); ++cut) {
      const Result tail = decode_ir::call({whole.begin(), cut});
      EXPECT_FALSE(isNamed(tail)) << c.protocol << ": " << tail.name;
    }
  }
}

TEST(SymbolCodes, FailingChecksHaveNoName) {
  struct {
    const char *what, *definition;
  } const cases[] = {
      {"DirecTV, C one too large",
       "{38k,600,msb}<1,-1|1,-2|2,-1|2,-2>(10,-2,12:4,131:8,2:4,1,-30m)"},
      {"Xiaomi, C of another function",
       "{36k,290,msb}<2,-2|2,-3|2,-4|2,-5>(1000u,-2,154:8,66:8,6:4,2,-10m)"},
      {"Somfy, C one too small", "{35.7k}<308,-881|669,-520>(2072,-484,1:2,5:3,11:4,-2300)"},
      {"X10, F not complemented", "{38.4k,570}<2,-12|7,-7>(7,-7,3:5,3:5,21,-7)"},
      {"Zenith, a bit of two equal levels",
       "{40k,520,msb}<1,-10|1,-1,1,-8>(0:1,1:2,3:2,0:2,2:2,1:2,-90m)"},
  };
  for (const auto& c : cases) expectUnnamed(c.what, broken(c.definition));
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
      {"DirecTV_P3", {{"D", 12}, {"F", 131}}, 7, 180, false},
      {"Zenith6", {{"S", 0}, {"F", 9}}, 12, 260, true},
      {"Nokia32", {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 38}, {"T", 1}}, 34, 150, true},
      {"Nokia32", {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 38}, {"T", 1}}, 9, 70, false},
  };
  for (const auto& c : cases) {
    std::vector<int> sent = frame(c.protocol, c.given);
    sent.at(c.index) += c.added;
    EXPECT_EQ(isNamed(decode_ir::call(sent)), c.accepted) << c.protocol << " at " << c.index;
  }
}

// A receiver may swallow a carrier period of every mark, which moves all bursts alike.
TEST(SymbolCodes, NokiaMarksMayBeShortInEveryBurst) {
  std::vector<int> sent = frame("Nokia32", {{"D", 36}, {"S", 128}, {"F", 4}, {"X", 3}, {"T", 1}});
  for (size_t i = 2; i < sent.size(); i += 2) sent[i] -= 28;
  const Result result = decode_ir::call(sent);
  EXPECT_EQ(result.name, "Nokia32");
  EXPECT_EQ(result.obc, 4);
}

TEST(DirecTV, ParameterIsToldByCarrierAndGap) {
  for (int parameter = 0; parameter < 6; ++parameter) {
    const std::string name = "DirecTV_P" + std::to_string(parameter);
    const std::vector<int> sent = signal(name.c_str(), {{"D", 12}, {"F", 3}}, 2);
    const Result result = decode_ir::call(sent, irp::protocol(name).carrier());
    EXPECT_EQ(result.name, "DirecTV");
    EXPECT_NE(result.misc.find("Parm = " + std::to_string(parameter)), std::string::npos)
        << result.misc;
  }
}

TEST(DirecTV, RepeatsWithTheirShortLeadInAreNamedAlone) {
  std::vector<int> repeat = frame("DirecTV_P3", {{"D", 12}, {"F", 3}});
  repeat[0] = 3000;
  EXPECT_EQ(decode_ir::call(repeat).name, "DirecTV");
}

class Xmp : public testing::Test {
 protected:
  const std::vector<int> whole_ = frame("XMP", {{"D", 62}, {"S", 16}, {"F", 0x0F21}});
  const std::vector<int> first_{whole_.begin(), whole_.begin() + 17};
  const std::vector<int> second_{whole_.begin() + 18, whole_.end()};
};

TEST_F(Xmp, HalvesAreNamedAlone) {
  const Result first = decode_ir::call(first_);
  EXPECT_EQ(first.name, "XMP:16.062-device");
  EXPECT_EQ(first.misc, "no repeat: first half, OEM = 68");
  EXPECT_EQ(first.obc, -1);
  const Result second = decode_ir::call(second_);
  EXPECT_EQ(second.name, "XMP:16.015-function");
  EXPECT_EQ(second.misc, "no repeat: second half, OBC2 = 33 Hex2 = 21");
  EXPECT_EQ(second.device, -1);
  EXPECT_EQ(second.hex[1], 33);
}

TEST_F(Xmp, TwoLengthsAloneAreNoHalf) {
  EXPECT_FALSE(isNamed(decode_ir::call(
      {264, 792, 264, 792, 264, 792, 264, 1848, 264, 792, 264, 792, 264, 1848, 264, 1848, 264})));
}

TEST_F(Xmp, AFrameWithADamagedHalfHasNoName) {
  for (const size_t space : {1U, 7U, 9U, 19U, 25U, 33U}) {
    std::vector<int> sent = whole_;
    sent[space] += sent[space] < 1500 ? 136 : -136;
    const Result result = decode_ir::call(sent);
    EXPECT_FALSE(isNamed(result)) << space << ": " << result.name;
  }
  std::vector<int> cut = whole_;
  cut.resize(31);
  EXPECT_FALSE(isNamed(decode_ir::call(cut)));
}

TEST_F(Xmp, AStrayMarkBeforeTheFrameDoesNotHideIt) {
  std::vector<int> sent = {120, 8000};
  sent.insert(sent.end(), whole_.begin(), whole_.end());
  EXPECT_EQ(decode_ir::call(sent).name, "XMP");
}

TEST_F(Xmp, HalvesOfTwoKeysAreNoFrame) {
  std::vector<int> mixed = first_;
  const std::vector<int> other = frame("XMP", {{"D", 62}, {"S", 17}, {"F", 0x0F21}});
  mixed.insert(mixed.end(), other.begin() + 17, other.end());
  EXPECT_FALSE(isNamed(decode_ir::call(mixed)));
}

TEST_F(Xmp, FramesOfAPressAreCopiesAlthoughTheirToggleDigitDiffers) {
  EXPECT_EQ(decode_ir::call(signal("XMP", {{"D", 62}, {"S", 16}, {"F", 0x0F21}}, 3)).misc,
            "+ 3 copies: OEM = 68, OBC2 = 33 Hex2 = 21");
}

TEST(X10, AStartFrameAndItsRepeatsAreOnePress) {
  const std::vector<int> sent = signal("X10.n", {{"F", 9}, {"N", 5}}, 2);
  const Result result = decode_ir::call(sent);
  EXPECT_EQ(result.name, "X10:5");
  EXPECT_EQ(result.obc, 9);
  EXPECT_TRUE(result.misc.starts_with("+ ")) << result.misc;

  const Result alone = decode_ir::call({sent.begin(), sent.begin() + 19});
  EXPECT_EQ(alone.name, "X10:5");
  EXPECT_EQ(alone.misc, "no repeat: only start frame");
}

TEST(X10, AStartFrameThatItsRepeatContradictsIsInvalid) {
  std::vector<int> sent = signal("X10.n", {{"F", 9}, {"N", 5}}, 2);
  const std::vector<int> other = signal("X10.n", {{"F", 8}, {"N", 5}}, 2);
  std::copy(other.begin(), other.begin() + 20, sent.begin());
  const Result result = decode_ir::call(sent);
  EXPECT_EQ(result.error, "invalid signal");
}

}  // namespace
