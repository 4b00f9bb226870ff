// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/clusters.h"

#include <algorithm>
#include <cmath>

namespace companions {

std::vector<cluster> find_clusters(std::vector<int> lengths, double step) {
  std::sort(lengths.begin(), lengths.end());
  std::vector<cluster> clusters;
  for (const int length : lengths) {
    if (clusters.empty() || length > clusters.back().high * (1 + step) + 1) {
      clusters.push_back({length, length, 0, 0, 0});
    }
    cluster& last = clusters.back();
    last.high = length;
    const double off = length - last.mean;
    last.mean += off / static_cast<double>(++last.count);
    last.deviation += off * (length - last.mean);  // the sum of squares until all are known
  }
  for (cluster& c : clusters) c.deviation = std::sqrt(c.deviation / static_cast<double>(c.count));
  return clusters;
}

int median(std::vector<int> lengths) {
  if (lengths.empty()) return 0;
  const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
  std::nth_element(lengths.begin(), middle, lengths.end());
  return *middle;
}

}  // namespace companions
