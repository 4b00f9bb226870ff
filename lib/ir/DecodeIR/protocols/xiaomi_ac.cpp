// SPDX-License-Identifier: GPL-3.0-or-later
// Xiaomi's air conditioners.
//
// Modulation: 38 kHz, two bits in the length of a burst: mark 560 µs, spaces of 390, 920, 1500 and
//   2250 µs for 0 to 3
// Frame: lead-in 990,-600, 48 symbols, stop mark
// Layout (bytes, most significant bit first): A B C D E F G H I J L K
// Checks: E is the exclusive-or of A to D, K that of F to L
// Sample (off, E7 32 00 10 C5 01 00 2B 00 04 00 2E), µs:
//   1005,579,579,2223,579,1462,609,853,609,2193,609,335,...
// Facts: public protocol definitions in IRP notation, checked with captured remotes.
#include <cmath>
#include <iterator>

#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr float kLeadUs = 990 + 600;
constexpr float kSymbolsUs[] = {560 + 390, 560 + 920, 560 + 1500, 560 + 2250};
constexpr float kError = 0.12F;  // of a burst; two lengths are 36 % apart or more
constexpr float kShortestMarkUs = 300;
constexpr float kLongestMarkUs = 950;
constexpr int kSymbols = 48;
constexpr int kBytes = kSymbols / 4;
constexpr int kFirstCheck = 4;

bool fits(float found, float wanted) {
  return std::abs(found - wanted) <= kError * wanted;
}

/// Reads the symbols, the higher bit of each first.
bool read_symbols(const frame& seen, bit_buffer* bits) {
  for (int i = 1; i <= kSymbols; ++i) {
    unsigned symbol = 0;
    while (symbol < std::size(kSymbolsUs) && !fits(seen.burst(i), kSymbolsUs[symbol])) ++symbol;
    if (symbol == std::size(kSymbolsUs)) return false;
    bits->append((symbol & 2) != 0);
    bits->append((symbol & 1) != 0);
  }
  bits->makeMsb();
  return true;
}

}  // namespace

std::optional<answer> xiaomi_ac(const frame& seen) {
  bit_buffer bits;
  if (seen.length != kSymbols + 2 || !fits(seen.burst(0), kLeadUs) ||
      seen.on_times.smallest < kShortestMarkUs || seen.on_times.second > kLongestMarkUs ||
      !read_symbols(seen, &bits)) {
    return {};
  }
  const auto byte = [&](int i) { return bits.getMsb(8 * i, 8); };
  unsigned head = 0;
  unsigned rest = 0;
  for (int i = 0; i < kBytes; ++i) (i <= kFirstCheck ? head : rest) ^= byte(i);
  if (head != 0 || rest != 0) return {};
  answer found{"Xiaomi-AC", static_cast<int>(byte(0)), static_cast<int>(byte(1))};
  for (int i = 0; i < kBytes; ++i) found.remark.print("%02X", byte(i));
  found.layout = {.lead = 1, .stop = true, .bits_per_burst = 2};
  return found;
}

}  // namespace analysis
