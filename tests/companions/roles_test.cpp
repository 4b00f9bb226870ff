// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/roles.h"

#include <gtest/gtest.h>

namespace {

using namespace companions;

/// One letter a duration: L lead-in, 0, 1, G gap, ? odd, . plain.
std::string letters(const std::vector<role>& roles) {
  std::string text;
  for (const role r : roles) text += ".L01G?"[static_cast<int>(r)];
  return text;
}

TEST(Roles, FollowTheShapeOfThePattern) {
  const auto expect = [](const char* what, const char* roles, const char* bits,
                         const std::vector<int>& durations) {
    const shape found = find_shape(durations);
    EXPECT_EQ(letters(found.roles), roles) << what;
    EXPECT_EQ(found.bits, bits) << what;
  };
  expect("pulse distance with a lead-in", "LL0011001100.", " 01010 ",
         {9000, 4500, 600, 520, 590, 1650, 610, 510, 600, 1640, 590, 530, 600});
  expect("pulse width with a lead-in", "LL110011000", " 10100",
         {2400, 600, 1200, 600, 600, 610, 1190, 600, 610, 600, 590});
  expect("a gap between two frames", "001100.G0011.", "010 01 ",
         {560, 560, 560, 1690, 560, 560, 560, 12000, 560, 560, 560, 1690, 560});
  expect("one odd burst", "001100??1100.", "010 10 ",
         {500, 500, 500, 1500, 500, 500, 500, 2900, 500, 1500, 500, 500, 500});
  expect("bi-phase stays plain", ".........", "     ",
         {889, 889, 1778, 889, 889, 1778, 889, 889, 889});
  expect("nothing", "", "", {});
  expect("a lone mark", ".", " ", {500});
}

TEST(Roles, ClustersPartWhereLengthsDiffer) {
  const auto clusters = find_clusters({600, 1690, 560, 540, 1700, 9000});
  ASSERT_EQ(clusters.size(), 3U);
  EXPECT_EQ(clusters[0].low, 540);
  EXPECT_EQ(clusters[0].high, 600);
  EXPECT_EQ(clusters[0].count, 3U);
  EXPECT_NEAR(clusters[1].mean, 1695, 1);
}

}  // namespace
