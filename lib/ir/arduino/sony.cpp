// SPDX-License-Identifier: GPL-3.0-or-later
// Sony: pulse width, unit 600 µs: lead-in 4 units mark, 1 space; a mark of 1 unit = 0, of 2 units
// = 1; a space of 1 unit between the marks and none after the last one.
//
//   L fffffff ddddd              12 bits: function, device, lowest bit first
//   L fffffff dddddddd           15 bits
//   L fffffff ddddd ssssssss     20 bits, s the subdevice
//
// There is no check, so the bit count and the tight fit have to do.
// Sample: 2400,600,1200,600,600,600,…,600 with 25, 31 or 41 durations.
#include <algorithm>
#include <array>

#include "lib/ir/arduino/matchers.h"

namespace arduino {
namespace {

constexpr uint16_t kUnitUs = 600;
constexpr uint16_t kSpaceUs = kUnitUs;
constexpr uint16_t kLeadUs = 4 * kUnitUs;
constexpr uint16_t kZeroUs = kUnitUs;
constexpr uint16_t kOneUs = 2 * kUnitUs;
constexpr size_t kLeadCount = 2;
constexpr double kLeadTolerance = 0.13;
constexpr double kScaleLow = 0.92;
constexpr double kScaleHigh = 1.09;
constexpr double kStretchLowUs = -110;
constexpr double kStretchHighUs = 170;

constexpr bool is_length(size_t bits) {
  return bits == 12 || bits == 15 || bits == 20;
}

constexpr uint16_t mark_of(uint16_t us) {
  return us > (kZeroUs + kOneUs) / 2 ? kOneUs : kZeroUs;
}

fit fit_marks(std::span<const uint16_t> symbols) {
  unsigned total = 0;
  unsigned nominal = 0;
  std::array<double, IRrecv::kBufferLength / 2> off{};
  const size_t bursts = symbols.size() / 2;
  for (size_t i = 0; i < bursts; i++) {
    total += symbols[2 * i] + symbols[2 * i + 1];
    nominal += mark_of(symbols[2 * i]) + kSpaceUs;
  }
  const double scale = double(total) / nominal;
  for (size_t i = 0; i < bursts; i++) off[i] = symbols[2 * i] - scale * mark_of(symbols[2 * i]);
  const auto median = off.begin() + bursts / 2;
  std::nth_element(off.begin(), median, off.begin() + bursts);
  return {scale, *median};
}

bool marks_fit(std::span<const uint16_t> symbols, const fit& found) {
  constexpr double kTolerance = jitter_us(kUnitUs);
  for (size_t i = 0; i + 1 < symbols.size(); i += 2) {
    const unsigned mark = mark_of(symbols[i]);
    if (!within(found.mark_off(symbols[i], mark), kTolerance)) return false;
    if (!within(found.burst_off(symbols[i] + symbols[i + 1], mark + kSpaceUs), kTolerance)) {
      return false;
    }
  }
  return within(found.mark_off(symbols.back(), mark_of(symbols.back())), kTolerance);
}

bool lead_fits(const frame& f, const fit& found) {
  constexpr double kTolerance = kLeadTolerance * kLeadUs;
  return within(found.mark_off(f.durations[0], kLeadUs), kTolerance) &&
         within(found.burst_off(f.durations[0] + f.durations[1], kLeadUs + kSpaceUs), kTolerance);
}

}  // namespace

bool match_sony(const frame& f, arduino_result& result) {
  const size_t bits = (f.durations.size() - 1) / 2;
  if (!is_length(bits) || !f.ends_after(kSpaceUs)) return false;
  const auto symbols = f.durations.subspan(kLeadCount);
  const fit found = fit_marks(symbols);
  if (found.scale < kScaleLow || found.scale > kScaleHigh) return false;
  if (found.stretch_us < kStretchLowUs || found.stretch_us > kStretchHighUs) return false;
  if (!lead_fits(f, found) || !marks_fit(symbols, found)) return false;

  uint32_t value = 0;
  for (size_t i = 0; i < symbols.size(); i += 2) {
    value = value << 1 | (mark_of(symbols[i]) == kOneUs ? 1U : 0U);
  }
  result = {"SONY", value, uint32_t(bits), 0};
  return true;
}

}  // namespace arduino
