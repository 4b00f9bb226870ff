// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

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
