// SPDX-License-Identifier: GPL-3.0-or-later
// Groups of durations of about the same length.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

namespace companions {

/// A group of durations of about the same length, in µs, with mean and standard deviation.
struct cluster {
  int low, high;
  double mean, deviation;
  size_t count;
};

/// The clusters of these lengths, rising. Neighbours part that are further apart than this
/// proportion of the shorter one.
std::vector<cluster> find_clusters(std::vector<int> lengths, double step = 0.25);

/// Lengths and how often each occurs.
using length_counts = std::map<int, size_t>;
std::vector<cluster> find_clusters(const length_counts& lengths, double step = 0.25);

/// The middle one of these lengths, 0 of none.
int median(std::vector<int> lengths);

/// Whether the larger of two lengths is at most so many times the smaller.
inline bool alike(double a, double b, double times) {
  return a <= b * times && b <= a * times;
}

}  // namespace companions
