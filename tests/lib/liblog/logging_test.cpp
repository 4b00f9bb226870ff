// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/liblog/logging.h"

#include <gtest/gtest.h>

#include "tests/support/capture.h"

namespace {

class Logging : public testing::Test {
 protected:
  void TearDown() override { set_loglevel(1); }

  static std::string at_all_levels() {
    const printed text = capture([] {
      for (const int level : {-1, 0, 1, 2, 3, 4}) _log(level, "%d;", level);
    });
    EXPECT_EQ(text.out, "");
    return text.err;
  }
};

TEST_F(Logging, ShowsErrorsAtFirst) {
  EXPECT_EQ(get_loglevel(), 1);
  EXPECT_EQ(at_all_levels(), "1;");
}

TEST_F(Logging, TheLevelIsClampedAboveOnly) {
  const struct {
    int level, stored;
    const char* shown;
  } cases[] = {{2, 2, "1;2;"}, {5, 3, "1;2;3;"}, {0, 0, ""}, {-7, -7, ""}};
  for (const auto& c : cases) {
    set_loglevel(c.level);
    EXPECT_EQ(get_loglevel(), c.stored);
    EXPECT_EQ(at_all_levels(), c.shown) << c.level;
  }
}

}  // namespace
