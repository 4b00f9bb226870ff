// SPDX-License-Identifier: GPL-3.0-or-later
// A clean pulse-distance frame of no known protocol, "Gap-<bits>-<unit in µs>": its bits go into
// the remark as bytes, the first bit sent the highest.
//
// The frames of a press are told to be copies by their names, so the unit is a coarse one: 140,
// 198, 280, 396, 560, 792, 1120, ..., two for each doubling. The units of most codes (430, 500, 564
// µs) lie far from where one becomes the next.
#include <algorithm>
#include <cmath>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr int kFewestBits = 8;
// Without a lead-in 8 symbols may also be half an XMP frame.
constexpr int kFewestLeadlessBits = 9;
constexpr int kFewestOfAKind = 2;  // symbols, without a lead-in
constexpr float kGapUs = 9000;
constexpr float kGapSymbols = 1.5F;   // of the longest symbol
constexpr float kLeadSymbols = 1.4F;  // a lead-in against the longest symbol
constexpr float kMarkTolerance = 0.2F;
constexpr float kJitterUs = 40;
constexpr float kRatio = 1.25F;     // the longest symbol against the shortest
constexpr float kApart = 0.6F;      // between the kinds, of the difference between those two
constexpr float kClassicRatio = 2;  // 1:1 and 1:3, the shape of most codes
constexpr float kClassicTolerance = 0.25F;
constexpr float kMiddleUnitUs = 560;
constexpr float kUnitsPerOctave = 2;

/// The symbols of a frame that no row knows.
struct plain_symbols {
  const float* data;
  int count;
  float shortest, longest;  // µs

  plain_symbols(const float* first, int bursts) : data(first), count(bursts) {
    shortest = longest = length(0);
    for (int i = 1; i < count; ++i) {
      shortest = std::min(shortest, length(i));
      longest = std::max(longest, length(i));
    }
  }
  [[nodiscard]] float on(int i) const { return data[2 * i]; }
  [[nodiscard]] float length(int i) const { return data[2 * i] + data[2 * i + 1]; }
  [[nodiscard]] float middle() const { return (shortest + longest) / 2; }
  [[nodiscard]] int longs() const {
    int found = 0;
    for (int i = 0; i < count; ++i) found += static_cast<int>(length(i) > middle());
    return found;
  }
  [[nodiscard]] float mean_mark() const {
    float sum = 0;
    for (int i = 0; i < count; ++i) sum += on(i);
    return sum / static_cast<float>(count);
  }
  /// Whether there are two lengths, well apart, and nothing between them.
  [[nodiscard]] bool are_of_two_lengths() const {
    if (longest < kRatio * shortest) return false;
    float longest_short = shortest;
    float shortest_long = longest;
    for (int i = 0; i < count; ++i) {
      if (length(i) > middle()) {
        shortest_long = std::min(shortest_long, length(i));
      } else {
        longest_short = std::max(longest_short, length(i));
      }
    }
    return shortest_long - longest_short >= kApart * (longest - shortest);
  }
  /// Whether the marks, that of the stop burst after the symbols among them, are alike.
  [[nodiscard]] bool have_even_marks() const {
    const float mean = mean_mark();
    for (int i = 0; i <= count; ++i) {
      if (std::fabs(on(i) - mean) > kMarkTolerance * mean + kJitterUs) return false;
    }
    return true;
  }
  /// The mean length of the symbols that are longer than the middle, or of the others.
  [[nodiscard]] float mean_length(bool of_long) const {
    float sum = 0;
    int found = 0;
    for (int i = 0; i < count; ++i) {
      if ((length(i) > middle()) != of_long) continue;
      sum += length(i);
      ++found;
    }
    return sum / static_cast<float>(found);
  }
  /// µs: half a short symbol in the usual code, else the mark; a coarse unit near it.
  [[nodiscard]] int unit() const {
    const float short_us = mean_length(false);
    const bool classic =
        std::fabs(mean_length(true) / short_us - kClassicRatio) < kClassicTolerance;
    const float exact = classic ? short_us / 2 : mean_mark();
    const float step = std::round(kUnitsPerOctave * std::log2(exact / kMiddleUnitUs));
    return static_cast<int>(std::lround(kMiddleUnitUs * std::exp2(step / kUnitsPerOctave)));
  }
};

constexpr float kAnyUs = 2e9F;

/// The symbols behind a lead-in, or all when the frame has none; nothing when they are too few or
/// too much of one kind.
std::optional<plain_symbols> symbols_of(const frame& seen) {
  const int last = seen.length - 1;  // the stop burst
  if (seen.framing_gap < kGapUs || last < kFewestBits) return {};
  plain_symbols symbols(seen.first + 2, last - 1);
  if (!seen.lead_in(kLeadSymbols * symbols.longest, kAnyUs, kAnyUs, 0,
                    kFewestBits * symbols.shortest)) {
    symbols = plain_symbols(seen.first, last);
    const int longs = symbols.longs();
    if (symbols.count < kFewestLeadlessBits || longs < kFewestOfAKind ||
        longs > symbols.count - kFewestOfAKind) {
      return {};
    }
  }
  if (symbols.count < kFewestBits) return {};
  return symbols;
}

}  // namespace

std::optional<answer> unknown_gap(const frame& seen) {
  const auto symbols = symbols_of(seen);
  if (!symbols || seen.framing_gap < kGapSymbols * symbols->longest ||
      !symbols->are_of_two_lengths() || !symbols->have_even_marks()) {
    return {};
  }
  bit_buffer bits(symbols->data, 2 * symbols->count);
  bits.threshold = symbols->middle();
  bits.decodeX2(symbols->count);
  bits.makeMsb();
  const auto byte = [&](int i) {
    const int width = std::min(8, bits.size() - 8 * i);
    return width > 0 ? static_cast<int>(bits.getMsb(8 * i, width)) : -1;
  };
  answer found;
  found.name.print("Gap-%d-%d", bits.size(), symbols->unit());
  found.hex = {byte(0), byte(1), byte(2), byte(3)};
  for (int i = 0; byte(i) >= 0; ++i) found.remark.print("%02X", static_cast<unsigned>(byte(i)));
  found.layout = {.lead = symbols->data == seen.first ? 0 : 1, .stop = true};
  return found;
}

}  // namespace analysis
