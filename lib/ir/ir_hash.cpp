// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/ir_hash.h"

#include <algorithm>
#include <span>

#include "lib/ir/last_signal.h"

namespace {

constexpr size_t kMostTimings = last_signal::kMostDurations;
constexpr int kPasses = 3;
constexpr uint32_t kHashSeed = 5381;
constexpr uint32_t kHashFactor = 33;

// Timings of one length, and how many.
struct share {
  uint32_t sum = 0;
  uint32_t count = 0;
};

// The mean of all timings that a cluster was ever given. It is kept over the passes, so that
// early passes weigh in; an empty cluster keeps the mean it started with.
struct cluster {
  uint16_t mean = 0;
  share all;

  void add(const share& given) {
    all.sum += given.sum;
    all.count += given.count;
    if (all.count > 0) mean = static_cast<uint16_t>(all.sum / all.count);
  }
};

// The timings above one limit and not above another. Without a branch for each: which side of a
// limit a timing is on cannot be guessed.
share share_between(std::span<const uint16_t> timings, int above, int most) {
  share found;
  for (const uint16_t timing : timings) {
    const bool inside = timing > above && timing <= most;
    found.sum += inside ? timing : 0U;
    found.count += inside ? 1U : 0U;
  }
  return found;
}

// Splits the timings into short and long ones: what is above the result is long.
uint16_t find_threshold(std::span<const uint16_t> timings, uint16_t max_edge) {
  if (timings.empty()) return 0;
  cluster short_ones;
  cluster long_ones;
  short_ones.mean = *std::min_element(timings.begin(), timings.end());
  for (const uint16_t timing : timings) {
    if (timing < max_edge) long_ones.mean = std::max(long_ones.mean, timing);
  }
  if (long_ones.mean == 0) long_ones.mean = short_ones.mean;

  const share all = share_between(timings, -1, max_edge);
  uint16_t mid = 0;
  for (int pass = 0; pass < kPasses; ++pass) {
    mid = static_cast<uint16_t>((short_ones.mean + long_ones.mean) >> 1);
    const share above = share_between(timings, mid, max_edge);
    long_ones.add(above);
    short_ones.add({all.sum - above.sum, all.count - above.count});
  }
  return mid;
}

uint32_t hash_of(std::span<const uint16_t> timings, uint16_t max_edge) {
  // The first mark is often part of a lead and says nothing about the bits.
  const uint16_t threshold =
      timings.empty() ? uint16_t{0} : find_threshold(timings.subspan(1), max_edge);
  uint32_t hash = kHashSeed;
  for (const uint16_t timing : timings) {
    const char letter = timing > max_edge ? 'G' : timing > threshold ? 'L' : 'S';
    hash = hash * kHashFactor + static_cast<uint8_t>(letter);
  }
  return hash;
}

struct {
  last_signal signal;
  uint16_t max_edge = 0;
  uint32_t hash = kHashSeed;  // of no timings
} constinit last;

}  // namespace

uint32_t ir_hash(const uint16_t* buf, size_t len, uint16_t max_edge) {
  const std::span timings(buf, std::min(len, kMostTimings));
  if (!last.signal.is(timings) || last.max_edge != max_edge) {
    last.max_edge = max_edge;
    last.hash = hash_of(timings, max_edge);
  }
  return last.hash;
}
