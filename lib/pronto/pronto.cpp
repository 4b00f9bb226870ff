// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/pronto/pronto.h"

#include <algorithm>
#include <cmath>

#include "lib/libutil/number.h"

namespace pronto {
namespace {

constexpr uint64_t kClockHz = 4'145'146;  // the frequency word counts its periods
constexpr uint64_t kUsPerSecond = 1'000'000;

sequence to_sequence(std::span<const uint16_t> words) {
  if (words.empty()) return {};
  return {words.first(words.size() - 1), words.back()};
}

}  // namespace

uint32_t period_us(uint16_t frequency) {
  return static_cast<uint32_t>((frequency * kUsPerSecond + kClockHz / 2) / kClockHz);
}

double exact_period_us(uint16_t frequency) {
  return static_cast<double>(frequency * kUsPerSecond) / kClockHz;
}

uint32_t frequency_hz(uint16_t frequency) {
  if (frequency == 0) return 0;
  return static_cast<uint32_t>((kClockHz + frequency / 2U) / frequency);
}

uint16_t frequency_word(int carrier_hz) {
  constexpr long kHighest = 0xFFFF;
  return static_cast<uint16_t>(
      std::clamp(std::lround(static_cast<double>(kClockHz) / carrier_hz), 1L, kHighest));
}

std::vector<uint16_t> words_of(std::string_view text) {
  std::vector<uint16_t> words;
  for (std::string_view piece : number::split(text, kSeparators)) {
    words.push_back(static_cast<uint16_t>(number::take(piece, kBase)));
  }
  return words;
}

bool holds_durations(uint16_t format) {
  return format == kLearned || format == kUnmodulated;
}

result parse_code(std::span<const uint16_t> words, code* parts) {
  if (!words.empty() && !holds_durations(words[0])) return result::kForeign;
  if (words.size() < kHeaderWords) return result::kWrongSize;
  const size_t once = size_t{2} * words[2];
  const size_t repeat = size_t{2} * words[3];
  const std::span<const uint16_t> bursts = words.subspan(kHeaderWords);
  if (bursts.size() != once + repeat) return result::kWrongSize;
  *parts = {words[1], to_sequence(bursts.first(once)), to_sequence(bursts.subspan(once))};
  return result::kGood;
}

}  // namespace pronto
