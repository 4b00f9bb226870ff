// SPDX-License-Identifier: GPL-3.0-or-later
// What an infrared receiver makes of a signal: marks come out longer and spaces shorter (or the
// other way round), every edge jitters, the remote's clock is a little off, edges fall on the grid
// of the receiver's own clock or of the carrier, and the first mark may grow while the gain
// settles.
//
//   Random random(7);                                            // the same seed, the same signal
//   std::vector<int> seen = receive(sent, random);               // an ordinary receiver
//   std::vector<int> calm = receive(sent, random, fixed_receiver(20, 0.02));  // 20 µs, 2 %
//   std::vector<int> bad = receive(sent, random, kHard);         // the worst of three bad ones
//   bad = with_stray_mark(bad, random, Side::kBefore, 6000);     // a flash 6 ms before it
#pragma once

#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

/// Random numbers that are the same on every machine (the standard's distributions are not).
class Random {
 public:
  explicit Random(uint64_t seed) : engine_(seed) {}
  /// A stream of its own for every text, such as a protocol's name.
  Random(uint64_t seed, std::string_view text);

  /// low to high, both included. REQUIRES: low <= high.
  int64_t between(int64_t low, int64_t high);
  /// low to high.
  double uniform(double low, double high);
  /// Around 0 with a standard deviation of 1; never beyond 6.
  double normal();

 private:
  std::mt19937_64 engine_;
};

struct Range {
  double low, high;
};

struct Receiver {
  Range bias_us = {-40, 120};   // marks longer and spaces shorter; drawn once per signal
  Range jitter = {0.02, 0.04};  // of every edge, as a part of the shortest duration
  double clock = 0.01;          // the remote's clock error, + or -, as a part
  std::vector<double> grids_us = {1, 1, 26.3};  // edges fall on multiples of one of these
  Range first_mark = {0, 0};  // what it grows by while the gain settles, as a part; its space loses
};

/// A receiver with just this bias and jitter, an exact clock and a grid of 1 µs.
Receiver fixed_receiver(double bias_us, double jitter);

/// `sent` (µs, mark first, marks and spaces in turn) as a receiver delivers it: as many durations,
/// none below 1 µs. A signal without carrier, or with durations below 60 µs, is only jittered.
std::vector<int> receive(const std::vector<int>& sent, Random& random,
                         const Receiver& receiver = {}, bool modulated = true);

/// A receiver whose noise grows with each duration, as far away or in bright light. The first mark
/// changes by a part of its own, every other time at the cost of the space behind it.
struct BadReceiver {
  Range bias_us = {-80, 80};           // marks longer and spaces shorter; drawn once per signal
  Range jitter;                        // two standard deviations of a duration, as a part of it
  Range first_mark = {0, 0};           // what it grows by, as a part
  double clock = 0.02;                 // + or -, as a part
  std::vector<double> grids_us = {1};  // durations are multiples of one of these
};

inline const BadReceiver kMild = {.bias_us = {-40, 80}, .jitter = {0.01, 0.02}, .clock = 0};
inline const BadReceiver kMedium = {
    .jitter = {0.02, 0.05}, .first_mark = {0, 0.15}, .grids_us = {1, 26}};
inline const BadReceiver kHard = {
    .jitter = {0.05, 0.08}, .first_mark = {-0.10, 0.25}, .grids_us = {50}};

/// `sent` as a bad receiver delivers it: as many durations, none below 40 µs.
std::vector<int> receive(const std::vector<int>& sent, Random& random, const BadReceiver& receiver);

enum class Side { kBefore, kAfter };

/// `frame` with a mark of 40 to 120 µs on one side, `gap_us` away.
std::vector<int> with_stray_mark(std::vector<int> frame, Random& random, Side side, int gap_us);
