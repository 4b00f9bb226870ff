// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libtime/timelib.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "lib/libutil/util.h"
#include "tests/support/capture.h"

namespace {

TEST(Timelib, ElapsedTimeCountsMicroseconds) {
  timeval start{};
  gettimeofday(&start, nullptr);
  start.tv_sec -= 3;
  const uint64_t elapsed = time_elapsed_us(&start);
  EXPECT_GE(elapsed, 3000000U);
  EXPECT_EQ(time_has_elapsed_us(&start, elapsed), 1);
  EXPECT_EQ(time_has_elapsed_us(&start, elapsed + 3600000000U), 0);
}

TEST(Timelib, TheStampHoldsMinutesAndSeconds) {
  const time_t before = std::time(nullptr);
  const float stamp = get_tstamp();
  const tm local = *std::localtime(&before);
  const auto earliest = static_cast<float>(local.tm_min * 100 + local.tm_sec);
  EXPECT_TRUE(stamp >= earliest && stamp < earliest + 42) << stamp << ' ' << earliest;
}

TEST(Timelib, DatesAreLocalText) {
  setenv("TZ", "UTC0", 1);
  tzset();
  char date[30] = "untouched";
  EXPECT_EQ(capture([&] { epoch_to_date(0, date, 29); }).err,
            "[E] lib/libtime/timelib epoch_to_date(#): date string not large enough\n");
  EXPECT_STREQ(date, "untouched");
  EXPECT_EQ(capture([&] { epoch_to_date(0, nullptr, 30); }).err,
            "[E] lib/libtime/timelib epoch_to_date(#): pointer to string invalid\n");
  const std::pair<uint32_t, const char*> cases[] = {
      {0, "Jan 01 00:00 1970"},
      {1700000000, "Nov 14 22:13 2023"},
      {0x80000000, "Jan 00 00:00 1900"},  // negative as printed, so it does not parse
  };
  for (const auto& [seconds, text] : cases) {
    epoch_to_date(seconds, date, sizeof date);
    EXPECT_STREQ(date, text);
  }
}

TEST(Util, PrintingCutsAndEndsWithAZero) {
  char text[6] = "xxxxx";
  ssprintf(text, 5, "%s", "abcdefg");
  EXPECT_STREQ(text, "abcd");
  ssprintf(text, 5, "%d", 7);
  EXPECT_STREQ(text, "7");
  EXPECT_EQ(text[4], '\0');
  ssprintf(text, 0, "%d", 8);
  EXPECT_STREQ(text, "7");
}

}  // namespace
