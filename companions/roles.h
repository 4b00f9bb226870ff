// SPDX-License-Identifier: GPL-3.0-or-later
// What each duration of a pattern is for, as far as its shape tells: the colours of a picture.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace companions {

enum class role { kPlain, kLeadIn, kZero, kOne, kGap, kOdd };

struct shape {
  std::vector<role> roles;  // one a duration
  std::string bits;         // one character a burst or last mark: '0', '1', or ' ' for no bit
};

/// Tells lead-ins, zeros, ones, gaps and misfits apart by burst length (mark and space). Codes
/// whose bits are no bursts, such as bi-phase, come out plain.
shape find_shape(std::span<const int> durations);

/// A group of durations of about the same length, in µs.
struct cluster {
  int low, high;
  double mean;
  size_t count;
};

/// The clusters of these lengths, rising; neighbours over a quarter of their length apart part.
std::vector<cluster> find_clusters(std::vector<int> lengths);

}  // namespace companions
