// SPDX-License-Identifier: GPL-3.0-or-later
// A protocol definition in IRP notation, parsed:
//
//   {carrier, unit, bit order}<bitspec>(stream)repeat{definitions}[parameters]
//
// All of the notation that protocols.irp uses is understood: nested bitspecs and streams, durations
// in units, µs (u), ms (m) and carrier periods (p), extents (^), fields that are complemented (~),
// reversed (F:-6) or taken from the middle (F:4:4), expressions, assignments between frames,
// variations ([a][b]), the number of one bits (#F).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "lib/irp/expression.h"

namespace irp {

/// A parameter of a protocol: its range, and the value it takes when it is not given.
struct Parameter {
  std::string name;
  int64_t low = 0, high = 0;
  ExpressionPtr preset;     // null: the parameter must be given
  std::string preset_text;  // as it is written, without blanks
};

struct Duration {
  enum class Kind { kMark, kSpace, kExtent } kind;  // an extent ends a frame of that length
  ExpressionPtr length;
  char suffix;  // '\0': in the protocol's unit
};

struct Assignment {
  std::string name;
  ExpressionPtr value;
};

struct Stream {
  struct Choice;
  using Item = std::variant<Duration, Field, Assignment, std::shared_ptr<const Choice>,
                            std::shared_ptr<const Stream>>;
  using Items = std::vector<Item>;
  /// [a][b]: a in the first frame, b in later ones.
  struct Choice {
    std::vector<Items> choices;
  };

  std::vector<Items> bitspec;  // empty: the one around it holds
  Items body;
  int64_t least = 1;     // passes
  bool endless = false;  // more of them while the key is held
};

struct Definition {
  int carrier_hz = 0;  // 0: not modulated
  bool most_significant_first = false;
  std::map<char, Rational> scale;  // µs per unit of a suffix; '\0' is the protocol's own unit
  Stream stream;
  std::map<std::string, ExpressionPtr, std::less<>> names;
  std::vector<Parameter> parameters;
};

/// Both throw SyntaxError for a text that is not IRP notation.
Definition parse_definition(std::string_view text);
ExpressionPtr parse_expression(std::string_view text);

/// The value of UINT8_MAX and its like, the only names that need no definition; else throws Error.
int64_t constant(std::string_view name);

}  // namespace irp
