// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libtime/timelib.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "lib/libutil/util.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"

namespace {

/// In a zone of its own, with a clock that a test may stop.
class Timelib : public testing::Test {
 protected:
  void SetUp() override { live_in("UTC0"); }
  void TearDown() override {
    stop_clock_at(nullptr);
    unsetenv("TZ");
    tzset();
  }
  static void live_in(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
  }
};

constexpr const char* kHalfHourZone = "TST-5:30";
constexpr timeval kNow = {12 * 3600 + 34 * 60 + 56, 250000};

TEST_F(Timelib, ElapsedTimeCountsMicroseconds) {
  stop_clock_at(&kNow);
  const std::pair<timeval, uint64_t> cases[] = {
      {{kNow.tv_sec, 250000}, 0},
      {{kNow.tv_sec, 249999}, 1},
      {{kNow.tv_sec - 3, 750000}, 2500000},
      {{kNow.tv_sec, 250001}, UINT64_MAX},  // a start that is yet to come
  };
  for (const auto& [start, elapsed] : cases) EXPECT_EQ(time_elapsed_us(&start), elapsed);
  const timeval start = {kNow.tv_sec - 3, 750000};
  EXPECT_EQ(time_has_elapsed_us(&start, 2500000), 1);
  EXPECT_EQ(time_has_elapsed_us(&start, 2500001), 0);
}

TEST_F(Timelib, TheStampHoldsLocalMinutesAndSeconds) {
  stop_clock_at(&kNow);
  EXPECT_EQ(get_tstamp(), 3456.25F);
  live_in(kHalfHourZone);
  EXPECT_EQ(get_tstamp(), 456.25F);
}

TEST_F(Timelib, DatesAreLocalText) {
  char date[30] = "untouched";
  EXPECT_EQ(capture([&] { epoch_to_date(0, date, 29); }).err,
            "[E] lib/libtime/timelib epoch_to_date(#): date string not large enough\n");
  EXPECT_STREQ(date, "untouched");
  EXPECT_EQ(capture([&] { epoch_to_date(0, nullptr, 30); }).err,
            "[E] lib/libtime/timelib epoch_to_date(#): pointer to string invalid\n");
  const std::pair<uint32_t, const char*> cases[] = {
      {0, "Jan 01 00:00 1970"},
      {1700000000, "Nov 14 22:13 2023"},
      {0x7FFFFFFF, "Jan 19 03:14 2038"},
      {0x80000000, "Jan 00 00:00 1900"},  // negative as printed, so it does not parse
  };
  for (const auto& [seconds, text] : cases) {
    epoch_to_date(seconds, date, sizeof date);
    EXPECT_STREQ(date, text);
  }
  live_in(kHalfHourZone);
  epoch_to_date(0, date, sizeof date);
  EXPECT_STREQ(date, "Jan 01 05:30 1970");
}

TEST(Util, PrintingCutsAndEndsWithAZero) {
  char text[6] = "xxxxx";
  ssprintf(text, 5, "%d", 7);
  EXPECT_STREQ(text, "7");
  EXPECT_EQ(text[4], '\0') << "the last byte, whatever was printed";
  ssprintf(text, 5, "%s", "abcdefg");
  EXPECT_STREQ(text, "abcd");
  ssprintf(text, 0, "%d", 8);
  EXPECT_STREQ(text, "abcd");
}

}  // namespace
