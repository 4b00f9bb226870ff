// SPDX-License-Identifier: GPL-3.0-or-later
// The bit buffer: bit n stands in byte n / 8 at position n mod 8.
#include <cstdio>
#include <cstdlib>

#include "lib/ir/DecodeIR/signal.h"

namespace {

/// Stops the program, in release builds too: a recogniser that asks for more bits than the
/// buffer holds is wrong, and writing on would not be safe.
void assertFits(bool fits, const char* text, const char* function) {
  if (fits) return;
  std::fprintf(stderr, "lib/ir/DecodeIR: %s: Assertion `%s' failed.\n", function, text);
  std::abort();
}

}  // namespace

void Signal::cleanup() {
  cBits_.fill(0);
  decodeAt_ = frame_;
  nBit_ = 0;
}

void Signal::appendBit(bool bit) {
  assertFits(nBit_ < kMostBits, "nBit+1 <= sizeof(cBits)*8", __func__);
  if (bit) cBits_[static_cast<size_t>(nBit_ / 8)] |= static_cast<uint8_t>(1 << nBit_ % 8);
  ++nBit_;
}

void Signal::decodeX(int count) {
  assertFits(nBit_ + count <= kMostBits, "nBit+nCount <= sizeof(cBits)*8", __func__);
  for (; count > 0; --count, decodeAt_ += 2) appendBit(decodeAt_[0] > threshold_);
}

void Signal::decodeX2(int count) {
  assertFits(nBit_ + count <= kMostBits, "nBit+nCount <= sizeof(cBits)*8", __func__);
  for (; count > 0; --count, decodeAt_ += 2) appendBit(decodeAt_[0] + decodeAt_[1] > threshold_);
}

unsigned Signal::getBit(int n) const {
  return static_cast<unsigned>(cBits_[static_cast<size_t>(n / 8)] >> n % 8) & 1U;
}

unsigned Signal::getLsb(int first, int count) const {
  unsigned value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 1 | getBit(first + i);
  return value;
}

void Signal::makeMsb() {
  for (int i = 0; i < (nBit_ + 7) / 8; ++i) {
    auto& byte = cBits_[static_cast<size_t>(i)];
    byte = static_cast<uint8_t>(msb(byte, 8));
  }
}

unsigned Signal::getMsb(int first, int count) const {
  unsigned value = 0;
  for (int i = first; i < first + count; ++i) {
    value = value << 1 |
            (static_cast<unsigned>(cBits_[static_cast<size_t>(i / 8)] >> (7 - i % 8)) & 1U);
  }
  return value;
}

unsigned msb(unsigned value, int count) {
  unsigned reversed = 0;
  for (int i = 0; i < count; ++i) reversed = reversed << 1 | (value >> i & 1);
  return reversed;
}

int parity(unsigned value) {
  return __builtin_parity(value);
}
