// SPDX-License-Identifier: GPL-3.0-or-later
// What vantrel-explain says of a pattern.
#include "companions/explain.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/companion_run.h"

namespace {

using namespace companions;
using analysis::reason;
using analysis::refusal;

TEST(Explain, RefusalsAreSentences) {
  const struct {
    refusal why;
    const char* sentence;
  } cases[] = {
      {{reason::bursts, -1, 33, 34, 34}, "33 bursts, 34 expected"},
      {{reason::bursts, -1, 1033, 16, 26}, "1,033 bursts, 16 to 26 expected"},
      {{reason::gap_behind, -1, 3000, 5000, 2e9F},
       "3,000 µs, at least 5,000 expected (the space behind the frame)"},
      {refusal::off(reason::symbol, 16, 2610, 2256, 170),
       "burst 17: 2,610 µs, 2,256 ± 170 expected (a burst that is no symbol)"},
      {{reason::clock, -1, 0.874F, 0.9F, 1.1F}, "0.87, 1.00 ± 0.10 expected (the clock)"},
      {refusal::off(reason::bias, -1, -1290.4F, 0, 220),
       "-1,290 µs, -220 to 220 expected (the marks and spaces against each other)"},
      {{reason::unit, -1, 5044, -48, 1008},
       "5,044 µs, at most 1,008 expected (a duration that is no whole number of units)"},
      {{reason::edge, 3}, "burst 4: a bit without an edge in its middle"},
      {{reason::check}, "a check"},
  };
  for (const auto& c : cases) EXPECT_EQ(sentence_of(c.why), c.sentence);
}

/// The lines on a NEC frame, some of whose spaces are too long or not, behind other durations.
std::string told(bool spoilt, const char* protocol, const std::vector<int>& before = {}) {
  std::vector<int> nec = frame("NEC1", {{"D", 4}, {"F", 8}});
  if (spoilt) {
    for (const size_t i : {17U, 27U, 35U, 41U, 55U}) nec[i] += 80 * static_cast<int>(i);
  }
  nec.insert(nec.begin(), before.begin(), before.end());
  return explain(nec, protocol);
}

TEST(Explain, TellsWhatProvedANameAndWhatStoppedOne) {
  EXPECT_EQ(
      told(false, "nec"),
      "NEC D=4 F=8, bursts 1 to 34: 32 bits, 8 of them checked by others; clock +0.0 %, marks "
      "0 µs longer than sent\n");
  EXPECT_EQ(told(true, "nec"),
            "UNKNOWN, bursts 1 to 34\n"
            "  NEC: burst 14: 4,416 µs, 2,256 ± 632 expected (a burst that is no symbol)\n");
  EXPECT_EQ(told(false, "jvc"), told(false, "nec") + "  JVC: 34 bursts, 18 expected\n");
  EXPECT_EQ(told(false, "nonsense"), told(false, "nec"));
  EXPECT_EQ(explain(std::vector<int>{500, 500}, ""), "UNKNOWN, too short for a frame\n");
  // Of several frames the one that was named, or the longest one.
  const std::vector<int> stray = {600, 600, 600, 600, 600, 30000};
  EXPECT_EQ(told(false, "nec", stray).substr(0, 29), "NEC D=4 F=8, bursts 4 to 37: ");
  EXPECT_EQ(told(true, "nec", stray).substr(0, 24), "UNKNOWN, bursts 4 to 37\n");
}

TEST(Explain, ShowsTheNearestOfEveryPatternInAnyForm) {
  const auto result = run(VANTREL_EXPLAIN, {}, "+600 -600 +600\n\n# noise\n+9000 -x\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out.substr(0, 13), "-:1: UNKNOWN,");
  const std::string nec = told(true, "");
  EXPECT_EQ(std::count(nec.begin(), nec.end(), '\n'), 1 + 8);
  EXPECT_NE(nec.find("\n  NEC: burst 14: "), std::string::npos) << nec;
}

}  // namespace
