// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/slicer.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

constexpr slice_rule kRule{.unit_us = 444, .longest = 6};

/// The durations of these units as a receiver delivers them.
std::vector<float> received(const std::vector<int>& units, float bias, float clock = 1.0F) {
  std::vector<float> durations;
  for (size_t i = 0; i < units.size(); ++i) {
    const float us = static_cast<float>(units[i]) * kRule.unit_us * clock;
    durations.push_back(i % 2 == 0 ? us + bias : us - bias);
  }
  return durations;
}

bool slice(slicer& frame, const std::vector<float>& durations, const slice_rule& rule = kRule) {
  return frame.slice(durations.data(), static_cast<int>(durations.size()), rule);
}

std::vector<int> units(const slicer& frame) {
  std::vector<int> found(static_cast<size_t>(frame.count()));
  for (int i = 0; i < frame.count(); ++i) found[static_cast<size_t>(i)] = frame.units(i);
  return found;
}

const std::vector<int> kFrame = {6, 2, 1, 1, 2, 1, 1, 2, 1, 1, 1};

TEST(Slicer, FindsUnitsWhateverTheReceiverAddsToThem) {
  for (const float bias : {-120.0F, -40.0F, 0.0F, 60.0F, 120.0F}) {
    for (const float clock : {0.98F, 1.0F, 1.02F}) {
      slicer frame;
      ASSERT_TRUE(slice(frame, received(kFrame, bias, clock))) << bias << ' ' << clock;
      EXPECT_EQ(units(frame), kFrame);
      EXPECT_NEAR(frame.bias(), bias, 2.0F);
      EXPECT_NEAR(frame.scale(), clock, 0.01F);
    }
  }
}

TEST(Slicer, ForgivesOneOddEndAndNothingElse) {
  struct {
    const char* what;
    size_t index;
    float added;
    bool accepted, firstOdd, lastOdd;
  } const cases[] = {
      {"long lead-in mark", 0, 300, true, true, false},
      {"cut last mark", 10, -250, true, false, true},
      {"stretched last mark", 10, 220, true, false, true},
      {"odd space inside", 3, 200, false, false, false},
      {"odd mark inside", 4, -200, false, false, false},
      {"a long space inside", 5, 9000, false, false, false},
  };
  for (const auto& c : cases) {
    auto durations = received(kFrame, 50);
    durations[c.index] += c.added;
    slicer frame;
    EXPECT_EQ(slice(frame, durations), c.accepted) << c.what;
    if (!c.accepted) continue;
    EXPECT_EQ(frame.firstIsOdd(), c.firstOdd) << c.what;
    EXPECT_EQ(frame.lastIsOdd(), c.lastOdd) << c.what;
    EXPECT_EQ(frame.units(5), 1) << c.what;
  }
  auto durations = received(kFrame, 50);
  durations.front() += 300;
  durations.back() -= 250;
  slicer frame;
  EXPECT_FALSE(slice(frame, durations)) << "both ends odd";
}

TEST(Slicer, PutsALateFirstEdgeBack) {
  slice_rule lead = kRule;
  lead.lead = 6;
  lead.lead_space = 2;
  struct {
    float late, longer;  // µs
    bool accepted;
  } const cases[] = {
      {120, 0, true}, {260, 0, true}, {-260, 0, false}, {500, 0, false}, {260, 400, false}};
  for (const auto& c : cases) {
    auto durations = received(kFrame, 50);
    durations[0] += c.late + c.longer;
    durations[1] -= c.late;
    slicer frame;
    EXPECT_EQ(slice(frame, durations, lead), c.accepted) << c.late;
    if (!c.accepted) continue;
    EXPECT_EQ(units(frame), kFrame) << c.late;
  }
  slicer frame;
  EXPECT_FALSE(slice(frame, received({5, 3, 1, 1, 2, 1, 1, 2, 1, 1, 1}, 50), lead));
}

TEST(Slicer, RefusesAnotherUnit) {
  slicer frame;
  EXPECT_FALSE(slice(frame, received(kFrame, 0, 1.3F)));
  EXPECT_FALSE(slice(frame, received({1, 1}, 0)));
  EXPECT_FALSE(slice(frame, std::vector<float>(201, 444.0F)));
}

TEST(LevelReader, ReadsBitsInBothPolaritiesAndOverTheEnd) {
  // lead-in, then 1 0 0 1 0 as (mark, space) = 1; the last half bit lies in the gap
  slicer frame;
  ASSERT_TRUE(slice(frame, received({6, 2, 1, 2, 1, 1, 2, 2, 1}, 0)));
  for (const auto coding : {bi_phase::mark_first_is_one, bi_phase::space_first_is_one}) {
    level_reader reader(frame);
    EXPECT_TRUE(reader.mark(6));
    EXPECT_TRUE(reader.space(2));
    uint64_t value = 0;
    ASSERT_TRUE(reader.bits(5, coding, &value));
    EXPECT_EQ(value, coding == bi_phase::mark_first_is_one ? 0b10010U : 0b01101U);
    EXPECT_TRUE(reader.atEnd());
    EXPECT_FALSE(reader.bits(1, coding, &value)) << "nothing but space is left";
  }
}

TEST(LevelReader, ReadsWideBitsAndRefusesAMissingEdge) {
  slicer frame;
  ASSERT_TRUE(slice(frame, received({6, 2, 1, 1, 2, 3, 1, 1, 1}, 0)));
  uint64_t value = 0;
  level_reader wide(frame, 2);
  EXPECT_TRUE(wide.bits(1, bi_phase::mark_first_is_one, &value));
  EXPECT_TRUE(wide.bits(1, bi_phase::mark_first_is_one, &value, 2));
  EXPECT_EQ(value, 1U);
  EXPECT_TRUE(wide.bits(2, bi_phase::mark_first_is_one, &value));
  EXPECT_EQ(value, 0U);
  EXPECT_TRUE(wide.atEnd());

  level_reader plain(frame, 2);
  EXPECT_FALSE(plain.bits(3, bi_phase::mark_first_is_one, &value));
}

TEST(LevelReader, ReadsRawLevels) {
  slicer frame;
  ASSERT_TRUE(slice(frame, received({3, 1, 1, 2, 1}, 30)));
  level_reader reader(frame);
  uint64_t value = 0;
  reader.levels(8, &value);
  EXPECT_EQ(value, 0b11101001U);
  EXPECT_TRUE(reader.atEnd());
}

}  // namespace
