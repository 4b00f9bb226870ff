// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/slow_text.h"

namespace {

TEST(Getline, LineEndsAndCuts) {
  using lines = std::vector<std::string>;
  const std::tuple<std::string, size_t, lines> cases[] = {
      {"a\nb", 8, {"a", "b"}},
      {"a\r\nb\n\rc\rd\n", 8, {"a", "b", "c", "d"}},
      {"\n", 8, {}},
      {"a\n\n", 8, {"a"}},
      {"\n\nx", 8, {"", "", "x"}},
      {"\r\n\r\nx", 8, {"", "", "x"}},
      {"\n\r", 8, {""}},
      {"abcdefghij\n", 8, {"abcdefg", "ij"}},
      {"abcdefg\nx\n", 8, {"abcdefg", "x"}},  // the character at the cut is the line end
      {std::string("a\0b\n", 4), 8, {std::string("a\0b", 3)}},
      {"ab\n", 1, {"", "", ""}},
      {"ab\n", 0, {}},
  };
  for (const auto& [text, size, expected] : cases)
    EXPECT_EQ(lines_of(text, size), expected) << text;
}

TEST(Getline, TellsWhatACutLost) {
  const auto lost_of = [](std::string text) {
    FILE* const file = fmemopen(text.data(), text.size(), "r");
    char buf[8];
    int lost = EOF;
    fgetline(file, buf, sizeof buf, &lost);
    std::fclose(file);
    return lost;
  };
  EXPECT_EQ(lost_of("abcdefghi\n"), 'h');
  EXPECT_EQ(lost_of("abcdefg\r\n"), '\r');
  EXPECT_EQ(lost_of("abcdefg"), EOF);
  EXPECT_EQ(lost_of("abcdef\n"), EOF);
}

}  // namespace
