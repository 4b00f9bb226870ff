// SPDX-License-Identifier: GPL-3.0-or-later
// The recognisers run in table order and the first to claim a frame wins, so each must refuse what
// a later one owns: every protocol of the contract, against the whole table, gives its own name.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/support/decode_ir_call.h"

namespace {

constexpr uint64_t kSeed = 20;
constexpr contract::Counts kFiveSets{.clean = 5, .received = 5, .repeated = 2};
/// Samples of one protocol that a receiver may spoil beyond recognition.
constexpr size_t kForgiven = 1;

struct Noise {
  const char* name;
  Receiver receiver;
};

void PrintTo(const Noise& noise, std::ostream* out) {
  *out << noise.name;
}

class Order : public testing::TestWithParam<Noise> {};

TEST_P(Order, EveryProtocolGivesItsOwnName) {
  for (const std::string& protocol : contract::protocols()) {
    size_t missed = 0;
    std::string report;
    for (const contract::Sample& sample :
         contract::samples(protocol, kSeed, kFiveSets, GetParam().receiver)) {
      const decode_ir::Result result = decode_ir::call(sample);
      const std::string fault = contract::mismatch(sample.expected, result);
      if (fault.empty()) continue;
      const bool unnamed = result.name.empty() || result.name.starts_with("Gap-");
      const std::string what = fault + '\n' + contract::describe(sample) + '\n';
      EXPECT_TRUE(unnamed && sample.set != contract::Set::kClean) << what;
      ++missed;
      report += what;
    }
    EXPECT_LE(missed, kForgiven) << report;
  }
}

INSTANTIATE_TEST_SUITE_P(Receivers, Order,
                         testing::Values(Noise{"mild", fixed_receiver(20, 0.02)},
                                         Noise{"ordinary", Receiver{}},
                                         Noise{"harsh", Receiver{.bias_us = {90, 120},
                                                                 .jitter = {0.035, 0.04},
                                                                 .grids_us = {26.3}}},
                                         Noise{"settling", Receiver{.first_mark = {0.15, 0.25}}}),
                         [](const auto& level) { return std::string(level.param.name); });

/// The share of frames that three bad receivers leave readable, and how many they may turn into
/// another code.
TEST(BadReceivers, HideFramesRatherThanChangeThem) {
  const struct {
    const char* name;
    BadReceiver receiver;
    double least_right;
    int most_wrong;
  } levels[] = {{"mild", kMild, 0.993, 0}, {"medium", kMedium, 0.975, 1}, {"hard", kHard, 0.9, 2}};
  for (const auto& level : levels) {
    Random random(kSeed, level.name);
    int all = 0;
    int right = 0;
    int wrong = 0;
    for (const std::string& protocol : contract::protocols()) {
      for (const contract::Sample& sample :
           contract::samples(protocol, kSeed, {.clean = 5, .received = 0, .repeated = 0})) {
        if (sample.durations.size() % 2 == 0 || sample.repeatCount > 0) continue;
        const auto result = decode_ir::call(receive(sample.durations, random, level.receiver));
        ++all;
        if (contract::mismatch(sample.expected, result).empty()) {
          ++right;
        } else if (decode_ir::isNamed(result)) {
          ++wrong;
        }
      }
    }
    EXPECT_GE(right, level.least_right * all) << level.name << ": " << right << " of " << all;
    EXPECT_LE(wrong, level.most_wrong) << level.name;
  }
}

}  // namespace
