// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/statistics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/ir/DecodeIR/signal.h"

namespace {

std::string state(const setBurst& set) {
  std::string text;
  for (const float f : {set.smallest, set.second_smallest, set.third_smallest, set.mid_low,
                        set.mid_high, set.third_largest, set.second_largest, set.largest}) {
    text += std::to_string(static_cast<int>(f)) + ' ';
  }
  return text;
}

TEST(Statistics, MarksKeepTheTwoLargest) {
  setOn set;
  for (const float on : {500.0F, 1500.0F, 1000.0F}) set.insert(&on);
  EXPECT_EQ(set.smallest, 500);
  EXPECT_EQ(set.largest, 1500);
  EXPECT_EQ(set.second, 1000);
}

struct bursts_case {
  const char* what;
  std::vector<float> first, then;  // by insert1 and findMid; by insert
  const char* state;               // three smallest, the mid-point pair, three largest
};

TEST(Statistics, BurstsKeepTheirEndsAndTheWidestDifference) {
  const bursts_case cases[] = {
      {"widest difference", {500, 600, 1700, 1800}, {}, "500 600 1700 600 1700 600 1700 1800 "},
      {"first of two equal differences", {100, 200, 300}, {}, "100 200 300 100 200 100 200 300 "},
      {"one length is both ends", {700}, {}, "700 1000000000 1000000000 700 700 0 0 700 "},
      {"equal lengths count in the ends", {500, 500, 500}, {}, "500 500 500 500 500 500 500 500 "},
      {"a length inside splits", {500, 1700}, {1000}, "500 1000 1700 1000 1700 500 1000 1700 "},
      {"a far end takes over", {500, 600}, {900}, "500 600 900 600 900 500 600 900 "},
      {"a near end does not", {500, 900}, {1200}, "500 900 1200 500 900 500 900 1200 "},
  };
  for (const auto& c : cases) {
    setBurst set;
    const auto burst = [](float length) { return std::array{length / 2, length / 2}; };
    for (const float length : c.first) set.insert1(burst(length).data());
    set.findMid();
    for (const float length : c.then) set.insert(burst(length).data());
    EXPECT_EQ(state(set), c.state) << c.what;
  }
}

TEST(Statistics, ClearedSetStartsOver) {
  setBurst set;
  const std::string fresh = state(set);
  const float burst[] = {300, 400};
  set.insert1(burst);
  set.findMid();
  set.clear();
  EXPECT_EQ(state(set), fresh);
}

TEST(Bits, ReversalAndParity) {
  EXPECT_EQ(msb(1, 4), 8U);
  EXPECT_EQ(msb(1, 1), 1U);
  EXPECT_EQ(msb(0xF3, 4), 0xCU);
  EXPECT_EQ(parity(0x80000001), 0);
  EXPECT_EQ(parity(7), 1);
}

/// What a signal's constructor takes besides its bursts.
struct Arguments {
  unsigned context[2] = {0, 0};
  std::vector<int> bursts;
  char text[255] = "";
  int number = -1, hex[4] = {};
};

/// The bit buffer and the gap tests over bursts of 500/500 and 1500/500 in turn.
class FrameView : Arguments, public Signal {
 public:
  static constexpr int kBursts = 130;
  FrameView()
      : Arguments{.bursts = list()},
        Signal(context, bursts.data(), 38000, kBursts, 0, text, &number, &number, &number, hex,
               text, text) {
    frame_ = bursts_.get();
    gapBefore_ = 20000;
    framingGap_ = 9000;
    frameFreq_ = 38000;
    threshold_ = 1000;
    cleanup();
  }
  using Signal::appendBit, Signal::cleanup, Signal::decodeX, Signal::decodeX2, Signal::framed,
      Signal::framedLeft, Signal::getLsb, Signal::getMsb, Signal::makeMsb, Signal::threshold_,
      Signal::unmodulated;

 private:
  static std::vector<int> list() {
    std::vector<int> durations;
    for (int i = 0; i < kBursts; ++i) {
      durations.insert(durations.end(), {i % 2 == 0 ? 500 : 1500, 500});
    }
    return durations;
  }
};

TEST(Bits, AreReadInBothOrders) {
  FrameView view;
  view.decodeX(4);  // 0101 by the marks
  EXPECT_EQ(view.getLsb(0, 4), 0b1010U);
  view.threshold_ = 2500;
  view.decodeX2(4);  // none of the bursts is as long
  EXPECT_EQ(view.getLsb(0, 8), 0b1010U);
  view.makeMsb();
  EXPECT_EQ(view.getMsb(0, 8), 0b01010000U);
  EXPECT_EQ(view.getMsb(1, 3), 0b101U);
}

TEST(Bits, BufferIsFilledToItsEndAndNoFurther) {
  FrameView view;
  view.decodeX(128);
  EXPECT_EQ(view.getLsb(96, 32), 0xAAAAAAAAU);
  const std::string text = "nBit\\+nCount <= sizeof\\(cBits\\)\\*8";
  EXPECT_DEATH(view.decodeX(1), "lib/ir/DecodeIR: decodeX: .*" + text);
  EXPECT_DEATH(view.decodeX2(1), "lib/ir/DecodeIR: decodeX2: .*" + text);
  EXPECT_DEATH(view.appendBit(true), "nBit");
  view.cleanup();
  EXPECT_EQ(view.getLsb(0, 32), 0U);
}

TEST(Frame, GapsAndCarrierAreHeldAgainstTheirLimits) {
  const FrameView view;
  EXPECT_TRUE(view.framedLeft(20000));
  EXPECT_FALSE(view.framedLeft(20001));
  EXPECT_TRUE(view.framed(9000));
  EXPECT_FALSE(view.framed(9001));
  EXPECT_TRUE(view.unmodulated(13));  // 13.16 us are half a cycle
  EXPECT_FALSE(view.unmodulated(14));
}

}  // namespace
