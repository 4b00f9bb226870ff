// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/statistics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/ir/DecodeIR/frame.h"

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
      {"an end as far does not", {500, 900}, {100}, "100 500 900 500 900 100 500 900 "},
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

TEST(Statistics, AFullSetKeepsItsLengths) {
  setBurst set;
  for (int i = 1; i <= setBurst::kMostLengths; ++i) {
    const float burst[] = {0, 10.0F * static_cast<float>(i)};
    set.insert1(burst);
  }
  const float beyond[] = {0, 5000};
  set.insert1(beyond);
  set.findMid();
  EXPECT_EQ(state(set), "10 20 30 10 20 990 1000 5000 ");
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

TEST(Frame, GapsAndCarrierAreHeldAgainstTheirLimits) {
  const std::vector<float> bursts = {500, 500, 1500, 9000};
  analysis::frame seen(bursts, 38000);
  EXPECT_EQ(seen.total_us, 2500);
  EXPECT_EQ(seen.largest_us, 1500);
  EXPECT_TRUE(seen.framed(9000));
  EXPECT_FALSE(seen.framed(9001));
  seen.gap_before = 20000;
  EXPECT_TRUE(seen.framedLeft(20000));
  EXPECT_FALSE(seen.framedLeft(20001));
  EXPECT_TRUE(seen.unmodulated(13));  // 13.16 us are half a cycle
  EXPECT_FALSE(seen.unmodulated(14));
}

TEST(Frame, ALeadInIsABurstInLimitsWithEnoughBehindIt) {
  const std::vector<float> bursts = {9000, 4500, 600, 600, 600, 20000};
  const analysis::frame seen(bursts);  // 15300 us
  const struct {
    float min_total, max_total, max_on, min_off, extra;
    bool fits;
  } cases[] = {{13000, 14000, 9500, 4000, 1800, true},  {13600, 14000, 9500, 4000, 1800, false},
               {13000, 13400, 9500, 4000, 1800, false}, {13000, 14000, 8900, 4000, 1800, false},
               {13000, 14000, 9500, 4600, 1800, false}, {13000, 14000, 9500, 4000, 1900, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(seen.lead_in(c.min_total, c.max_total, c.max_on, c.min_off, c.extra), c.fits);
  }
}

}  // namespace
