// SPDX-License-Identifier: GPL-3.0-or-later
// The pulse-distance recogniser: every row of its table, and what it must refuse.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/decode_ir_call.h"

namespace {

using namespace decode_ir;

/// The name, or nothing for one that only describes the frame.
std::string protocolOf(const std::vector<int>& sent) {
  const Result result = call(sent);
  return isNamed(result) ? result.name : "";
}

TEST(Gap, EveryRowHoldsThroughTheWorstReceivers) {
  const Receiver receivers[] = {fixed_receiver(-40, 0.04),
                                fixed_receiver(0, 0.04),
                                fixed_receiver(120, 0.04),
                                {.first_mark = {0.2, 0.2}}};
  const contract::Counts counts{.clean = 0, .received = 8, .repeated = 0};
  for (const std::string& protocol : contract::protocols("tryGap")) {
    for (const Receiver& receiver : receivers) {
      for (const contract::Sample& sample : contract::samples(protocol, 5, counts, receiver)) {
        EXPECT_EQ(contract::mismatch(sample.expected, call(sample)), "")
            << receiver.bias_us.low << " us: " << contract::describe(sample);
      }
    }
  }
}

TEST(Gap, NamesFramesBeyondTheContract) {
  for (const contract::Frame& one : contract::frames()) {
    expectText(one.answer, broken(one.definition));
  }
}

TEST(Gap, SecondFunctionBytesGoIntoTheSecondHexCode) {
  EXPECT_EQ(call(frame("NEC-f16", {{"D", 1}, {"F", 2}, {"E", 3}})).hex,
            (std::array{0xBF, 0x3F, -1, -1}));
  EXPECT_EQ(call(frame("48-NEC", {{"D", 1}, {"F", 2}, {"E", 3}})).hex,
            (std::array{0xBF, 0x3F, -1, -1}));
  EXPECT_EQ(call(frame("NEC", {{"D", 1}, {"F", 2}})).hex, (std::array{0xBF, -1, -1, -1}));
}

TEST(Gap, AFrameWhoseCheckFailsHasNoName) {
  const std::string kMaker = "{37k,432}<1,-1|1,-3>(8,-4,";
  expectUnnamed({
      {"Panasonic: 4, not 5", kMaker + "2:8,32:8,5:8,6:8,7:8,5:8,1,-74m)"},
      {"JVC-48", kMaker + "3:8,1:8,5:8,6:8,7:8,8:8,1,-74m)"},
      {"Denon-K", kMaker + "84:8,50:8,0:4,1:4,2:4,3:12,0:8,1,-74m)"},
      {"SharpDVD", kMaker + "170:8,90:8,15:4,1:4,2:8,3:8,1:4,5:4,1,-19m)"},
      {"Teac-K", kMaker + "67:8,83:8,1:4,1:4,2:8,3:8,7:8,1,-43m)"},
      {"Mitsubishi-K", kMaker + "35:8,203:8,6:4,1:8,2:8,3:8,0:4,1,-43m)"},
      {"Fujitsu: fixed nibble", kMaker + "20:8,99:8,1:4,0:4,2:8,3:8,1:8,1,-43m)"},
      {"Kaseikyo", kMaker + "1:8,16:8,0:4,1:4,2:8,3:8,1:4,0:4,1,-74m)"},
      {"Panasonic2", kMaker + "2:8,32:8,5:8,6:8,9:8,7:8,5:8,1,-74m)"},
      {"Aiwa", "{38k,550}<1,-1|1,-3>(16,-8,9:8,1:5,~9:8,~1:5,4:8,~5:8,1,-23m)"},
      {"48-NEC", "{38.4k,564}<1,-1|1,-3>(16,-8,1:8,2:8,3:8,~3:8,4:8,~6:8,1,-40m)"},
      {"Anthem", "{38k,605}<1,-1|1,-3>(8000u,-4000u,1:8,2:8,0:2,3:6,0:8,1,-25m)"},
      {"Dgtec", "{38k,560}<1,-1|1,-3>(16,-8,1:8,2:8,~3:8,1,-40m)"},
      {"RCA", "{58k,460,msb}<1,-2|1,-4>(8,-8,3:4,9:8,~3:4,~8:8,1,-40m)"},
      {"Old Panasonic", "{57.6k,833}<1,-1|1,-3>(4,-4,1:5,2:6,~1:5,~3:6,1,-44m)"},
      {"Bose", "{38k,500,msb}<1,-1|1,-3>(2,-3,9:8,~8:8,1,-50m)"},
      {"G.I.4DTV", "{37.3k,992}<1,-1|1,-3>(5,-2,9:6,1:2,5:4,1,-60)"},
      {"G.I.Cable", "{38.7k,490}<1,-4.5|1,-9>(18,-9,9:8,1:4,5:4,1,-84)"},
      {"Logitech", "{38k,127}<3,-4|3,-8>(31,-36,5:4,~5:4,9:8,~8:8,3,-50m)"},
      {"Metz19", "{37.9k,106,msb}<4,-9|4,-16>((8,-22,1:1,2:3,~2:3,9:6,~8:6,4,-125m))"},
      {"LG", "{38k,560,msb}<1,-1|1,-3>(8500u,-4250u,136:8,1:16,2:4,1,-60m)"},
      {"Lego", "{38k,158u,msb}<158u,-263u|158u,-553u>(158u,-1026u,5:4,4:4,7:4,8:4,158u,-100m)"},
  });
}

TEST(Gap, ACutFrameHasNoName) {
  expectPiecesUnnamed({
      {"NEC", {{"D", 4}, {"F", 8}}},
      {"48-NEC", {{"D", 4}, {"S", 5}, {"F", 8}, {"E", 3}}, {"NEC", "IODATA12"}},
      {"Aiwa", {{"D", 4}, {"S", 1}, {"F", 8}}, {"NEC-f16"}},
      {"Panasonic", {{"D", 4}, {"S", 1}, {"F", 8}}},
      {"Samsung36", {{"D", 4}, {"S", 1}, {"E", 3}, {"F", 8}}, {"NECx"}},
      {"G.I.Cable", {{"D", 4}, {"F", 8}}},
      {"Bose", {{"F", 8}}, {"Matsui", "JVC{2}"}},
      {"RCA", {{"D", 4}, {"F", 8}}},
      {"Proton", {{"D", 4}, {"F", 8}}},
      {"Dish_Network", {{"D", 4}, {"S", 1}, {"F", 8}}},
  });
}

// Half of a frame of 56 bits looks like one of 48; what ends before the cut is whole.
TEST(Gap, ASignalThatWasCutInsideAFrameHasNoName) {
  const std::vector<int> whole = frame("Panasonic2", {{"D", 4}, {"S", 1}, {"X", 2}, {"F", 8}});
  EXPECT_EQ(call({whole.begin(), whole.begin() + 100}).name, "");
  std::vector<int> two = signal("Panasonic", {{"D", 4}, {"S", 1}, {"F", 8}}, 2);
  two.resize(140);
  EXPECT_EQ(text(call(two)), "Panasonic D4 S1 F8 H239 [no repeat]");
}

TEST(Gap, StrayMarksChangeNothing) {
  Random random(4);
  for (const Side side : {Side::kBefore, Side::kAfter}) {
    for (const int gap_us : {5000, 6000, 9000, 12000}) {
      for (const auto& [protocol, wanted] : {std::pair{"NEC", "NEC D4 F8 H239 [no repeat]"},
                                             {"RC5", "RC5 D4 F8 H8 [no repeat: T=0]"}}) {
        const std::vector<int> sent = frame(protocol, {{"D", 4}, {"F", 8}});
        EXPECT_EQ(text(call(with_stray_mark(sent, random, side, gap_us))), wanted) << gap_us;
      }
    }
  }
  // Two copies with a stray mark between them, and half a frame before one.
  const std::vector<int> nec = frame("NEC", {{"D", 4}, {"F", 8}});
  std::vector<int> copies = nec;
  copies.insert(copies.end(), {20000, 90, 20000});
  copies.insert(copies.end(), nec.begin(), nec.end());
  EXPECT_EQ(text(call(copies)), "NEC2 D4 F8 H239 [+ 1 copy]");
  std::vector<int> behind(nec.begin() + 30, nec.end());
  behind.push_back(6000);
  behind.insert(behind.end(), nec.begin(), nec.end());
  EXPECT_EQ(text(call(behind)), "NEC D4 F8 H239 [no repeat]");
}

TEST(Gap, OneDurationMayBeOutOfLine) {
  const std::vector<int> nec = frame("NEC", {{"D", 4}, {"F", 8}});
  const std::vector<int> jvc = frame("JVC", {{"D", 4}, {"F", 8}});
  const size_t last = nec.size() - 1;
  struct {
    const char* what;
    const std::vector<int>& sent;
    std::vector<std::pair<size_t, double>> factors;  // of durations
    const char* name;
  } const cases[] = {
      {"last mark stretched", nec, {{last, 2.0}}, "NEC"},
      {"last mark cut", nec, {{last, 0.3}}, "NEC"},
      {"lead-in mark cut", nec, {{0, 0.8}}, "NEC"},
      {"lead-in space cut", nec, {{1, 0.8}}, "NEC"},
      {"a space of the function", nec, {{2 * 22 + 1, 1.3}}, "NEC"},
      {"a space so far out that the bit is a guess", nec, {{2 * 22 + 1, 1.75}}, "NEC"},
      {"two marks", nec, {{last, 2.0}, {8, 0.5}}, ""},
      {"lead-in and a space, within jitter", nec, {{0, 0.8}, {2 * 22 + 1, 1.25}}, "NEC"},
      {"lead-in and a space", nec, {{0, 0.75}, {2 * 22 + 1, 1.25}}, ""},
      {"the lead-in of another code", nec, {{0, 0.5}}, "NECx"},
      {"a space, and no check to make up for it", jvc, {{9, 1.4}}, ""},
      {"last mark, no check needed", jvc, {{jvc.size() - 1, 1.8}}, "JVC"},
  };
  for (const auto& c : cases) {
    std::vector<int> sent = c.sent;
    for (const auto& [at, factor] : c.factors) sent[at] = static_cast<int>(sent[at] * factor);
    EXPECT_EQ(protocolOf(sent), c.name) << c.what;
  }
}

TEST(Gap, AGuessedBitNeedsACheckOfItsOwn) {
  // Bit 0 of the device; the subdevice vouches for it only as its complement.
  for (const auto& [sub, name] : {std::pair{0xFB, "NEC"}, {0x12, ""}}) {
    std::vector<int> sent = frame("NEC", {{"D", 4}, {"S", sub}, {"F", 8}});
    sent[3] = sent[3] * 17 / 10;
    EXPECT_EQ(protocolOf(sent), name);
  }
}

TEST(Gap, DittosAndCopiesAreTold) {
  struct {
    const char* protocol;
    irp::Parameters given;
    int repeats;
    const char* wanted;
  } const cases[] = {
      {"NEC1", {{"D", 4}, {"F", 8}}, 1, "NEC [+ 1 ditto]"},
      {"NEC1", {{"D", 4}, {"F", 8}}, 4, "NEC [+ 4 dittos]"},
      {"NEC2", {{"D", 4}, {"F", 8}}, 3, "NEC2 [+ 2 copies]"},
      {"NEC2-f16", {{"D", 4}, {"F", 8}, {"E", 3}}, 2, "NEC2-f16 [+ 1 copy: E=3]"},
      {"NEC1-rnc", {{"D", 4}, {"F", 8}}, 2, "NEC-rnc [+ 2 dittos]"},
      {"NECx1", {{"D", 4}, {"F", 8}}, 2, "NECx [+ 2 dittos]"},
      {"NECx2", {{"D", 4}, {"F", 8}}, 2, "NECx2 [+ 1 copy]"},
      {"48-NEC2", {{"D", 4}, {"S", 0}, {"F", 8}, {"E", 3}}, 2, "48-NEC2 [+ 1 copy: E=3]"},
      {"JVC", {{"D", 4}, {"F", 8}}, 2, "JVC [+ 2 copies]"},
      {"JVC{2}", {{"D", 4}, {"F", 8}}, 2, "JVC{2} [+ 1 copy]"},
      {"RCA(Old)", {{"D", 4}, {"F", 8}}, 2, "RCA(Old) [+ 2 copies]"},
      {"Aiwa", {{"D", 4}, {"S", 1}, {"F", 8}}, 2, "Aiwa [+ 2 dittos]"},
      {"Amazon_Fan", {{"D", 4}, {"F", 8}}, 2, "Amazon_Fan [+ 2 dittos]"},
      {"Kathrein", {{"D", 4}, {"F", 8}}, 2, "Kathrein [+ 3 dittos]"},
      {"Digivision",
       {{"D", 4}, {"Dev2", 1}, {"Dev3", 2}, {"F", 8}},
       2,
       "Digivision [+ 2 dittos: Dev3=2]"},
      {"Dish_Network", {{"D", 4}, {"S", 1}, {"F", 8}}, 2, "Dish_Network [+ 2 copies]"},
      {"Denon", {{"D", 4}, {"F", 8}}, 1, "Denon [+ 2 copies]"},
      {"Sharp", {{"D", 4}, {"F", 8}}, 1, "Sharp [+ 2 copies]"},
      {"Anthem", {{"D", 4}, {"S", 1}, {"Unit", 2}, {"F", 8}}, 1, "Anthem [+ 2 copies: Unit=2]"},
  };
  for (const auto& c : cases) {
    Press press(signal(c.protocol, c.given, c.repeats));
    const Result result = press.next();
    EXPECT_EQ(result.name + " [" + result.misc + ']', c.wanted) << c.protocol;
    EXPECT_EQ(text(press.next()), " []") << c.protocol << ": the whole press is used up";
  }
}

TEST(Gap, ReceivedCopiesOfAnUnknownCodeAreTold) {
  const std::vector<int> one =
      broken("{38k,590,msb}<1,-1|1,-3>(12,-5,0xA5:8,0x3C:8,0x57:8,1,-50m)");
  std::vector<int> sent;
  for (int i = 0; i < 3; ++i) {
    sent.insert(sent.end(), one.begin(), one.end());
    sent.push_back(50000);
  }
  constexpr int kSignals = 40;
  for (const double jitter : {0.01, 0.02, 0.06}) {
    const BadReceiver receiver{.jitter = {jitter, jitter}};
    Random random(3);
    int told = 0;
    for (int i = 0; i < kSignals; ++i) {
      told += static_cast<int>(call(receive(sent, random, receiver)).misc == "+ 2 copies: A53C57");
    }
    EXPECT_GE(told, kSignals - 2) << jitter;
  }
}

TEST(Gap, StrayMarksAroundAFrameDoNotHideIt) {
  const std::vector<int> nec = frame("NEC", {{"D", 4}, {"F", 8}});
  std::vector<int> before = {60, 13900};
  before.insert(before.end(), nec.begin(), nec.end());
  std::vector<int> after = nec;
  after.insert(after.end(), {11000, 60});
  EXPECT_EQ(text(call(before)), "NEC D4 F8 H239 [no repeat]");
  EXPECT_EQ(text(call(after)), "NEC D4 F8 H239 [no repeat]");
  // A mark that follows too soon is part of the frame, and spoils it.
  after[nec.size()] = 1500;
  EXPECT_EQ(protocolOf(after), "");
}

TEST(Gap, FramesOfDifferentKeysAreSuccessiveResults) {
  std::vector<int> sent = signal("NEC1", {{"D", 4}, {"F", 8}}, 1);
  const std::vector<int> second = signal("Panasonic", {{"D", 1}, {"S", 2}, {"F", 3}}, 1);
  sent.insert(sent.end(), second.begin(), second.end());
  Press press(sent);
  EXPECT_EQ(text(press.next()), "NEC D4 F8 H239 [+ 1 ditto]");
  EXPECT_EQ(text(press.next()), "Panasonic D1 S2 F3 H63 [no repeat]");
  EXPECT_EQ(text(press.next()), " []");
}

TEST(Gap, OfTwoRowsThatFitTheBetterVerifiedWins) {
  struct {
    const char* protocol;
    irp::Parameters given;
    const char* name;
  } const cases[] = {
      {"Dgtec", {{"D", 0x4}, {"F", 9}}, "Dgtec"},
      {"Dgtec", {{"D", 0xB4}, {"F", 9}}, "Kathrein"},
      {"Sampo", {{"D", 5}, {"S", 5}, {"F", 9}}, "Sampo"},
      {"Sampo", {{"D", 5}, {"S", 58}, {"F", 9}}, "Emerson"},
      {"Digivision", {{"D", 7}, {"Dev2", 1}, {"Dev3", 2}, {"F", 9}}, "Digivision"},
      {"GuangZhou", {{"D", 7}, {"S", 1}, {"F", 9}}, "GuangZhou"},
      {"Kaseikyo", {{"M", 1}, {"N", 2}, {"D", 1}, {"S", 2}, {"F", 9}, {"E", 1}}, "Kaseikyo-1-2"},
      {"SharpDVD", {{"D", 1}, {"S", 2}, {"F", 9}}, "SharpDVD"},
      {"NEC-f16", {{"D", 133}, {"S", 48}, {"F", 0x29}, {"E", 0xD0}}, "Tivo"},
      {"NEC-f16", {{"D", 4}, {"F", 0x29}, {"E", 0x62}}, "Ortek_NEClike"},
      {"NEC-f16", {{"D", 4}, {"F", 0x29}, {"E", 0x6D}}, "NEC-rnc"},
      {"NEC-f16", {{"D", 4}, {"F", 0x29}, {"E", 0xD7}}, "NEC-Yamaha"},
      {"NEC-f16", {{"D", 4}, {"F", 0x29}, {"E", 0xD6}}, "NEC"},
      {"NEC-f16", {{"D", 4}, {"F", 0x29}, {"E", 0x00}}, "NEC-f16"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call(frame(c.protocol, c.given)).name, c.name) << c.protocol;
  }
}

TEST(Gap, ARepeatFrameAloneCountsOnlyWhenAllOfItFits) {
  const std::pair<std::vector<int>, const char*> cases[] = {
      {{9024, 2256, 564}, "NEC [no repeat: repeat frame]"},
      {{8900, 2330, 480}, "NEC [no repeat: repeat frame]"},
      {{9024, 2256, 564, 96000, 9024, 2256, 564, 96000}, "NEC [+ 1 ditto: repeat frame]"},
      {{4512, 4512, 564, 564, 564}, "NECx [no repeat: repeat frame]"},
      {{4512, 4512, 564, 1692, 564}, "NECx [no repeat: repeat frame]"},
      {{9024, 2256, 1128}, " []"},
      {{9024, 2256, 200}, " []"},
      {{9024, 2600, 564}, " []"},
      {{7500, 2256, 564}, " []"},
      {{9650, 1630, 590}, "NEC [no repeat: repeat frame]"},  // a late first edge
      {{6223, 3062, 812, 338, 808}, " []"},
      {{9024, 4512, 564}, " []"},
      {{9024, 2256, 564, 564, 564}, " []"},
      {{4512, 4512, 564}, " []"},
  };
  for (const auto& [sent, wanted] : cases) EXPECT_EQ(text(call(sent)), wanted) << irp::csv(sent);
}

TEST(Gap, ACleanFrameOfNoProtocolGivesItsBits) {
  const std::vector<int> sent =
      broken("{38k,600,msb}<1,-1|1,-3>(10,-5,0xA5:8,0x3C:8,0x5:4,1,-50m)");
  Random random(1);
  for (const bool received : {false, true}) {
    const Result result = call(received ? receive(sent, random) : sent);
    EXPECT_TRUE(result.name.starts_with("Gap-20-")) << result.name;
    EXPECT_EQ(result.misc, "no repeat: A53C05");
    EXPECT_EQ(result.hex, (std::array{0xA5, 0x3C, 0x05, -1}));
  }
  EXPECT_EQ(call(sent).name, "Gap-20-560");
  std::vector<int> uneven = sent;
  uneven[11] *= 2;  // a space between the two lengths
  EXPECT_EQ(call(uneven).name, "");
  uneven = sent;
  uneven[12] *= 2;  // a mark
  EXPECT_EQ(call(uneven).name, "");
}

}  // namespace
