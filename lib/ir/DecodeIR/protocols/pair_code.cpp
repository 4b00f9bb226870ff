// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/protocols/pair_code.h"

#include <array>
#include <cmath>
#include <cstdint>

namespace analysis {
namespace {

constexpr int kMostSymbols = 16;

// Fractions of a nominal duration that the lead-in and the marks may be off.
constexpr float kLeadError = 0.2F;
constexpr float kLongestMark = 1.7F;
constexpr float kLongestStopMark = 2.5F;

bool lead_fits(const frame& seen, const pair_code& code) {
  const float nominal = code.lead_mark_us + code.lead_space_us;
  return std::abs(seen.burst(0) - nominal) <= kLeadError * nominal &&
         seen.on(0) > 0.5F * (code.lead_mark_us + code.mark_us);
}

bool marks_fit(const frame& seen, const pair_code& code) {
  for (int i = 1; i < seen.length - 1; ++i) {
    if (seen.on(i) < receiver::kShortestOfMark * code.mark_us ||
        seen.on(i) > kLongestMark * code.mark_us)
      return false;
  }
  return seen.on(seen.length - 1) <= kLongestStopMark * code.mark_us;
}

}  // namespace

bool read_pair_code(const frame& seen, const pair_code& code, bit_buffer* bits) {
  const int count = seen.length - 2;
  if (count > kMostSymbols || !lead_fits(seen, code) || !marks_fit(seen, code)) return false;
  std::array<uint8_t, kMostSymbols> symbols{};
  step_line line{code.symbols.base_us, code.symbols.step_us};
  refusal why;
  if (!read_steps(seen.first + 2, count, code.symbols, &line, symbols.data(), &why)) {
    if (why.burst >= 0) ++why.burst;  // behind the lead-in
    seen.refused(why);
    return false;
  }
  for (int i = 0; i < count; ++i) {
    const unsigned symbol = symbols[static_cast<size_t>(i)];
    bits->append((symbol & 2) != 0);
    bits->append((symbol & 1) != 0);
  }
  bits->makeMsb();
  return true;
}

}  // namespace analysis
