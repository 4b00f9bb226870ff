// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/coding.h"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>

#include "companions/clusters.h"
#include "tests/support/contract.h"
#include "tests/support/receiver.h"

namespace {

using namespace companions;

/// "pulse distance 560: L2 0110 G12000 | 01": each section's lead-in entries, bits and gap.
std::string summary(const std::vector<int>& durations) {
  const coding found = find_coding(durations);
  std::ostringstream text;
  text << name_of(found.kind) << ' ' << found.unit_us << ':';
  for (const section& s : found.sections) {
    if (&s != found.sections.data()) text << " |";
    if (s.lead_in > 0) text << " L" << s.lead_in;
    if (!s.bits.empty()) text << ' ' << s.bits;
    if (s.gap_us) text << " G" << *s.gap_us;
  }
  return text.str();
}

/// One letter a duration: L lead-in, 0, 1, b part of bits, s stop mark, G gap, ? odd, . plain.
std::string letters(const std::vector<int>& durations) {
  std::string text;
  for (const role r : find_coding(durations).roles) text += ".L01bsG?"[static_cast<int>(r)];
  return text;
}

TEST(Coding, FollowsTheShapeOfTheSignal) {
  const struct {
    const char *what, *summary, *roles;
    std::vector<int> durations;
  } cases[] = {
      {"pulse distance with a lead-in",
       "pulse distance 560: L2 01010",
       "LL0011001100s",
       {9000, 4500, 600, 520, 590, 1650, 610, 510, 600, 1640, 590, 530, 600}},
      {"pulse width with a lead-in",
       "pulse width 600: L2 10100",
       "LL110011000",
       {2400, 600, 1200, 600, 600, 610, 1190, 600, 610, 600, 590}},
      {"marks and spaces that make up for each other",
       "pulse width 420: 10110",
       "110011110",
       {1260, 420, 420, 1260, 1260, 420, 1260, 420, 420}},
      {"two frames",
       "pulse distance 560: 010 G5200 | 0110",
       "001100sG00111100s",
       {560, 560, 560, 1690, 560, 560, 560, 5200, 560, 560, 560, 1690, 560, 1690, 560, 560, 560}},
      {"a lead-in of two bursts",
       "pulse distance 500: L4 0101",
       "LLLL00110011s",
       {3000, 3000, 3000, 4400, 500, 500, 500, 1500, 500, 500, 500, 1500, 500}},
      {"a short lead-in mark before a longer space",
       "pulse distance 660: L2 001011",
       "LL000011001111s",
       {760, 3030, 660, 4356, 660, 4356, 660, 6864, 660, 4356, 660, 6864, 660, 6864, 660}},
      {"four levels, two bits a symbol",
       "pulse distance 475: L2 0001101100",
       "LLbbbbbbbbbbs",
       {990, 600, 560, 390, 560, 920, 560, 1500, 560, 2250, 560, 390, 560}},
      {"a lone mark behind a gap",
       "pulse distance 560: 0110 G7400 | L1 G20000",
       "00111100sGLG",
       {560, 560, 560, 1680, 560, 1680, 560, 560, 560, 7400, 560, 20000}},
      {"one odd burst",
       "pulse distance 500: 0100010001",
       "00110000??1100000011s",
       {500,  500, 500, 1500, 500, 500, 500, 500, 500,  900, 500,
        1500, 500, 500, 500,  500, 500, 500, 500, 1500, 500}},
      {"bi-phase",
       "bi-phase 889: 1100101 G20000",
       "bbbbbbbbbG",
       {889, 889, 1778, 889, 889, 1778, 1778, 1778, 889, 20000}},
      {"bi-phase with a bit of double width",
       "bi-phase 444: L2 01111011",
       "LLbbbbbbbbbbbbb",
       {2666, 889, 444, 889, 444, 444, 444, 444, 444, 889, 1333, 889, 444, 444, 444}},
      {"nothing", "unknown 0:", "", {}},
      {"a lone mark", "unknown 0:", ".", {500}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(summary(c.durations), c.summary) << c.what;
    EXPECT_EQ(letters(c.durations), c.roles) << c.what;
  }
}

/// Bits of a frame of this protocol, cleanly and through a receiver.
TEST(Coding, ReadsFramesOfManyProtocols) {
  const struct {
    const char* protocol;
    irp::Parameters parameters;
    const char* kind;
    const char* bits;
  } cases[] = {
      {"NEC1", {{"D", 4}, {"F", 8}}, "pulse distance", "00100000110111110001000011101111"},
      {"Sony12", {{"D", 1}, {"F", 18}}, "pulse width", "010010010000"},
      {"Konka", {{"D", 2}, {"F", 7}}, "pulse distance", "0000001000000111"},
      {"JVC", {{"D", 3}, {"F", 23}}, "pulse distance", "1100000011101000"},
      {"RC5", {{"D", 5}, {"F", 12}, {"T", 0}}, "bi-phase", "11000101001100"},
      {"Nokia12", {{"D", 1}, {"F", 12}}, "pulse distance", "000100001100"},  // no level 2
      {"Nokia12", {{"D", 0}, {"F", 20}}, "pulse distance", "000000010100"},  // 0 and 1 only
      {"Xiaomi", {{"D", 0}, {"F", 0}}, "pulse distance", "00000000000000000000"},
      {"RECS80", {{"D", 3}, {"F", 20}, {"T", 1}}, "pulse distance", "11011010100"},
      {"Samsung36",
       {{"D", 7}, {"S", 1}, {"F", 21}, {"E", 2}},
       "pulse distance",
       "111000001000000001001010100001010111"},
  };
  Random random(5);
  for (const auto& c : cases) {
    const std::vector<int> sent = contract::frame(c.protocol, c.parameters);
    for (const auto& heard : {sent, receive(sent, random, fixed_receiver(90, 0.03))}) {
      const coding found = find_coding(heard);
      std::string bits;
      for (const section& s : found.sections) bits += s.bits;
      EXPECT_EQ(name_of(found.kind), c.kind) << c.protocol;
      EXPECT_EQ(bits, c.bits) << c.protocol;
    }
  }
}

TEST(Coding, BytesOfEitherOrder) {
  const auto hex = [](std::string_view bits, bit_order order) {
    std::ostringstream text;
    for (const int byte : bytes_of(bits, order)) text << std::hex << byte << ' ';
    return text.str();
  };
  EXPECT_EQ(hex("1100000010110000010", bit_order::kLsbFirst), "3 d 2 ");
  EXPECT_EQ(hex("1100000010110000010", bit_order::kMsbFirst), "c0 b0 2 ");
  EXPECT_EQ(hex("", bit_order::kLsbFirst), "");
}

TEST(Coding, ClustersPartWhereLengthsDiffer) {
  const auto clusters = find_clusters({600, 1690, 560, 540, 1700, 9000});
  ASSERT_EQ(clusters.size(), 3U);
  EXPECT_EQ(clusters[0].low, 540);
  EXPECT_EQ(clusters[0].high, 600);
  EXPECT_EQ(clusters[0].count, 3U);
  EXPECT_NEAR(clusters[1].mean, 1695, 1);
  EXPECT_NEAR(clusters[1].deviation, 5, 0.1);
}

}  // namespace
