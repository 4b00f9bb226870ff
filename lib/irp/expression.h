// SPDX-License-Identifier: GPL-3.0-or-later
// Expressions over the fields of a protocol, such as "2*F + (D>>4)" or "255-F:-8", as trees: they
// are evaluated to render a signal and looked into to read one.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "lib/irp/arithmetic.h"

namespace irp {

/// The value of a name; throws Error when it is not set.
using Lookup = std::function<int64_t(std::string_view)>;

struct Expression;
using ExpressionPtr = std::shared_ptr<const Expression>;

struct Number {
  Rational value;
};

struct Name {
  std::string text;
};

struct Unary {
  char symbol;  // '-', '!' or '#', the number of one bits
  ExpressionPtr operand;
};

struct Operator {
  std::string_view symbol;
  int level;  // the loosest is 0
  int64_t (*apply)(int64_t, int64_t);
};

/// Operators of one level, applied from left to right.
struct Chain {
  ExpressionPtr first;
  std::vector<std::pair<const Operator*, ExpressionPtr>> rest;
};

/// [~]value[:[-]width[:chop]], or value::chop with all bits above.
struct Field {
  bool complemented, reversed;
  ExpressionPtr value;
  ExpressionPtr width;  // null: as wide as it is
  ExpressionPtr chop;   // null: from the lowest bit on
};

struct Expression {
  std::variant<Number, Name, Unary, Chain, Field> node;
};

constexpr int kLoosest = 0;
constexpr int kAdditive = 6;  // the loosest level between the < | > of a bitspec
constexpr int kTightest = 9;  // of the operands themselves

/// The operator of this symbol and level, or null. They bind as in C, so & | ^ need brackets beside
/// comparisons; a field binds tightest.
const Operator* find_operator(std::string_view symbol, int level);

/// Fractions are cut off.
int64_t evaluate(const Expression& expression, const Lookup& get);
int64_t evaluate(const Field& field, const Lookup& get);
/// The value with its fraction, which only a plain number has.
Rational exact_value(const Expression& expression, const Lookup& get);

}  // namespace irp
