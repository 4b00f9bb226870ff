// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/statistics.h"

#include <algorithm>

void setBurst::clear() {
  count_ = 0;
  clearF();
}

void setBurst::clearF() {
  smallest = second_smallest = third_smallest = 1e9F;
  largest = second_largest = third_largest = 0;
  mid_low = mid_high = 0;
}

void setBurst::insert1(const float* burst) {
  const float length = burst[0] + burst[1];
  float* const end = lengths_.data() + count_;
  float* const place = std::lower_bound(lengths_.data(), end, length);
  if ((place == end || *place != length) && count_ < kMostLengths) {
    std::copy_backward(place, end, end + 1);
    *place = length;
    ++count_;
  }
  if (length < smallest) {
    third_smallest = second_smallest;
    second_smallest = smallest;
    smallest = length;
  } else if (length < second_smallest) {
    third_smallest = second_smallest;
    second_smallest = length;
  } else if (length < third_smallest) {
    third_smallest = length;
  }
  if (length > largest) {
    third_largest = second_largest;
    second_largest = largest;
    largest = length;
  } else if (length > second_largest) {
    third_largest = second_largest;
    second_largest = length;
  } else if (length > third_largest) {
    third_largest = length;
  }
}

void setBurst::insert(const float* burst) {
  const float length = burst[0] + burst[1];
  const float widest = mid_high - mid_low;
  const bool splits = length > mid_low && length < mid_high;
  const bool extends = smallest - length > widest || length - largest > widest;
  insert1(burst);
  if (splits || extends) findMid();
}

void setBurst::findMid() {
  if (count_ == 0) return;
  mid_low = mid_high = lengths_[0];
  float widest = 0;
  for (int i = 1; i < count_; ++i) {
    const auto at = static_cast<size_t>(i);
    if (lengths_[at] - lengths_[at - 1] > widest) {
      widest = lengths_[at] - lengths_[at - 1];
      mid_low = lengths_[at - 1];
      mid_high = lengths_[at];
    }
  }
}
