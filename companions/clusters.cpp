// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/clusters.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace companions {

namespace {

/// Takes lengths in rising order.
class cluster_builder {
 public:
  explicit cluster_builder(double step) : step_(step) {}

  void add(int length, size_t times) {
    if (clusters_.empty() || length > clusters_.back().high * (1 + step_) + 1) {
      clusters_.push_back({length, length, 0, 0, 0});
    }
    cluster& last = clusters_.back();
    last.high = length;
    last.count += times;
    const double off = length - last.mean;
    const auto n = static_cast<double>(times);
    last.mean += off * n / static_cast<double>(last.count);
    last.deviation += off * n * (length - last.mean);  // the sum of squares until all are known
  }

  std::vector<cluster> take() {
    for (cluster& c : clusters_)
      c.deviation = std::sqrt(c.deviation / static_cast<double>(c.count));
    return std::move(clusters_);
  }

 private:
  double step_;
  std::vector<cluster> clusters_;
};

}  // namespace

std::vector<cluster> find_clusters(std::vector<int> lengths, double step) {
  std::sort(lengths.begin(), lengths.end());
  cluster_builder clusters(step);
  for (const int length : lengths) clusters.add(length, 1);
  return clusters.take();
}

std::vector<cluster> find_clusters(const length_counts& lengths, double step) {
  cluster_builder clusters(step);
  for (const auto& [length, times] : lengths) clusters.add(length, times);
  return clusters.take();
}

int median(std::vector<int> lengths) {
  if (lengths.empty()) return 0;
  const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
  std::nth_element(lengths.begin(), middle, lengths.end());
  return *middle;
}

}  // namespace companions
