// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/getline.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

namespace {

/// A text that comes byte by byte, with a signal before each.
struct slow_text {
  std::string text;
  size_t at = 0;
  bool interrupted = false;

  static ssize_t read(void* cookie, char* buf, size_t /*size*/) {
    auto& self = *static_cast<slow_text*>(cookie);
    self.interrupted = !self.interrupted;
    if (self.interrupted) {
      errno = EINTR;
      return -1;
    }
    if (self.at == self.text.size()) return 0;
    *buf = self.text[self.at++];
    return 1;
  }
};

/// All lines of a text, read into a buffer of `bufsz` bytes on the heap's edge.
std::vector<std::string> lines_of(const std::string& text, size_t bufsz) {
  slow_text source{text};
  FILE* const file = fopencookie(&source, "r", {slow_text::read, nullptr, nullptr, nullptr});
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
