// SPDX-License-Identifier: GPL-3.0-or-later
// The fallback for a pattern that no protocol claims: a hash of how each duration compares with
// the one of its kind before it, two places back: shorter, alike or longer.
//
// Two durations that were sent alike differ by at most 1.1 / 0.9 = 1.22 under 10 % jitter, two
// that were sent 1:2 by at least 2 * 0.9 / 1.1 = 1.64. The limit lies in the middle, at 1.414.
// The 32-bit FNV-1a hash takes the answers up as bytes 0, 1, 2.
#include "lib/ir/arduino/matchers.h"

namespace arduino {
namespace {

constexpr size_t kFewestDurations = 6;
constexpr uint32_t kHashBits = 32;
constexpr uint32_t kFnvBasis = 2166136261;
constexpr uint32_t kFnvPrime = 16777619;

// a > 1.414 b, in whole numbers
constexpr bool clearly_longer(uint32_t a, uint32_t b) {
  return 1000 * a > 1414 * b;
}

constexpr uint32_t compare(uint32_t before, uint32_t now) {
  if (clearly_longer(before, now)) return 0;
  return clearly_longer(now, before) ? 2 : 1;
}

}  // namespace

bool match_hash(const frame& f, arduino_result& result) {
  const size_t length = f.durations.size() + (f.tail > 0 ? 1 : 0);
  if (length < kFewestDurations) return false;
  uint32_t hash = kFnvBasis;
  for (size_t i = 2; i < f.durations.size(); i++) {
    hash = (hash ^ compare(f.durations[i - 2], f.durations[i])) * kFnvPrime;
  }
  result = {"UNKNOWN", hash, kHashBits, 0};
  return true;
}

}  // namespace arduino
