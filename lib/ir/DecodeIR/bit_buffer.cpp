// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/bit_buffer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace analysis {
namespace {

/// A serial word's levels, by the time since the edge of its start bit.
class serial_line {
 public:
  serial_line(const float* durations, int count, double bit, double tolerance)
      : at_(durations), end_(durations + count), bit_(bit), slack_(tolerance * bit) {}

  /// Goes on to the next mark; false when there is none.
  bool start() {
    if (at_ < end_ && !mark_) next();
    since_ = 0;
    return at_ < end_;
  }
  /// Whether bit n of the word is one level: `wanted`, or any.
  bool takes(int n, std::optional<bool> wanted = {}) {
    while (at_ < end_ && since_ + static_cast<double>(*at_) < n * bit_ + slack_) next();
    const bool starts_whole = since_ < n * bit_ + slack_;
    const bool ends_whole =
        at_ >= end_ || since_ + static_cast<double>(*at_) > (n + 1) * bit_ - slack_;
    return starts_whole && ends_whole && (!wanted || *wanted == mark());
  }
  /// The level of the bit taken last; behind the last mark all is space.
  [[nodiscard]] bool mark() const { return at_ < end_ && mark_; }

 private:
  void next() {
    since_ += static_cast<double>(*at_++);
    mark_ = !mark_;
  }

  const float* at_;
  const float* end_;
  double bit_, slack_;  // µs
  double since_ = 0;    // µs from the start bit's edge to the current duration
  bool mark_ = true;
};

}  // namespace

void bit_buffer::cleanup() {
  cBits_.fill(0);
  at_ = begin_;
  nBit_ = counter_ = 0;
}

void bit_buffer::overrun(const char* text, const char* function) {
  std::fprintf(stderr, "lib/ir/DecodeIR: %s: Assertion `%s' failed.\n", function, text);
  std::abort();
}

void bit_buffer::append(const bit_buffer& more) {
  for (int i = 0; i < more.size(); ++i) append(more.getBit(i) != 0);
}

void bit_buffer::decodeX(int count) {
  if (nBit_ + count > kMostBits) overrun("nBit+nCount <= sizeof(cBits)*8", __func__);
  for (; count > 0; --count, at_ += 2) append(at_[0] > threshold);
}

void bit_buffer::decodeX2(int count) {
  if (nBit_ + count > kMostBits) overrun("nBit+nCount <= sizeof(cBits)*8", __func__);
  for (; count > 0; --count, at_ += 2) append(at_[0] + at_[1] > threshold);
}

bool bit_buffer::checkDecodeX(int offset, int count, float zero, float one, float tolerance) {
  if (nBit_ + count > kMostBits) overrun("nBit+count <= sizeof(cBits)*8", __func__);
  for (; count > 0; --count, at_ += 2) {
    const bool is_one = std::abs(at_[offset] - one) <= tolerance;
    if (!is_one && std::abs(at_[offset] - zero) > tolerance) return false;
    append(is_one);
  }
  return true;
}

void bit_buffer::decodeRaw(int bitsRequested) {
  // The full buffer is refused here and nowhere else.
  if (nBit_ + bitsRequested >= kMostBits) {
    overrun("nBit+bitsRequested < sizeof(cBits)*8", __func__);
  }
  while (bitsRequested > 0 && !at_end()) {
    const int levels = std::max(static_cast<int>(std::lround(*at_ / threshold)), 1);
    const bool mark = (at_ - begin_) % 2 == 0;
    for (; bitsRequested > 0 && counter_ < levels; ++counter_, --bitsRequested) append(mark);
    if (counter_ < levels) return;
    ++at_;
    counter_ = 0;
  }
  for (; bitsRequested > 0; --bitsRequested) append(false);
}

bool bit_buffer::decodeAsync(const float* durations, int count, int words, double bit_us,
                             double tolerance, int data_bits, int stop_bits) {
  if (nBit_ + words * data_bits > kMostBits) overrun("nBit+count <= sizeof(cBits)*8", __func__);
  serial_line line(durations, count, bit_us, tolerance);
  for (; words > 0; --words) {
    if (!line.start() || !line.takes(0, true)) return false;
    for (int n = 1; n <= data_bits; ++n) {
      if (!line.takes(n)) return false;
      append(!line.mark());
    }
    for (int n = 1; n <= stop_bits; ++n) {
      if (!line.takes(data_bits + n, false)) return false;
    }
  }
  return true;
}

unsigned bit_buffer::getLsb(int first, int count) const {
  uint64_t window = 0;
  for (int byte = (first + count - 1) / 8; byte >= first / 8; --byte)
    window = window << 8 | cBits_[static_cast<size_t>(byte)];
  return static_cast<unsigned>(window >> first % 8 & ((uint64_t{1} << count) - 1));
}

void bit_buffer::makeMsb() {
  for (int i = 0; i < (nBit_ + 7) / 8; ++i) {
    auto& byte = cBits_[static_cast<size_t>(i)];
    byte = static_cast<uint8_t>(msb(byte, 8));
  }
}

unsigned bit_buffer::getMsb(int first, int count) const {
  const int end = first + count;
  uint64_t window = 0;
  for (int byte = first / 8; byte <= (end - 1) / 8; ++byte)
    window = window << 8 | cBits_[static_cast<size_t>(byte)];
  return static_cast<unsigned>(window >> (7 - (end - 1) % 8) & ((uint64_t{1} << count) - 1));
}

int bit_buffer::msb_number(int first, int count) const {
  return static_cast<int>(msb(getLsb(first, count), count));
}

unsigned msb(unsigned value, int count) {
  unsigned reversed = 0;
  for (int i = 0; i < count; ++i) reversed = reversed << 1 | (value >> i & 1);
  return reversed;
}

}  // namespace analysis
