// SPDX-License-Identifier: GPL-3.0-or-later
// Successive calls: each goes on where the last one stopped, and there is an end to them.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/decode_ir_call.h"

namespace {

using namespace decode_ir;

constexpr int kLevels = 10;

void append(std::vector<int>& to, const std::vector<int>& more) {
  to.insert(to.end(), more.begin(), more.end());
}

std::vector<int> times(const std::vector<int>& part, int count) {
  std::vector<int> all;
  for (; count > 0; --count) append(all, part);
  return all;
}

/// The names and functions that the calls give, until there are no more.
std::string all_of(Press press) {
  std::string found;
  for (auto before = press.place();; before = press.place()) {
    const Result result = press.next();
    if (result.name.empty()) return found;
    found += result.name + ' ' + std::to_string(result.obc) + "; ";
    if (press.place() <= before) return found + "went back";
  }
}

// Three keys, with a stray pulse between them.
TEST(Sequence, FindsEveryPressAtEveryInterfaceLevel) {
  std::vector<int> keys;
  for (const int function : {18, 19, 20}) {
    append(keys, signal("Sony12", {{"D", 1}, {"F", function}}, 2));
    append(keys, {90, 40000});
  }
  const std::vector<uint32_t> cycles(keys.size() / 2, 24);
  for (int level = 0; level < kLevels; ++level) {
    EXPECT_EQ(all_of(Press(keys, level)), "Sony12 18; Sony12 19; Sony12 20; ") << level;
    EXPECT_EQ(all_of(Press(keys, level, 0, cycles)), "Sony12 18; Sony12 19; Sony12 20; ") << level;
  }
}

// The carrier of each frame comes from the caller's counts, not from the frequency of the signal.
TEST(Sequence, TellsTheCarrierOfEveryFrame) {
  std::vector<int> keys = signal("Sejin-1-38", {{"D", 1}, {"S", 2}, {"F", 3}}, 1);
  const size_t first = keys.size() / 2;
  append(keys, signal("Sejin-1-38", {{"D", 1}, {"S", 2}, {"F", 4}}, 1));
  std::vector<uint32_t> cycles;
  for (size_t i = 0; i < keys.size() / 2; ++i) {
    cycles.push_back(static_cast<uint32_t>(keys[2 * i]) * (i < first ? 38 : 56) / 1000);
  }
  EXPECT_EQ(all_of(Press(keys, 8, 0, cycles)), "Sejin-1-38 3; Sejin-1-56 4; ");
}

TEST(Sequence, EndsForEverySignal) {
  for (const std::string& protocol : contract::protocols()) {
    for (const contract::Sample& sample :
         contract::samples(protocol, 5, {.clean = 1, .received = 1, .repeated = 1})) {
      std::vector<int> durations = sample.durations;
      if (durations.size() % 2 == 1) durations.push_back(40000);
      const int level = static_cast<int>(durations.size() / 2) % kLevels;
      const std::string found = all_of(Press(times(durations, 2), level, sample.repeatCount));
      EXPECT_FALSE(found.ends_with("back")) << contract::describe(sample) << found;
    }
  }
}

TEST(Sequence, EndsForNoise) {
  Random random(3);
  for (int round = 0; round < 300; ++round) {
    std::vector<int> noise;
    const auto unit = random.between(50, 1000);
    for (auto bursts = random.between(2, 60); bursts > 0; --bursts) {
      const int64_t gap = random.between(0, 9) == 0 ? 40000 : 0;
      append(noise, {static_cast<int>(unit * random.between(1, 3)),
                     static_cast<int>(unit * random.between(1, 4) + gap)});
    }
    const int repeat = static_cast<int>(random.between(0, std::ssize(noise) / 2));
    const std::string found = all_of(Press(noise, round % kLevels, repeat));
    EXPECT_FALSE(found.ends_with("back")) << irp::csv(noise);
  }
}

TEST(Sequence, LongSignalsAreOnePress) {
  constexpr int kBursts = 100000;
  const std::vector<int> sony = signal("Sony12", {{"D", 1}, {"F", 18}}, 1);
  const int frames = kBursts / static_cast<int>(sony.size() / 2);
  Press held(times(sony, frames));
  EXPECT_EQ(text(held.next()), "Sony12 D1 F18 H36 [+ " + std::to_string(frames - 1) + " copies]");
  EXPECT_EQ(text(held.next()), " []");
}

TEST(Sequence, FindsEveryPressOfALongSignal) {
  std::vector<int> keys;
  std::string expected;
  for (int i = 0; i < 500; ++i) {
    append(keys, signal("NEC1", {{"D", 4}, {"F", i % 200}}, 0));
    append(keys, times({9024, 2256, 564, 96000}, i % 7));
    expected += "NEC " + std::to_string(i % 200) + "; ";
  }
  EXPECT_EQ(all_of(Press(keys)), expected);
}

// The resume state has no room for such lengths; it says as much as it can.
TEST(Sequence, ManyDittosAreOnePress) {
  std::vector<int> nec = signal("NEC1", {{"D", 4}, {"F", 8}}, 0);
  const std::pair<int, unsigned> cases[] = {{2000, 34 + 2 * 2000 - 1}, {50000, 0xFFFF + 2}};
  for (const auto& [dittos, length] : cases) {
    std::vector<int> durations = nec;
    append(durations, times({9024, 2256, 564, 96000}, dittos));
    Press press(durations);
    EXPECT_EQ(text(press.next()), "NEC D4 F8 H239 [+ " + std::to_string(dittos) + " dittos]");
    EXPECT_EQ(press.place()[1] + 2, length);
    EXPECT_EQ(press.context()[0] >> 20, std::min(length, 0xFFFU));
    // What is behind the end of the countdown is named once more.
    EXPECT_EQ(press.next().name, length <= 0xFFF ? "" : "NEC");
    EXPECT_EQ(press.place()[0], length <= 0xFFF ? 0U : 0x1000U);
  }
}

}  // namespace
