// SPDX-License-Identifier: GPL-3.0-or-later
// Comparing a frame with the durations it should have, and reading digits from burst lengths.
#include "lib/ir/DecodeIR/readers/expected_frame.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "lib/ir/DecodeIR/explain.h"
#include "lib/ir/DecodeIR/readers/steps.h"

namespace {

using namespace analysis;

constexpr fit_rule kRule{.tolerance_us = 60};
constexpr fit_rule kCheckedRule{.tolerance_us = 60, .checked = true};

/// Marks and spaces of 600 and 1200 µs behind a lead-in of 3000.
const std::vector<float> kDurations = {3000, 600, 600,  1200, 1200, 600,
                                       600,  600, 1200, 1200, 600,  50};

expected_frame expected() {
  expected_frame wanted;
  for (size_t i = 0; i + 1 < kDurations.size(); ++i) {
    if (i % 2 == 0) {
      wanted.mark(kDurations[i]);
    } else {
      wanted.space(kDurations[i]);
    }
  }
  return wanted;
}

/// What stops the durations, as "reason, burst"; empty where they fit.
std::string stopped(const std::vector<float>& durations, const fit_rule& rule) {
  struct : refusal_listener {
    std::string told;
    void refused(const char*, const refusal& why) override {
      told = text_of(why.why) + (", " + std::to_string(why.burst));
    }
  } listener;
  frame seen(durations);
  seen.listener = &listener;
  const bool fits = expected().fits(seen, rule);
  EXPECT_EQ(fits, listener.told.empty());
  return listener.told;
}

TEST(FrameFit, NeighboursOfOneKindAreOneDuration) {
  expected_frame wanted;
  wanted.space(100);  // silence before the frame
  wanted.mark(300);
  wanted.mark(300);
  wanted.space(200);
  wanted.space(200);
  wanted.mark(300);
  EXPECT_EQ(wanted.bursts(), 2);
  const std::vector<float> durations = {600, 400, 300, 9999};
  EXPECT_TRUE(wanted.fits(frame(durations), kRule));
}

TEST(FrameFit, BiasAndClockAreFoundAndLimited) {
  struct {
    float bias, clock;
    const char* stopped;
  } const cases[] = {{0, 1, ""},
                     {120, 1.02F, ""},
                     {-60, 0.97F, ""},
                     {220, 1, "the marks and spaces against each other, -1"},
                     {0, 1.09F, "the clock, -1"},
                     {0, 0.9F, "the clock, -1"}};
  for (const auto& c : cases) {
    std::vector<float> durations = kDurations;
    for (size_t i = 0; i < durations.size(); ++i) {
      durations[i] = durations[i] * c.clock + (i % 2 == 0 ? c.bias : -c.bias);
    }
    EXPECT_EQ(stopped(durations, kRule), c.stopped) << c.bias << ' ' << c.clock;
  }
}

TEST(FrameFit, OneOddBurstIsForgivenWhereItMayBe) {
  struct {
    std::vector<size_t> odd;
    const char *unchecked, *checked;
  } const cases[] = {{{0}, "", ""},
                     {{10}, "", ""},
                     {{4}, "a mark, 2", ""},
                     {{7}, "a burst that is no symbol, 3", ""},
                     {{0, 10}, "a mark, 0", "a mark, 0"},
                     {{3, 8}, "a mark, 4", "a burst that is no symbol, 1"}};
  for (const auto& c : cases) {
    std::vector<float> durations = kDurations;
    for (const size_t i : c.odd) durations[i] += 350;
    EXPECT_EQ(stopped(durations, kRule), c.unchecked) << c.odd[0];
    EXPECT_EQ(stopped(durations, kCheckedRule), c.checked) << c.odd[0];
  }
}

constexpr step_rule kSteps{.base_us = 444, .step_us = 167, .most = 3};
constexpr std::array<uint8_t, 8> kDigits = {0, 3, 1, 2, 2, 0, 3, 1};

TEST(StepReader, ReadsDigitsOfAnotherBaseAndClock) {
  struct {
    const char* what;
    float base, step;
    int spoilt;  // which burst
    float by;    // in steps
    bool isRead;
    int stopped = 0;  // the burst, -1 for all of them
  } const cases[] = {
      {"as defined", 444, 167, 0, 0, true},
      {"slow clock", 457, 172, 0, 0, true},
      {"marks a carrier period short", 416, 167, 0, 0, true},
      {"another base", 520, 167, 0, 0, false, -1},
      {"one between two digits", 444, 167, 2, 0.45F, false, 2},
      {"one beyond the digits", 444, 167, 1, 0.6F, false, 1},
  };
  for (const auto& c : cases) {
    std::vector<float> durations;
    for (size_t i = 0; i < kDigits.size(); ++i) {
      const float off = static_cast<int>(i) == c.spoilt ? c.by : 0;
      durations.push_back(167);
      durations.push_back(c.base - 167 + c.step * (static_cast<float>(kDigits[i]) + off));
    }
    std::array<uint8_t, 8> digits{};
    step_line line{kSteps.base_us, kSteps.step_us};
    refusal why;
    ASSERT_EQ(read_steps(durations.data(), 8, kSteps, &line, digits.data(), &why), c.isRead)
        << c.what;
    if (c.isRead) {
      EXPECT_EQ(digits, kDigits) << c.what;
    } else {
      EXPECT_EQ(why.burst, c.stopped) << c.what;
    }
  }
}

}  // namespace
