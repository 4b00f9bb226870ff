// SPDX-License-Identifier: GPL-3.0-or-later
// The bits of a frame, and the ways to read them from its durations. One buffer for every code:
// bit 0 is the first one sent, and stands in the lowest position of the first byte.
//
//   bit_buffer bits(durations, count);   // µs or units, mark first; they have to outlive the
//   buffer bits.threshold = 1.5F; bits.decodeX(12);                    // a one where a mark is
//   longer than that bits.getLsb(0, 7)                    // seven bits, the first one sent the
//   lowest
//
// The writers append. They stop the program with an assertion rather than overrun the buffer, in
// release builds too: a reader that asks for more bits than fit is wrong.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace analysis {

class bit_buffer {
 public:
  static constexpr int kMostBits = 128;

  float threshold = 0;  // what decodeX and decodeX2 decide by; the length of a level for decodeRaw

  bit_buffer() = default;
  bit_buffer(const float* durations, int count) : begin_(durations), end_(durations + count) {
    cleanup();
  }

  /// Forgets all bits and goes back to the first duration.
  void cleanup();
  /// Goes on with this duration; even ones are marks.
  void skip_to(int duration) {
    at_ = begin_ + duration;
    counter_ = 0;
  }

  /// One bit for each of `count` bursts: whether its mark (decodeX) or mark and space together
  /// (decodeX2) exceed the threshold. REQUIRES: there are so many bursts.
  void decodeX(int count);
  void decodeX2(int count);
  /// One bit for each of `count` bursts by its mark (offset 0) or its space (offset 1), which is to
  /// be `zero` or `one` long, within the tolerance. False at the first that is neither.
  /// REQUIRES: there are so many bursts, and twice the tolerance is less than what parts the two.
  bool checkDecodeX(int offset, int count, float zero, float one, float tolerance);
  /// One bit for each of `bitsRequested` levels of threshold's length, ones for marks. A duration
  /// holds the nearest number of levels, at least one; behind the last mark all is space.
  void decodeRaw(int bitsRequested);
  /// Asynchronous serial words, which begin with a start bit (a mark), carry `data_bits` bits (a
  /// space is a one), least significant first, and end with `stop_bits` spaces or more. `count`
  /// durations from `durations` on are read, `words` words of them; an edge may be `tolerance` of a
  /// bit of bit_us from its place. False where a word is none.
  bool decodeAsync(const float* durations, int count, int words, double bit_us, double tolerance,
                   int data_bits, int stop_bits);
  /// One bit that its caller has read, or all bits of another buffer.
  void append(bool bit) {
    if (nBit_ >= kMostBits) overrun("nBit+1 <= sizeof(cBits)*8", __func__);
    const auto n = static_cast<unsigned>(nBit_++);
    cBits_[n / 8] |= static_cast<uint8_t>(static_cast<unsigned>(bit) << n % 8);
  }
  void append(const bit_buffer& more);

  /// Whether every mark has been read by the level.
  [[nodiscard]] bool at_end() const { return at_ >= end_; }
  [[nodiscard]] int size() const { return nBit_; }

  /// REQUIRES: 0 <= n < kMostBits.
  [[nodiscard]] unsigned getBit(int n) const {
    const auto place = static_cast<unsigned>(n);
    return unsigned{cBits_[place / 8]} >> place % 8 & 1U;
  }
  /// `count` bits from bit `first` on as a number, the first one sent the lowest.
  /// REQUIRES: count <= 32, first + count <= kMostBits.
  [[nodiscard]] unsigned getLsb(int first, int count) const;
  /// Reverses the bits of every byte, for getMsb; getBit and getLsb are of no use then.
  void makeMsb();
  /// After makeMsb: the same number with the first bit sent the highest.
  [[nodiscard]] unsigned getMsb(int first, int count) const;
  /// A field without makeMsb: a number as answers hold it, its first bit the lowest or the highest.
  [[nodiscard]] int lsb_number(int first, int count) const {
    return static_cast<int>(getLsb(first, count));
  }
  [[nodiscard]] int msb_number(int first, int count) const;

 private:
  [[noreturn]] static void overrun(const char* text, const char* function);

  std::array<uint8_t, kMostBits / 8> cBits_{};
  int nBit_ = 0;
  int counter_ = 0;  // levels already taken of the current duration
  const float* begin_ = nullptr;
  const float* end_ = nullptr;
  const float* at_ = nullptr;
};

/// The low `count` bits of `value` in reversed order.
[[nodiscard]] unsigned msb(unsigned value, int count);
/// The exclusive-or of all 32 bits: 0 or 1.
[[nodiscard]] inline int parity(unsigned value) {
  return __builtin_parity(value);
}

}  // namespace analysis
