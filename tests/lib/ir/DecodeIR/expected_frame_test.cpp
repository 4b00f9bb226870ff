// SPDX-License-Identifier: GPL-3.0-or-later
// Comparing a frame with the durations it should have, and reading digits from burst lengths.
#include "lib/ir/DecodeIR/readers/expected_frame.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "lib/ir/DecodeIR/readers/steps.h"

namespace {

using namespace analysis;

constexpr fit_rule kRule{.tolerance_us = 60};
constexpr fit_rule kCheckedRule{.tolerance_us = 60, .checked = true};

/// Marks and spaces of 600 and 1200 µs behind a lead-in of 3000.
const std::vector<float> kDurations = {3000, 600, 600,  1200, 1200, 600,
                                       600,  600, 1200, 1200, 600,  50};

expected_frame expected() {
  expected_frame frame;
  for (size_t i = 0; i + 1 < kDurations.size(); ++i) {
    if (i % 2 == 0) {
      frame.mark(kDurations[i]);
    } else {
      frame.space(kDurations[i]);
    }
  }
  return frame;
}

TEST(FrameFit, NeighboursOfOneKindAreOneDuration) {
  expected_frame frame;
  frame.space(100);  // silence before the frame
  frame.mark(300);
  frame.mark(300);
  frame.space(200);
  frame.space(200);
  frame.mark(300);
  EXPECT_EQ(frame.bursts(), 2);
  const std::vector<float> durations = {600, 400, 300, 9999};
  EXPECT_TRUE(frame.fits(durations.data(), kRule));
}

TEST(FrameFit, BiasAndClockAreFoundAndLimited) {
  struct {
    float bias, clock;
    bool fits;
  } const cases[] = {{0, 1, true},    {120, 1.02F, true}, {-60, 0.97F, true},
                     {220, 1, false}, {0, 1.09F, false},  {0, 0.9F, false}};
  for (const auto& c : cases) {
    std::vector<float> durations = kDurations;
    for (size_t i = 0; i < durations.size(); ++i) {
      durations[i] = durations[i] * c.clock + (i % 2 == 0 ? c.bias : -c.bias);
    }
    EXPECT_EQ(expected().fits(durations.data(), kRule), c.fits) << c.bias << ' ' << c.clock;
  }
}

TEST(FrameFit, OneOddBurstIsForgivenWhereItMayBe) {
  struct {
    std::vector<size_t> odd;
    bool unchecked, checked;
  } const cases[] = {{{0}, true, true},  {{10}, true, true},      {{4}, false, true},
                     {{7}, false, true}, {{0, 10}, false, false}, {{3, 8}, false, false}};
  for (const auto& c : cases) {
    std::vector<float> durations = kDurations;
    for (const size_t i : c.odd) durations[i] += 350;
    EXPECT_EQ(expected().fits(durations.data(), kRule), c.unchecked) << c.odd[0];
    EXPECT_EQ(expected().fits(durations.data(), kCheckedRule), c.checked) << c.odd[0];
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
  } const cases[] = {
      {"as defined", 444, 167, 0, 0, true},
      {"slow clock", 457, 172, 0, 0, true},
      {"marks a carrier period short", 416, 167, 0, 0, true},
      {"another base", 520, 167, 0, 0, false},
      {"one between two digits", 444, 167, 2, 0.45F, false},
      {"one beyond the digits", 444, 167, 1, 0.6F, false},
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
    EXPECT_EQ(readSteps(durations.data(), 8, kSteps, &line, digits.data()), c.isRead) << c.what;
    if (c.isRead) {
      EXPECT_EQ(digits, kDigits) << c.what;
    }
  }
}

}  // namespace
