// SPDX-License-Identifier: GPL-3.0-or-later
// Frames of the program's own decoders, for the tests of the decoding pipeline. Those that have a
// public definition are rendered from it (tests/support); here are the rest, each as its decoder's
// file draws it.
#pragma once

#include <cstdint>
#include <vector>

namespace frames {

using Durations = std::vector<int>;

inline void append(Durations& to, const Durations& more) {
  to.insert(to.end(), more.begin(), more.end());
}

/// Bi-phase bits, most significant first, from the second half of the bit before the first.
inline Durations biphase(int half, bool previous, uint32_t bits, int count) {
  Durations out = {half};
  for (int i = count - 1; i >= 0; --i) {
    const bool bit = (bits >> i & 1) != 0;
    if (bit != previous) {
      out.back() += half;
    } else {
      out.push_back(half);
    }
    out.push_back(half);
    previous = bit;
  }
  return out;
}

/// Symbols of one mark and a space that carries `width` bits, most significant first; mark and
/// space together last from + step * symbol.
inline Durations symbols(int mark, int from, int step, uint64_t bits, int count, int width) {
  Durations out;
  for (int i = count - width; i >= 0; i -= width) {
    const auto symbol = static_cast<int>(bits >> i & ((1U << width) - 1));
    append(out, {mark, from + step * symbol - mark});
  }
  return out;
}

inline Durations nec(uint32_t bits) {
  Durations out = {9024, 4512};
  append(out, symbols(564, 2 * 564, 2 * 564, bits, 32, 1));
  out.push_back(564);
  return out;
}

inline Durations denon(uint32_t bits) {
  Durations out = symbols(264, 4 * 264, 4 * 264, bits, 15, 1);
  out.push_back(264);
  return out;
}

/// With its final space.
inline Durations sony(uint32_t bits, int count) {
  Durations out = {2400, 600};
  for (int i = count - 1; i >= 0; --i) append(out, {(bits >> i & 1) != 0 ? 1200 : 600, 600});
  return out;
}

/// Without the space at its end, which nobody can tell from the gap.
inline Durations received(Durations out) {
  if (out.size() % 2 == 0) out.pop_back();
  return out;
}

/// The lead of RC5 (two start bits) and what follows it.
inline Durations rc5(uint32_t bits, int count) {
  Durations out = {889, 889};
  append(out, biphase(889, true, bits, count));
  return received(out);
}

inline Durations tdc(uint32_t bits) {
  return received(biphase(315, false, bits, 17));
}

/// `id` has 7 bits. From profile 8 on the bi-phase part begins with the second lead's mark, which
/// reads as a 0.
inline Durations zarvo(uint32_t id, uint32_t profile, uint32_t command) {
  Durations out = {4900, 840};
  append(out, symbols(840, 3 * 840, -840, id, 7, 1));
  const bool long_space = (profile & 8) != 0;
  const uint32_t bits = (profile & 7) << 8 | command;
  append(out, {840, long_space ? 5200 : 2240, 4480});
  append(out, long_space ? biphase(840, false, bits, 10) : biphase(840, false, bits, 11));
  return out;
}

/// Both halves of eight nibbles; a symbol is meant for the middle of its window.
inline Durations xmp(uint32_t first, uint32_t second) {
  constexpr int kMiddle = 835 + 136 / 2;
  Durations out = symbols(210, kMiddle, 136, first, 32, 4);
  append(out, {210, 13800});
  append(out, symbols(210, kMiddle, 136, second, 32, 4));
  out.push_back(210);
  return out;
}

inline Durations nokia(uint64_t value, int bits) {
  constexpr int kMiddle = 272 + 169 / 2;
  Durations out = {412, 276};
  append(out, symbols(164, kMiddle, 169, value, bits, 2));
  out.push_back(164);
  return out;
}

}  // namespace frames
