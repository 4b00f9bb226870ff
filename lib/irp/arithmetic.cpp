// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/arithmetic.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <limits>
#include <numeric>
#include <string>

#include "lib/irp/error.h"

namespace irp {
namespace {

constexpr int64_t kLongestShift = 63;

void refuse_if(bool overflow) {
  if (overflow) throw Error("a number beyond 64 bits");
}

uint64_t magnitude(int64_t value) {
  return value < 0 ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

int64_t whole_number(std::string_view digits, int base) {
  int64_t value = 0;
  const auto [end, fault] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (fault != std::errc() || end != digits.data() + digits.size()) {
    throw Error("not a number of at most 63 bits: " + std::string(digits));
  }
  return value;
}

}  // namespace

int64_t add(int64_t a, int64_t b) {
  int64_t sum = 0;
  refuse_if(__builtin_add_overflow(a, b, &sum));
  return sum;
}

int64_t subtract(int64_t a, int64_t b) {
  int64_t difference = 0;
  refuse_if(__builtin_sub_overflow(a, b, &difference));
  return difference;
}

int64_t multiply(int64_t a, int64_t b) {
  int64_t product = 0;
  refuse_if(__builtin_mul_overflow(a, b, &product));
  return product;
}

int64_t negate(int64_t a) {
  return subtract(0, a);
}

int64_t divide(int64_t a, int64_t b) {
  if (b == 0) throw Error("division by zero");
  if (b == -1) return negate(a);  // the only quotient that can be too large
  return a / b - ((a % b != 0 && (a < 0) != (b < 0)) ? 1 : 0);
}

int64_t remainder(int64_t a, int64_t b) {
  return subtract(a, multiply(b, divide(a, b)));
}

int64_t power(int64_t base, int64_t exponent) {
  if (exponent < 0) throw Error("a negative exponent");
  int64_t result = 1;
  for (;;) {
    if (exponent % 2 == 1) result = multiply(result, base);
    exponent /= 2;
    if (exponent == 0) return result;
    base = multiply(base, base);
  }
}

int64_t shift_left(int64_t value, int64_t count) {
  if (count < 0 || count >= kLongestShift) throw Error("a shift by " + std::to_string(count));
  return multiply(value, int64_t{1} << count);
}

int64_t shift_right(int64_t value, int64_t count) {
  if (count < 0) throw Error("a shift by " + std::to_string(count));
  return value >> std::min(count, kLongestShift);
}

int64_t one_bits(int64_t value) {
  return std::popcount(magnitude(value));
}

int64_t mask(int64_t width) {
  if (width < 0 || width > kMostBits) throw Error("a field of " + std::to_string(width) + " bits");
  return (int64_t{1} << width) - 1;
}

int64_t reversed(int64_t value, int64_t width) {
  int64_t result = 0;
  for (int64_t i = 0; i < width; ++i) result = result << 1 | (value >> i & 1);
  return result;
}

Rational reduced(int64_t numerator, int64_t denominator) {
  if (denominator < 0) {
    numerator = negate(numerator);
    denominator = negate(denominator);
  }
  const int64_t common = std::max<int64_t>(1, std::gcd(numerator, denominator));
  return {numerator / common, denominator / common};
}

Rational operator+(Rational a, Rational b) {
  return reduced(add(multiply(a.numerator, b.denominator), multiply(b.numerator, a.denominator)),
                 multiply(a.denominator, b.denominator));
}

Rational operator-(Rational a) {
  return {negate(a.numerator), a.denominator};
}

Rational operator-(Rational a, Rational b) {
  return a + -b;
}

Rational operator*(Rational a, Rational b) {
  return reduced(multiply(a.numerator, b.numerator), multiply(a.denominator, b.denominator));
}

Rational absolute(Rational a) {
  return a.numerator < 0 ? -a : a;
}

int rounded(Rational length) {
  const Rational a = absolute(length);
  const int64_t nearest = add(multiply(2, a.numerator), a.denominator) / multiply(2, a.denominator);
  if (nearest > std::numeric_limits<int>::max()) throw Error("a duration of over half an hour");
  return static_cast<int>(nearest);
}

Rational number(std::string_view text) {
  if (text.starts_with("0b")) return {whole_number(text.substr(2), 2), 1};
  if (text.starts_with("0x")) return {whole_number(text.substr(2), 16), 1};
  const size_t point = text.find('.');
  if (point == std::string_view::npos) return {whole_number(text, 10), 1};
  const std::string digits = std::string(text.substr(0, point)).append(text.substr(point + 1));
  const auto decimals = static_cast<int64_t>(text.size() - point - 1);
  return reduced(whole_number(digits, 10), power(10, decimals));
}

}  // namespace irp
