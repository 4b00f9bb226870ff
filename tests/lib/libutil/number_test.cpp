// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/number.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

TEST(Number, IsWhatStrtollReads) {
  const char* pieces[] = {
      "", " ", "\t", "+", "-", "0", "0x", "7", "f", "12345678901234567", "9223372036854775807",
      "g"};
  for (const char* a : pieces) {
    for (const char* b : pieces) {
      for (const char* c : pieces) {
        for (const int base : {10, 16}) {
          const std::string text = std::string(a) + b + c;
          char* stop = nullptr;
          const int64_t value = std::strtoll(text.c_str(), &stop, base);
          std::string_view rest = text;
          EXPECT_EQ(number::take(rest, base), value) << text;
          EXPECT_EQ(rest, stop) << text;
        }
      }
    }
  }
}

TEST(Number, EndsWithItsText) {
  std::string_view text = std::string_view("12345").substr(0, 2);
  EXPECT_EQ(number::take(text), 12);
  text = std::string_view(" \t-7").substr(0, 3);
  EXPECT_EQ(number::take(text), 0);
  EXPECT_EQ(text, " \t-");
  text = std::string_view("0x1").substr(0, 2);
  EXPECT_EQ(number::take(text, 16), 0);
  EXPECT_EQ(text, "x");
}

TEST(Number, IsWholeOrNone) {
  for (const char* text : {"", " ", "+", "1 ", "1x", "+1-2", "0x1"}) {
    EXPECT_FALSE(number::whole(text)) << text;
  }
  EXPECT_EQ(number::whole("\t+12"), 12);
  EXPECT_EQ(number::whole("-0x1f", 16), -31);
}

TEST(Number, SplitsAtRunsOfSeparators) {
  using pieces = std::vector<std::string_view>;
  EXPECT_EQ(number::split("", " ,"), pieces{});
  EXPECT_EQ(number::split(" ,", " ,"), pieces{});
  EXPECT_EQ(number::split(", a\tb,,c ", " ,"), (pieces{"a\tb", "c"}));
}

}  // namespace
