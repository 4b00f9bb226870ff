// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/getline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// All lines of a text, read into a buffer of `bufsz` bytes on the heap's edge.
std::vector<std::string> lines_of(std::string text, size_t bufsz) {
  FILE* const file = fmemopen(text.data(), text.size(), "r");
  std::vector<char> buf(bufsz);
  std::vector<std::string> lines;
  for (ssize_t n = 0; (n = fgetline(file, buf.data(), bufsz)) >= 0;) {
    EXPECT_EQ(buf[static_cast<size_t>(n)], '\0');
    lines.emplace_back(buf.data(), static_cast<size_t>(n));
  }
  std::fclose(file);
  return lines;
}

TEST(Getline, LineEndsAndCuts) {
  using lines = std::vector<std::string>;
  const struct {
    std::string text;
    size_t bufsz;
    lines expected;
  } cases[] = {
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
  for (const auto& c : cases) {
    EXPECT_EQ(lines_of(c.text, c.bufsz), c.expected) << testing::PrintToString(c.text);
  }
}

}  // namespace
