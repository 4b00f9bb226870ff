// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/coding_levels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "companions/clusters.h"

namespace companions {

namespace {

constexpr double kMostPerLevel = 3.2;  // the longest symbol to the shortest
constexpr double kLeastPerLevel = 1.25;
constexpr double kClusterStep = 0.15;  // lengths of one symbol lie closer together
constexpr double kAlikeSteps = 1.6;    // four levels: from one to the next
constexpr double kBesideStep = 0.45;   // steps that a burst may lie beside a known level
constexpr double kGapBurst = 1.5;      // a burst so many times the highest level ends a frame

/// Bursts in µs.
struct four_level_code {
  int lead_in, lowest, step;
};
constexpr std::array<four_level_code, 2> kFourLevelCodes = {{
    {693, 444, 167},    // Nokia, RC-MM: 417/278, then marks of 167 and spaces of 278 + n * 167
    {1580, 1160, 290},  // Xiaomi: 1000/580, then marks of 580 and spaces of 580 + n * 290
}};

/// Whether these levels rise in about the same steps.
bool are_steps(std::span<const double> levels) {
  for (size_t i = 2; i < levels.size(); ++i) {
    if (!alike(levels[i] - levels[i - 1], levels[1] - levels[0], kAlikeSteps)) return false;
  }
  return true;
}

}  // namespace

std::vector<double> find_levels(std::vector<int> lengths, size_t most, double deviation) {
  const size_t fewest = std::max<size_t>(2, lengths.size() / kSymbolsPerLevel);
  auto clusters = find_clusters(std::move(lengths), kClusterStep);
  if (clusters.empty()) return {};
  std::stable_sort(clusters.begin(), clusters.end(),
                   [](const cluster& a, const cluster& b) { return a.count > b.count; });
  const double commonest = clusters[0].mean;
  std::erase_if(clusters, [&](auto& c) { return !alike(c.mean, commonest, kMostPerLevel); });
  const auto lengths_of = [](std::span<const cluster> from) {
    std::vector<double> levels;
    for (const cluster& c : from) levels.push_back(c.mean);
    std::sort(levels.begin(), levels.end());
    return levels;
  };

  const std::span all(clusters);
  if (most > 2) {
    if (all.size() > 3 && are_steps(lengths_of(all.first(4)))) return lengths_of(all.first(4));
    // One of four is missing, nobody knows which.
    if (all.size() > 2 && all[2].count >= fewest && are_steps(lengths_of(all.first(3)))) return {};
  }

  const auto second = std::find_if(clusters.begin(), clusters.end(), [&](const cluster& c) {
    return !alike(c.mean, commonest, kLeastPerLevel);
  });
  clusters =
      second == clusters.end() ? std::vector{clusters[0]} : std::vector{clusters[0], *second};
  const bool wide = std::any_of(clusters.begin(), clusters.end(),
                                [&](auto& c) { return c.deviation > deviation * c.mean; });
  return wide ? std::vector<double>() : lengths_of(clusters);
}

std::vector<double> known_four_levels(int lead_in_us, std::span<const int> bursts_us) {
  for (const four_level_code& code : kFourLevelCodes) {
    const double spread = kBesideStep * code.step;
    if (std::abs(lead_in_us - code.lead_in) > spread) continue;
    const double lowest = code.lowest;
    std::vector levels{lowest, lowest + code.step, lowest + 2 * code.step, lowest + 3 * code.step};
    const bool all_near = std::all_of(bursts_us.begin(), bursts_us.end(), [&](int us) {
      return us > kGapBurst * levels.back() ||
             std::any_of(levels.begin(), levels.end(),
                         [&](double level) { return std::abs(us - level) <= spread; });
    });
    if (all_near) return levels;
  }
  return {};
}

}  // namespace companions
