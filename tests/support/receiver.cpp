// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/receiver.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMostBiasPart = 0.3;     // of the shortest mark or space
constexpr int kShortestModulatedUs = 60;  // shorter ones are bare flashes, which no receiver bends
constexpr double kMostFlashBiasUs = 3;
constexpr double kMostJitterUs = 30;
constexpr double kMostGridPart = 0.25;       // of the shortest duration
constexpr double kMostFirstSpacePart = 0.3;  // of the space that a growing first mark takes
constexpr int kNoSpaceUs = 1000;             // stands for the space of a signal of one mark
constexpr int kShortestHeardUs = 40;         // bad receivers deliver nothing shorter

uint64_t fnv1a(std::string_view text) {
  uint64_t hash = 0xCBF29CE484222325;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return hash;
}

// One of the grids, each as likely as the others.
double one_of(const std::vector<double>& grids_us, Random& random) {
  return grids_us[static_cast<size_t>(
      random.between(0, static_cast<int64_t>(grids_us.size()) - 1))];
}

int shortest_of(const std::vector<int>& durations, size_t first) {
  int shortest = first < durations.size() ? durations[first] : kNoSpaceUs;
  for (size_t i = first; i < durations.size(); i += 2) shortest = std::min(shortest, durations[i]);
  return shortest;
}

}  // namespace

Random::Random(uint64_t seed, std::string_view text) : engine_(seed ^ fnv1a(text)) {}

int64_t Random::between(int64_t low, int64_t high) {
  const uint64_t span = static_cast<uint64_t>(high) - static_cast<uint64_t>(low) + 1;
  const uint64_t drawn = engine_();
  return static_cast<int64_t>(static_cast<uint64_t>(low) + (span == 0 ? drawn : drawn % span));
}

double Random::uniform(double low, double high) {
  constexpr int kFractionBits = 53;
  return low + (high - low) * std::ldexp(static_cast<double>(engine_() >> (64 - kFractionBits)),
                                         -kFractionBits);
}

// The sum of twelve uniform numbers: the same on every machine, unlike a logarithm.
double Random::normal() {
  double sum = -6;
  for (int i = 0; i < 12; ++i) sum += uniform(0, 1);
  return sum;
}

Receiver fixed_receiver(double bias_us, double jitter) {
  return {{bias_us, bias_us}, {jitter, jitter}, 0, {1}};
}

std::vector<int> receive(const std::vector<int>& sent, Random& random, const Receiver& receiver,
                         bool modulated) {
  if (sent.empty()) return {};
  const int mark = shortest_of(sent, 0), space = shortest_of(sent, 1);
  const int shortest = *std::ranges::min_element(sent);
  double bias = random.uniform(receiver.bias_us.low, receiver.bias_us.high);
  bias = std::clamp(bias, -kMostBiasPart * mark, kMostBiasPart * space);
  double grid = one_of(receiver.grids_us, random);
  if (!modulated || shortest < kShortestModulatedUs) {
    bias = std::clamp(bias, -kMostFlashBiasUs, kMostFlashBiasUs);
    grid = 1;
  }
  if (grid > shortest * kMostGridPart) grid = 1;
  const double edge =
      std::min(kMostJitterUs, random.uniform(receiver.jitter.low, receiver.jitter.high) * shortest);
  const double clock = 1 + random.uniform(-receiver.clock, receiver.clock);

  double settling = 0;
  if (receiver.first_mark.high > 0 && sent.size() > 1) {
    settling = std::min(random.uniform(receiver.first_mark.low, receiver.first_mark.high) * sent[0],
                        kMostFirstSpacePart * sent[1]);
  }

  std::vector<int> seen;
  double at = 0, last_edge = 0;
  for (size_t i = 0; i < sent.size(); ++i) {
    at += sent[i] * clock;
    const double shifted =
        at + (i % 2 == 0 ? bias : 0) + (i == 0 ? settling : 0) + random.uniform(-edge, edge);
    const double on_grid = std::round(shifted / grid) * grid;
    seen.push_back(std::max(1, static_cast<int>(std::lround(on_grid - last_edge))));
    last_edge = on_grid;
  }
  return seen;
}

std::vector<int> receive(const std::vector<int>& sent, Random& random,
                         const BadReceiver& receiver) {
  if (sent.empty()) return {};
  const double bias = random.uniform(receiver.bias_us.low, receiver.bias_us.high);
  const double spread = random.uniform(receiver.jitter.low, receiver.jitter.high) / 2;
  const double clock = 1 + random.uniform(-receiver.clock, receiver.clock);
  const double grid = one_of(receiver.grids_us, random);
  std::vector<double> heard;
  for (size_t i = 0; i < sent.size(); ++i) {
    const double shifted = sent[i] * clock + (i % 2 == 0 ? bias : -bias);
    heard.push_back(shifted + spread * sent[i] * random.normal());
  }
  const double growth =
      random.uniform(receiver.first_mark.low, receiver.first_mark.high) * heard[0];
  heard[0] += growth;
  if (heard.size() > 1 && random.between(0, 1) == 0) heard[1] -= growth;

  std::vector<int> seen;
  for (const double us : heard) {
    seen.push_back(std::max(kShortestHeardUs, static_cast<int>(std::round(us / grid) * grid)));
  }
  return seen;
}

std::vector<int> with_stray_mark(std::vector<int> frame, Random& random, Side side, int gap_us) {
  const auto mark = static_cast<int>(random.between(40, 120));
  const bool before = side == Side::kBefore;
  frame.insert(before ? frame.begin() : frame.end(), {gap_us, mark});
  if (before) std::swap(frame[0], frame[1]);
  return frame;
}
