// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/contract.h"

namespace {

TEST(Irp, RendersTheNotation) {
  const struct {
    const char* what;
    const char* definition;
    irp::Parameters parameters;
    const char* durations;
  } kCases[] = {
      {"bits, least significant first, extent",
       "{38k,500}<1,-1|1,-3>(4,-2,D:2,1,^10m)[D:0..3]",
       {{"D", 1}},
       "2000,1000,500,1500,500,500,500,3500"},
      {"most significant first",
       "{38k,500,msb}<1,-1|1,-3>(D:2,1)[D:0..3]",
       {{"D", 1}},
       "500,500,500,1500,500"},
      {"neighbours merge, leading silence drops",
       "{36k,msb,889}<1,-1|-1,1>(D:3,-4)[D:0..7]",
       {{"D", 4}},
       "1778,889,889,4445"},
      {"two bits per symbol",
       "{0k,100,msb}<1,-1|1,-2|2,-1|2,-2>(D:4,1)[D:0..15]",
       {{"D", 6}},
       "100,200,200,100,100"},
      {"a symbol made of symbols",
       "{40k,520,msb}<1,-10|1,-1,1,-8>(<1:2|2:2>(F:2))[F:0..3]",
       {{"F", 1}},
       "520,5200,520,520,520,4160,520,520,520,4160,520,5200"},
      {"complement, reversal, chop",
       "{0k,1,msb}<1,-1|1,-3>(~D:2,D:-2,D:2:1,1)[D:0..7]",
       {{"D", 1}},
       "1,3,1,1,1,3,1,1,1,1,1,1,1"},
      {"suffixes and rounding", "{36k,1p}<1|-1>(1,-10.4u,2m,-1.5p)[]", {}, "28,10,2000,42"},
      {"presets and definitions",
       "{0k,1}<1,-1|1,-3>(S:2,C:1,1){C=#S%2}[D:0..3,S:0..3=3-D]",
       {{"D", 2}},
       "1,3,1,1,1,3,1"},
      {"passes, toggles, variations",
       "{0k,1}<1,-1|1,-3>(([5][7],-2,T:1,1,-9)+,T=1-T)[T@:0..1=0]",
       {},
       "5,2,1,1,1,9,7,2,1,1,1,9"},
  };
  for (const auto& test : kCases) {
    const irp::Protocol protocol(test.what, test.definition);
    EXPECT_EQ(irp::csv(protocol.render(test.parameters).whole()), test.durations) << test.what;
  }
}

TEST(Irp, RefusesWhatItCannotRender) {
  const irp::Protocol two_bits("two bits", "{38k,500}<1,-1|1,-3>(D:2,^9m)[D:0..3]");
  EXPECT_THROW(two_bits.render({}), irp::Error);
  EXPECT_THROW(two_bits.render({{"D", 4}}), irp::Error);
  EXPECT_THROW(two_bits.render({{"D", 0}, {"F", 0}}), irp::Error);
  EXPECT_THROW(irp::Protocol("longer than its extent", "{38k,500}<1|-1>(20,^9m)").render({}),
               irp::Error);
  EXPECT_THROW(irp::Protocol("unbalanced", "{38k,500}<1|-1>(20"), irp::Error);
  EXPECT_THROW(irp::protocol("none"), irp::Error);
}

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
