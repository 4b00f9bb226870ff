// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "lib/ir/ir_hash.h"

namespace {

constexpr uint16_t kMaxEdgeUs = 2400;

uint32_t djb2(std::string_view letters) {
  uint32_t hash = 5381;
  for (const char letter : letters) hash = hash * 33 + static_cast<uint8_t>(letter);
  return hash;
}

uint32_t hash_of(const std::vector<uint16_t>& timings, uint16_t max_edge = kMaxEdgeUs) {
  return ir_hash(timings.data(), timings.size(), max_edge);
}

TEST(Hash, IsThatOfTheLettersOfGapsAndLongAndShortTimings) {
  const struct {
    const char* what;
    std::vector<uint16_t> timings;
    const char* letters;
  } kCases[] = {
      {"nothing", {}, ""},
      {"one timing", {560}, "L"},
      {"one gap", {9000}, "G"},
      {"one timing of 0", {0}, "S"},
      {"the lead of NEC is two gaps", {9000, 4500, 560, 560, 560, 1690, 560}, "GGSSSLS"},
      {"jitter stays on its side", {9031, 4472, 583, 540, 571, 1655, 549}, "GGSSSLS"},
      {"all alike: none is long", {500, 500, 500, 500}, "SSSS"},
      {"only gaps behind it", {2000, 3000}, "SG"},
      {"all gaps", {3000, 4000, 5000}, "GGG"},
      {"the first timing is judged but not counted", {2000, 500, 510, 520}, "LSSL"},
      {"exactly the largest edge is no gap", {100, 2400, 2401, 100, 100}, "SLGSS"},
      {"it is counted, but no cluster starts with it", {500, 2400, 1500, 1000}, "SLLS"},
      {"a timing of 0 is short", {0, 0, 900, 0}, "SSLS"},
  };
  for (const auto& c : kCases) EXPECT_EQ(hash_of(c.timings), djb2(c.letters)) << c.what;
}

// The middle ends at 1471. Were the sums begun anew in every pass, it would end at 1408, and the
// first timing would be long.
TEST(Hash, CountsEveryPassInItsMeans) {
  EXPECT_EQ(hash_of({1440, 900, 1600, 1000, 1000, 2300, 1700, 1800}), djb2("SSLSSLLL"));
}

TEST(Hash, IsTheSameAgainButForAnotherLargestEdge) {
  const std::vector<uint16_t> timings = {500, 1500, 500};
  for (int turn = 0; turn < 2; ++turn) {
    EXPECT_EQ(hash_of(timings), djb2("SLS"));
    EXPECT_EQ(hash_of(timings), djb2("SLS"));
    EXPECT_EQ(hash_of(timings, 1000), djb2("SGS"));
  }
}

TEST(Hash, LooksAtNoMoreThan255Timings) {
  std::vector<uint16_t> timings(300, 500);
  timings[1] = 1500;
  std::vector<uint16_t> first(timings.begin(), timings.begin() + 255);
  EXPECT_EQ(hash_of(timings), hash_of(first));
  EXPECT_EQ(hash_of(first), djb2("SL" + std::string(253, 'S')));
}

}  // namespace
