// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/expression.h"

#include <algorithm>
#include <array>

namespace irp {
namespace {

constexpr auto kOperators = std::to_array<Operator>({
    {"|", 0, [](int64_t a, int64_t b) { return a | b; }},
    {"^", 1, [](int64_t a, int64_t b) { return a ^ b; }},
    {"&", 2, [](int64_t a, int64_t b) { return a & b; }},
    {"==", 3, [](int64_t a, int64_t b) { return int64_t{a == b}; }},
    {"!=", 3, [](int64_t a, int64_t b) { return int64_t{a != b}; }},
    {"<", 4, [](int64_t a, int64_t b) { return int64_t{a < b}; }},
    {">", 4, [](int64_t a, int64_t b) { return int64_t{a > b}; }},
    {"<=", 4, [](int64_t a, int64_t b) { return int64_t{a <= b}; }},
    {">=", 4, [](int64_t a, int64_t b) { return int64_t{a >= b}; }},
    {"<<", 5, shift_left},
    {">>", 5, shift_right},
    {"+", kAdditive, add},
    {"-", kAdditive, subtract},
    {"*", 7, multiply},
    {"/", 7, divide},
    {"%", 7, remainder},
    {"**", 8, power},
});

struct Evaluation {
  const Lookup& get;

  int64_t operator()(const Number& number) const {
    return number.value.numerator / number.value.denominator;
  }
  int64_t operator()(const Name& name) const { return get(name.text); }
  int64_t operator()(const Unary& unary) const {
    const int64_t value = evaluate(*unary.operand, get);
    if (unary.symbol == '-') return negate(value);
    return unary.symbol == '!' ? int64_t{value == 0} : one_bits(value);
  }
  int64_t operator()(const Chain& chain) const {
    int64_t value = evaluate(*chain.first, get);
    for (const auto& [operation, operand] : chain.rest) {
      value = operation->apply(value, evaluate(*operand, get));
    }
    return value;
  }
  int64_t operator()(const Field& field) const { return evaluate(field, get); }
};

}  // namespace

const Operator* find_operator(std::string_view symbol, int level) {
  const auto* found = std::ranges::find_if(kOperators, [&](const Operator& candidate) {
    return candidate.level == level && candidate.symbol == symbol;
  });
  return found == kOperators.end() ? nullptr : found;
}

int64_t evaluate(const Expression& expression, const Lookup& get) {
  return std::visit(Evaluation{get}, expression.node);
}

int64_t evaluate(const Field& field, const Lookup& get) {
  int64_t value = evaluate(*field.value, get);
  if (field.chop) value = shift_right(value, evaluate(*field.chop, get));
  if (!field.width) return field.complemented ? ~value : value;
  const int64_t width = evaluate(*field.width, get);
  value &= mask(width);
  if (field.reversed) value = reversed(value, width);
  return field.complemented ? ~value & mask(width) : value;
}

Rational exact_value(const Expression& expression, const Lookup& get) {
  if (const auto* number = std::get_if<Number>(&expression.node)) return number->value;
  return {evaluate(expression, get), 1};
}

}  // namespace irp
