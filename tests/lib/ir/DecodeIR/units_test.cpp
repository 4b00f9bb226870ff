// SPDX-License-Identifier: GPL-3.0-or-later
// Durations in whole units, and the levels and pulses that are read from them.
#include "lib/ir/DecodeIR/readers/units.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/ir/DecodeIR/readers/levels.h"
#include "lib/ir/DecodeIR/readers/pulse_width.h"

namespace {

using namespace analysis;

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

TEST(Slicer, ForgivesOneDamagedEndAndNothingElse) {
  struct {
    const char* what;
    size_t index;
    float added;
    bool accepted, first_damaged, last_damaged;
  } const cases[] = {
      {"long lead-in mark", 0, 300, true, true, false},
      {"cut last mark", 10, -250, true, false, true},
      {"stretched last mark", 10, 220, true, false, true},
      {"damaged space inside", 3, 200, false, false, false},
      {"damaged mark inside", 4, -200, false, false, false},
      {"a long space inside", 5, 9000, false, false, false},
  };
  for (const auto& c : cases) {
    auto durations = received(kFrame, 50);
    durations[c.index] += c.added;
    slicer frame;
    EXPECT_EQ(slice(frame, durations), c.accepted) << c.what;
    if (!c.accepted) continue;
    EXPECT_EQ(frame.first_damaged(), c.first_damaged) << c.what;
    EXPECT_EQ(frame.last_damaged(), c.last_damaged) << c.what;
    EXPECT_EQ(frame.units(5), 1) << c.what;
  }
  auto durations = received(kFrame, 50);
  durations.front() += 300;
  durations.back() -= 250;
  slicer frame;
  EXPECT_FALSE(slice(frame, durations)) << "both ends damaged";
}

TEST(Slicer, PutsALateFirstEdgeBack) {
  slice_rule lead = kRule;
  lead.lead = 6;
  lead.lead_space = 2;
  struct {
    float late, longer;  // µs
    bool accepted;
  } const cases[] = {
      {120, 0, true}, {260, 0, true},   {-260, 0, true}, {-360, 0, false},
      {500, 0, true}, {260, 400, true},  // the space paid for all of it, or for a part
      {0, 800, true}, {0, 1000, false}};
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

/// Bits as one text, in the order they were sent.
std::string sent(const bit_buffer& bits) {
  std::string text;
  for (int i = 0; i < bits.size(); ++i) text += bits.getBit(i) != 0 ? '1' : '0';
  return text;
}

TEST(LevelReader, ReadsBitsInBothPolaritiesAndOverTheEnd) {
  // lead-in, then 1 0 0 1 0 as (mark, space) = 1; the last half bit lies in the gap
  slicer frame;
  ASSERT_TRUE(slice(frame, received({6, 2, 1, 2, 1, 1, 2, 2, 1}, 0)));
  for (const auto coding : {bi_phase::mark_first_is_one, bi_phase::space_first_is_one}) {
    level_reader reader(frame, 2);
    bit_buffer bits;
    ASSERT_TRUE(reader.bits(5, coding, &bits));
    EXPECT_EQ(sent(bits), coding == bi_phase::mark_first_is_one ? "10010" : "01101");
    EXPECT_TRUE(reader.at_end());
    EXPECT_FALSE(reader.bits(1, coding, &bits)) << "nothing but space is left";

    level_reader rest(frame, 2);
    EXPECT_FALSE(rest.rest(4, coding, &bits)) << "a bit too many";
    level_reader all(frame, 2);
    EXPECT_TRUE(all.rest(5, coding, &bits));
  }
}

TEST(LevelReader, ReadsWideBitsAndRefusesAMissingEdge) {
  slicer frame;
  ASSERT_TRUE(slice(frame, received({6, 2, 1, 1, 2, 3, 1, 1, 1}, 0)));
  bit_buffer bits;
  level_reader wide(frame, 2);
  EXPECT_TRUE(wide.bits(1, bi_phase::mark_first_is_one, &bits));
  EXPECT_TRUE(wide.bits(1, bi_phase::mark_first_is_one, &bits, 2));
  EXPECT_TRUE(wide.bits(2, bi_phase::mark_first_is_one, &bits));
  EXPECT_EQ(sent(bits), "1100");
  EXPECT_TRUE(wide.at_end());

  level_reader plain(frame, 2);
  EXPECT_FALSE(plain.bits(3, bi_phase::mark_first_is_one, &bits));
}

TEST(LevelReader, ReadsRawLevels) {
  slicer frame;
  ASSERT_TRUE(slice(frame, received({3, 1, 1, 2, 1}, 30)));
  bit_buffer bits = frame.bits();
  bits.decodeRaw(8);
  EXPECT_EQ(sent(bits), "11101001");
  EXPECT_TRUE(bits.at_end());
}

TEST(FourPhase, TakesSymbolsOfTwoBits) {
  constexpr four_phase kCode{3, {0b001, 0b010, 0b100, 0b011}};
  bit_buffer raw;
  for (const char level : std::string("1100001110")) raw.append(level == '1');
  bit_buffer bits;
  EXPECT_TRUE(read_phases(raw, 1, 3, kCode, &bits)) << "100 001 110";
  EXPECT_EQ(sent(bits), "001011");
  EXPECT_FALSE(read_phases(raw, 0, 2, kCode, &bits)) << "110 000";
}

TEST(PulseWidth, ReadsPairsAndRefusesOthers) {
  constexpr pulse_pair kPair{.zero_mark = 1, .zero_space = 2, .one_mark = 2, .one_space = 1};
  struct {
    std::vector<int> units;
    const char* bits;  // none: refused
  } const cases[] = {{{1, 2, 2, 1, 2, 1, 1}, "0110"},
                     {{1, 2, 2, 1, 2, 2, 1}, nullptr},
                     {{1, 2, 2, 1, 3, 1, 1}, nullptr}};
  for (const auto& c : cases) {
    slicer frame;
    ASSERT_TRUE(slice(frame, received(c.units, 20)));
    bit_buffer bits;
    EXPECT_EQ(read_pairs(frame, 0, 4, kPair, &bits), c.bits != nullptr);
    if (c.bits != nullptr) {
      EXPECT_EQ(sent(bits), c.bits);
    }
  }
}

TEST(Receiver, DoesNotMakeALeadInOfAMinuteOfLight) {
  EXPECT_TRUE(receiver::first_mark_is_plausible(9000, 9000));
  EXPECT_FALSE(receiver::first_mark_is_plausible(9000 + 42'949'672, 9000))
      << "2^32 hundredths more";
}

}  // namespace
