// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/line_input.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "lib/libfile/getline.h"

namespace {

/// Lines, each with whether it was cut.
using lines = std::vector<std::pair<std::string, bool>>;

int file_with(const std::string& text) {
  const int fd = memfd_create("lines", 0);
  EXPECT_EQ(pwrite(fd, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
  return fd;
}

lines lines_of(const std::string& text) {
  line_input input(file_with(text));
  lines found;
  for (line_input::line line; input.next(line);) {
    EXPECT_EQ(line.text.data()[line.text.size()], '\0');
    found.emplace_back(line.text, line.was_cut);
  }
  return found;
}

lines lines_of_fgetline(const std::string& text) {
  FILE* const file = fdopen(file_with(text), "r");
  std::array<char, line_input::kLongestLine + 1> buf;
  lines found;
  int lost = EOF;
  for (ssize_t n = 0; (n = fgetline(file, buf.data(), buf.size(), &lost)) >= 0; lost = EOF) {
    const bool was_cut = lost != EOF && lost != '\n' && lost != '\r';
    found.emplace_back(std::string(buf.data(), static_cast<size_t>(n)), was_cut);
  }
  std::fclose(file);
  return found;
}

TEST(LineInput, ReadsWhatFgetlineReads) {
  constexpr int kTexts = 3000;
  constexpr size_t kMostPieces = 12;
  constexpr size_t kBlock = 4096;
  std::mt19937 random(1);
  const auto piece = [&random]() -> std::string {
    const std::string ends[] = {"\n", "\r", "\r\n", "\n\r", "a", std::string(1, '\0')};
    const size_t lengths[] = {line_input::kLongestLine, kBlock, 2 * kBlock};
    const size_t kind = random() % 8;
    if (kind < std::size(ends)) return ends[kind];
    return std::string(lengths[random() % std::size(lengths)] - 3 + random() % 6, 'x');
  };
  for (int i = 0; i < kTexts; i++) {
    std::string text;
    for (size_t pieces = random() % kMostPieces; pieces > 0; pieces--) text += piece();
    ASSERT_EQ(lines_of(text), lines_of_fgetline(text)) << testing::PrintToString(text);
  }
}

// A pipe whose writer waits for the answer to a line before it goes on.
TEST(LineInput, HandsALineOutWhenItsEndHasCome) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  line_input input(ends[0]);
  const std::pair<const char*, const char*> steps[] = {
      {"a\r", "a"}, {"\nb\n", "b"}, {"c\n", "c"}, {"\rd\r\n\n\r", "d"}, {"x", ""}, {"\n", "x"}};
  for (const auto& [written, read] : steps) {
    ASSERT_GT(write(ends[1], written, std::string_view(written).size()), 0);
    line_input::line line;
    ASSERT_TRUE(input.next(line));
    EXPECT_EQ(line.text, read);
  }
  close(ends[1]);
  line_input::line line;
  EXPECT_FALSE(input.next(line));
}

TEST(LineInput, GivesBackWhatIsUnread) {
  const int fd = file_with("one\r\ntwo\nthree\n");
  line_input input(dup(fd));
  line_input::line line;
  ASSERT_TRUE(input.next(line));
  input.give_back();
  std::array<char, 16> rest{};
  EXPECT_EQ(read(fd, rest.data(), rest.size()), 10);
  EXPECT_STREQ(rest.data(), "two\nthree\n");
  EXPECT_FALSE(input.next(line));
  close(fd);
}

}  // namespace
