// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/roles.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace companions {

namespace {

constexpr int kShortestGapUs = 5000;     // no space inside a frame's bits is longer
constexpr double kGapPerBurst = 4;       // nor longer than so many typical bursts
constexpr double kLeadInPerBurst = 1.3;  // a lead-in is longer than the longest bit
constexpr double kClusterStep = 0.25;    // lengths further apart belong to two clusters
constexpr double kMarkSpread = 1.6;      // longest to shortest mark of one symbol
constexpr double kBurstSpread = 1.3;     // and burst
constexpr size_t kFewestBits = 4;        // two clusters of fewer bursts prove nothing

double median(std::vector<int> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Whether the marks of the bursts in this cluster are alike, as those of one symbol are.
bool is_symbol(const cluster& c, std::span<const int> durations, const std::vector<size_t>& bits) {
  int shortest = 0;
  int longest = 0;
  for (const size_t i : bits) {
    const int mark = durations[2 * i];
    const int length = mark + durations[2 * i + 1];
    if (length < c.low || length > c.high) continue;
    shortest = shortest == 0 ? mark : std::min(shortest, mark);
    longest = std::max(longest, mark);
  }
  return longest <= kMarkSpread * shortest && c.high <= kBurstSpread * c.low;
}

/// The last mark has no space, but where ones have longer marks than zeros it carries a bit.
void judge_last_mark(std::span<const int> durations, shape& found) {
  std::array<std::vector<int>, 2> marks;
  for (size_t i = 0; i < durations.size() / 2; ++i) {
    if (found.bits[i] != ' ') marks[found.bits[i] == '1'].push_back(durations[2 * i]);
  }
  const double zero = median(marks[0]);
  const double one = median(marks[1]);
  if (zero == 0 || one < kMarkSpread * zero) return;
  const bool is_one = durations.back() > (zero + one) / 2;
  found.roles.back() = is_one ? role::kOne : role::kZero;
  found.bits.back() = is_one ? '1' : '0';
}

}  // namespace

std::vector<cluster> find_clusters(std::vector<int> lengths) {
  std::sort(lengths.begin(), lengths.end());
  std::vector<cluster> clusters;
  for (const int length : lengths) {
    if (clusters.empty() || length > clusters.back().high * (1 + kClusterStep) + 1) {
      clusters.push_back({length, length, 0, 0});
    }
    cluster& last = clusters.back();
    last.high = length;
    last.mean += (length - last.mean) / static_cast<double>(++last.count);
  }
  return clusters;
}

shape find_shape(std::span<const int> durations) {
  const size_t bursts = durations.size() / 2;  // whole ones: a last mark may have no space
  shape found{std::vector<role>(durations.size(), role::kPlain),
              std::string((durations.size() + 1) / 2, ' ')};
  const auto burst = [&](size_t i) { return durations[2 * i] + durations[2 * i + 1]; };

  std::vector<int> all;
  for (size_t i = 0; i < bursts; ++i) all.push_back(burst(i));
  const double typical = median(all);
  std::vector<size_t> firsts;  // bursts that begin the pattern or follow a gap
  std::vector<size_t> bits;    // the others, but for those that end in a gap
  std::vector<int> lengths;
  bool first = true;
  for (size_t i = 0; i < bursts; ++i) {
    const int space = durations[2 * i + 1];
    if (!first && space >= kShortestGapUs && space > kGapPerBurst * typical) {
      found.roles[2 * i + 1] = role::kGap;
      first = true;
      continue;
    }
    (first ? firsts : bits).push_back(i);
    if (!first) lengths.push_back(burst(i));
    first = false;
  }

  auto clusters = find_clusters(lengths);
  if (bits.size() > kFewestBits) std::erase_if(clusters, [](auto& c) { return c.count == 1; });
  if (clusters.empty()) return found;
  const auto set = [&](size_t i, role its) { found.roles[2 * i] = found.roles[2 * i + 1] = its; };
  for (const size_t i : firsts) {
    if (burst(i) > kLeadInPerBurst * clusters.back().high) {
      set(i, role::kLeadIn);
    } else {
      bits.push_back(i);
    }
  }
  if (clusters.size() != 2 || bits.size() < kFewestBits ||
      !is_symbol(clusters[0], durations, bits) || !is_symbol(clusters[1], durations, bits)) {
    return found;
  }
  const auto in = [&](const cluster& c, size_t i) {
    return burst(i) >= c.low * (1 - kClusterStep) && burst(i) <= c.high * (1 + kClusterStep);
  };
  for (const size_t i : bits) {
    const bool zero = in(clusters[0], i);
    const bool one = !zero && in(clusters[1], i);
    set(i, zero ? role::kZero : one ? role::kOne : role::kOdd);
    if (zero || one) found.bits[i] = zero ? '0' : '1';
  }
  if (durations.size() % 2 == 1) judge_last_mark(durations, found);
  return found;
}

}  // namespace companions
