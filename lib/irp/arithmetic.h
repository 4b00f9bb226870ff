// SPDX-License-Identifier: GPL-3.0-or-later
// Arithmetic that never wraps: a result beyond 64 bits throws Error, and so does a division by
// zero. Times are exact fractions of a µs until they are handed out rounded.
#pragma once

#include <cstdint>
#include <string_view>

namespace irp {

constexpr int64_t kMostBits = 62;  // of one field; leaves room for sign and sums

int64_t add(int64_t a, int64_t b);
int64_t subtract(int64_t a, int64_t b);
int64_t multiply(int64_t a, int64_t b);
int64_t negate(int64_t a);
/// Rounded down, as the remainder is never negative for a positive divisor.
int64_t divide(int64_t a, int64_t b);
int64_t remainder(int64_t a, int64_t b);
int64_t power(int64_t base, int64_t exponent);
int64_t shift_left(int64_t value, int64_t count);
int64_t shift_right(int64_t value, int64_t count);
int64_t one_bits(int64_t value);  // of the magnitude

/// `width` one bits. Throws when a field cannot be that wide.
int64_t mask(int64_t width);
/// The `width` lowest bits in reverse.
int64_t reversed(int64_t value, int64_t width);

/// An exact number, in lowest terms; the denominator is positive.
struct Rational {
  int64_t numerator = 0, denominator = 1;
};

Rational reduced(int64_t numerator, int64_t denominator);
Rational operator+(Rational a, Rational b);
Rational operator-(Rational a);
Rational operator-(Rational a, Rational b);
Rational operator*(Rational a, Rational b);
Rational absolute(Rational a);
/// The magnitude, to the nearest.
int rounded(Rational length);

/// "2.6", "0x1F", "0b11", "12"
Rational number(std::string_view text);

}  // namespace irp
