// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/pronto/pronto.h"

#include <gtest/gtest.h>

namespace {

using words = std::vector<uint16_t>;

TEST(Pronto, ReadsWords) {
  EXPECT_EQ(pronto::words_of(" 0000,006d  156, 0x1F 12345 -1 x\t \t "),
            (words{0, 0x6D, 0x156, 0x1F, 0x2345, 0xFFFF, 0, 0}));
}

TEST(Pronto, KnowsTheCarrier) {
  const std::tuple<uint16_t, uint32_t, uint32_t> cases[] = {
      {0, 0, 0}, {2, 0, 2072573}, {3, 1, 1381715}, {0x6D, 26, 38029}, {0x73, 28, 36045}};
  for (const auto& [word, period, hz] : cases) {
    EXPECT_EQ(pronto::period_us(word), period) << word;
    EXPECT_EQ(pronto::frequency_hz(word), hz) << word;
  }
}

TEST(Pronto, TakesBothSequencesApart) {
  const words all = {0x100, 0x6D, 1, 2, 10, 11, 20, 21, 22, 0xFFFF};
  pronto::code code;
  ASSERT_EQ(pronto::parse_code(all, &code), pronto::result::kGood);
  EXPECT_EQ(code.frequency, 0x6D);
  EXPECT_EQ(words(code.once.frame.begin(), code.once.frame.end()), words{10});
  EXPECT_EQ(code.once.gap, 11);
  EXPECT_EQ(code.once.size(), 2U);
  EXPECT_EQ(words(code.repeat.frame.begin(), code.repeat.frame.end()), (words{20, 21, 22}));
  EXPECT_EQ(code.repeat.gap_ms(pronto::period_us(0xFFFF)), 1036108U);

  const words nothing = {0, 0x6D, 0, 0};
  ASSERT_EQ(pronto::parse_code(nothing, &code), pronto::result::kGood);
  EXPECT_EQ(code.once.size() + code.repeat.size(), 0U);
}

TEST(Pronto, RefusesOtherFormatsAndSizes) {
  using enum pronto::result;
  const std::pair<words, pronto::result> cases[] = {
      {{}, kWrongSize},
      {{0, 0x6D, 0}, kWrongSize},
      {{0, 0x6D, 1, 0, 1}, kWrongSize},
      {{0, 0x6D, 1, 0, 1, 2, 3}, kWrongSize},
      {{0, 0x6D, 0xFFFF, 0xFFFF}, kWrongSize},
      {{1}, kForeign},
      {{0x5000, 0x6D, 1, 0, 1, 2}, kForeign},
  };
  for (const auto& [all, expected] : cases) {
    pronto::code code;
    EXPECT_EQ(pronto::parse_code(all, &code), expected) << testing::PrintToString(all);
  }
}

}  // namespace
