// SPDX-License-Identifier: GPL-3.0-or-later
// Pronto hex: infrared codes as words of 16 bits, written as four hexadecimal digits.
//
//   0000 006D 0001 0002  0156 0ABC  0156 0056 0016 0E3C
//   a    b    c    d     once       repeat
//
//   a  format: 0000 learned, 0100 learned without a carrier; other formats hold no durations
//   b  frequency: the carrier period in units of 1 / 4.145146 µs (006D: 38 kHz)
//   c  pairs of the once sequence, d  of the repeat sequence
//   then the pairs, a mark and a space each, in carrier periods; the last space of a sequence is
//   the gap that follows it
//
// From text to durations: words_of, then parse_code, then every word times period_us. What becomes
// of a product that is too long is the caller's decision.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pronto {

inline constexpr int kBase = 16;
inline constexpr std::string_view kSeparators = " ,";
inline constexpr size_t kHeaderWords = 4;
inline constexpr int kDigits = 4;                                    // of a word
inline constexpr uint16_t kLearned = 0x0000, kUnmodulated = 0x0100;  // the formats with durations

/// The carrier period in whole µs, rounded: 26 for 006D, 0 for words below 3.
uint32_t period_us(uint16_t frequency);

/// The same exactly.
double exact_period_us(uint16_t frequency);

/// The carrier frequency in Hz, rounded; 0 for the word 0.
uint32_t frequency_hz(uint16_t frequency);

/// The word of a carrier in Hz, the nearest one of 1 to FFFF. REQUIRES: carrier_hz > 0.
uint16_t frequency_word(int carrier_hz);

/// The words of a text between blanks and commas, each read as strtoll reads it: its low 16 bits,
/// 0 for what is no number. number::whole(piece, kBase) tells what is one.
std::vector<uint16_t> words_of(std::string_view text);

/// Whether codes of this format consist of durations.
bool holds_durations(uint16_t format);

/// One sequence, in carrier periods; a view of the words.
struct sequence {
  std::span<const uint16_t> frame;  // mark and space in turn, ending with a mark; empty for none
  uint16_t gap = 0;                 // the space behind it

  /// Words of the sequence, its gap included.
  [[nodiscard]] size_t size() const { return frame.empty() ? 0 : frame.size() + 1; }
  /// The gap in whole ms, as senders count it.
  [[nodiscard]] uint32_t gap_ms(uint32_t period) const { return gap * period / 1000; }
};

enum class result {
  kGood,
  kForeign,    // a format without durations
  kWrongSize,  // not four words and what the pair counts ask for
};

struct code {
  uint16_t frequency = 0;
  sequence once;
  sequence repeat;
};

/// Takes the words of a code apart into *parts, which is left alone when they are not good.
/// *parts refers to the words.
result parse_code(std::span<const uint16_t> words, code* parts);

}  // namespace pronto
