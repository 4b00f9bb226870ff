// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "tests/support/contract.h"

namespace {

TEST(Receiver, KeepsCountOrderAndBias) {
  const std::vector<int> sent = irp::protocol("NEC1").render({{"D", 4}, {"F", 8}}).whole();
  Random random(1), again(1);
  const std::vector<int> seen = receive(sent, random, fixed_receiver(20, 0.02));
  ASSERT_EQ(seen.size(), sent.size());
  constexpr double kWorstEdgesUs = 2 * 0.02 * 564 + 1;
  for (size_t i = 0; i < sent.size(); ++i) {
    const int bias = i % 2 == 0 ? 20 : -20;
    EXPECT_LE(std::abs(seen[i] - sent[i] - bias), kWorstEdgesUs) << i;
  }
  EXPECT_EQ(seen, receive(sent, again, fixed_receiver(20, 0.02)));
  EXPECT_NE(seen, receive(sent, again, fixed_receiver(20, 0.02)));
}

TEST(Receiver, BadOnesSpreadWithEachDuration) {
  constexpr int kLongUs = 4000, kShortUs = 600, kSignals = 400;
  const BadReceiver noisy = {
      .bias_us = {20, 20}, .jitter = {0.06, 0.06}, .first_mark = {0.10, 0.10}, .clock = 0};
  Random random(1);
  double long_square = 0, short_square = 0;
  int space_lost = 0;
  for (int i = 0; i < kSignals; ++i) {
    const std::vector<int> seen =
        receive({kLongUs, kLongUs, kShortUs, kLongUs, kShortUs}, random, noisy);
    EXPECT_NEAR(seen[0], 1.10 * (kLongUs + 20), 600);
    if (seen[1] < kLongUs - 200) ++space_lost;
    long_square += std::pow(seen[3] - (kLongUs - 20), 2) / kSignals;
    short_square += std::pow(seen[4] - (kShortUs + 20), 2) / kSignals;
  }
  EXPECT_NEAR(std::sqrt(long_square), 0.03 * kLongUs, 10);
  EXPECT_NEAR(std::sqrt(short_square), 0.03 * kShortUs, 2);
  EXPECT_NEAR(space_lost, kSignals / 2, kSignals / 8);

  for (const int us : receive(std::vector<int>(99, 60), random, kHard)) {
    EXPECT_TRUE(us == 40 || us % 50 == 0) << us;
  }
}

TEST(Receiver, PutsAStrayMarkOnEitherSide) {
  const std::vector<int> frame = {900, 800, 700};
  Random random(1);
  const std::vector<int> before = with_stray_mark(frame, random, Side::kBefore, 6000);
  const std::vector<int> after = with_stray_mark(frame, random, Side::kAfter, 6000);
  EXPECT_TRUE(before[0] >= 40 && before[0] <= 120) << before[0];
  EXPECT_EQ(before, (std::vector<int>{before[0], 6000, 900, 800, 700}));
  EXPECT_EQ(after, (std::vector<int>{900, 800, 700, 6000, after[4]}));
}

TEST(Contract, AsksForWhatTheTableSays) {
  for (const std::string& name : contract::protocols()) {
    const auto samples = contract::samples(name, 3);
    EXPECT_FALSE(samples.empty()) << name;
    for (const contract::Sample& sample : samples) {
      const auto bursts = static_cast<size_t>(sample.singleCount + sample.repeatCount);
      EXPECT_EQ((sample.durations.size() + 1) / 2, bursts) << contract::describe(sample);
    }
  }
}

TEST(Contract, TellsRightFromWrong) {
  const auto& nec = irp::protocol("NEC1");
  const auto expected = contract::expected(nec, nec.complete({{"D", 4}, {"F", 8}}), "1", false);
  ASSERT_TRUE(expected);
  EXPECT_EQ(contract::mismatch(*expected, {"NEC1", 4, -1, 8, 0xEF}), "");
  EXPECT_EQ(contract::mismatch(*expected, {"NEC", 4, -1, 8}), "");
  EXPECT_NE(contract::mismatch(*expected, {"NECx1", 4, -1, 8}), "");
  EXPECT_NE(contract::mismatch(*expected, {"NEC1", 5, -1, 8}), "");
  EXPECT_NE(contract::mismatch(*expected, {"NEC1", 4, 251, 8}), "");
  EXPECT_NE(contract::mismatch(*expected, {"NEC1", 4, -1, 9}), "");
  EXPECT_NE(contract::mismatch(*expected, {"NEC1", 4, -1, 8, 0x10}), "");
}

}  // namespace
