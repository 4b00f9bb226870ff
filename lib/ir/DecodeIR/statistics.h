// SPDX-License-Identifier: GPL-3.0-or-later
// Statistics of a candidate frame's durations, all in µs, kept by insertion because a frame grows.
#pragma once

#include <algorithm>
#include <array>

/// The on-times (marks) of the frame.
struct setOn {
  float smallest, largest, second;  // second: the second largest

  setOn() { clear(); }
  void clear() {
    smallest = 1e9F;
    largest = second = 0;
  }
  void insert(const float* on) {
    smallest = std::min(smallest, *on);
    second = std::max(second, std::min(largest, *on));
    largest = std::max(largest, *on);
  }
};

/// The off-times (spaces) of the frame, without the trailing gap.
struct setOff {
  float smallest, largest;

  setOff() { clear(); }
  void clear() {
    smallest = 1e9F;
    largest = 0;
  }
  void insert(const float* off) {
    smallest = std::min(smallest, *off);
    largest = std::max(largest, *off);
  }
};

/// The burst lengths (on + off) of the frame: an ordered set of the distinct lengths, the three
/// smallest and three largest, and the widest difference between neighbours in the set.
class setBurst {
 public:
  static constexpr int kMostLengths = 100;

  float smallest, second_smallest, third_smallest;
  float mid_low, mid_high;  // the lengths below and above the widest difference
  float largest, second_largest, third_largest;

  setBurst() { clear(); }
  /// Empties the set and restores the start values; clearF restores only the latter.
  void clear();
  void clearF();
  /// Adds burst[0] + burst[1]; equal lengths count separately among the three smallest and
  /// largest. insert also keeps the mid-point pair up to date.
  /// REQUIRES: fewer than kMostLengths insertions since the last clear.
  void insert1(const float* burst);
  void insert(const float* burst);
  /// Finds the mid-point pair anew; the first of equally wide differences wins.
  void findMid();

 private:
  std::array<float, kMostLengths> lengths_;  // rising, distinct
  int count_ = 0;
};
