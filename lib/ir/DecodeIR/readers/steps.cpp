// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/readers/steps.h"

#include <algorithm>
#include <cmath>

namespace analysis {
namespace {

constexpr int kRounds = 2;               // of reading the digits and estimating the line
constexpr float kMostBaseError = 0.35F;  // in steps
constexpr float kMostStepError = 0.08F;  // +-, as a fraction
constexpr float kMostScatter = 0.23F;    // in steps, root of the mean square; by chance 0.29
constexpr float kFarOff = 0.3F;          // in steps ...
constexpr float kFarApart = 3.5F;        // ... and in terms of what the others scatter

float burst_at(const float* bursts, int i) {
  return bursts[2 * i] + bursts[2 * i + 1];
}

/// The line through (digit, burst) by least squares, its step kept near the rule's: a few digits
/// of a jittery remote say little about it, and equal ones nothing.
step_line line_through(const float* bursts, int count, const uint8_t* digits, float nominal_step) {
  float step = nominal_step;
  float sum = 0;
  float sum_digits = 0;
  float sum_squares = 0;
  float sum_products = 0;
  for (int i = 0; i < count; ++i) {
    const auto digit = static_cast<float>(digits[i]);
    sum += burst_at(bursts, i);
    sum_digits += digit;
    sum_squares += digit * digit;
    sum_products += digit * burst_at(bursts, i);
  }
  const auto n = static_cast<float>(count);
  const float determinant = n * sum_squares - sum_digits * sum_digits;
  if (determinant >= 1) {
    step = std::clamp((n * sum_products - sum_digits * sum) / determinant,
                      (1 - kMostStepError) * nominal_step, (1 + kMostStepError) * nominal_step);
  }
  return {(sum - step * sum_digits) / n, step};
}

bool read_digits(const float* bursts, int count, const step_rule& rule, const step_line& line,
                 uint8_t* digits, refusal* why) {
  for (int i = 0; i < count; ++i) {
    const float digit = std::floor((burst_at(bursts, i) - line.base) / line.step + 0.5F);
    if (digit < 0 || digit > static_cast<float>(rule.most)) {
      const float half = 0.5F * line.step;
      *why = {reason::symbol, i, burst_at(bursts, i), line.base - half,
              line.base + static_cast<float>(rule.most) * line.step + half};
      return false;
    }
    digits[i] = static_cast<uint8_t>(digit);
  }
  return true;
}

/// Whether the bursts lie close to their digits on the line, and, where the rule says so, none of
/// them far off among quiet ones: that one is damaged, and which digit it was cannot be told.
bool lie_close(const float* bursts, int count, const step_rule& rule, const step_line& line,
               const uint8_t* digits, refusal* why) {
  float squares = 0;
  float largest = 0;
  for (int i = 0; i < count; ++i) {
    const float off = (burst_at(bursts, i) - line.base) / line.step - static_cast<float>(digits[i]);
    squares += off * off;
    if (off * off > largest || i == 0) {
      largest = off * off;
      const float wanted = line.base + static_cast<float>(digits[i]) * line.step;
      *why = refusal::off(reason::symbol, i, burst_at(bursts, i), wanted, kFarOff * line.step);
    }
  }
  const auto n = static_cast<float>(count);
  if (squares > kMostScatter * kMostScatter * n) return false;
  const float others = (squares - largest) / (n - 1);
  return rule.checked || largest <= kFarOff * kFarOff || largest <= kFarApart * kFarApart * others;
}

}  // namespace

bool read_steps(const float* bursts, int count, const step_rule& rule, step_line* line,
                uint8_t* digits, refusal* why) {
  for (int round = 0; round < kRounds; ++round) {
    if (!read_digits(bursts, count, rule, *line, digits, why)) return false;
    *line = line_through(bursts, count, digits, rule.step_us);
    if (std::abs(line->base - rule.base_us) > kMostBaseError * rule.step_us) {
      *why = refusal::off(reason::clock, -1, line->base / rule.base_us, 1,
                          kMostBaseError * rule.step_us / rule.base_us);
      return false;
    }
    if (lie_close(bursts, count, rule, *line, digits, why)) return true;
  }
  return false;
}

}  // namespace analysis
