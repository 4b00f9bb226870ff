// SPDX-License-Identifier: GPL-3.0-or-later
// Renders protocol definitions in IRP notation: definition + parameters -> durations.
//
//   const irp::Protocol& nec = irp::protocol("NEC1");            // of tests/data/protocols.irp
//   std::vector<int> frame = nec.render({{"D", 4}, {"F", 8}}).whole();
//   // 9024, 4512, 564, 564, ... : µs, mark first, marks and spaces in turn
//
// The notation: {carrier, unit, bit order}<bitspec>(stream)repeat{definitions}[parameters]. All
// of it that the definitions use is understood: nested bitspecs and streams, durations in units,
// µs (u), ms (m) and carrier periods (p), extents (^), fields that are complemented (~), reversed
// (F:-6) or taken from the middle (F:4:4), expressions, assignments between frames, variations
// ([a][b]), the number of one bits (#F). Times stay exact fractions of a µs until they are handed
// out rounded. Everything that is wrong with a definition or its parameters throws irp::Error.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace irp {

struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// An exact number, in lowest terms; the denominator is positive.
struct Rational {
  int64_t numerator = 0, denominator = 1;
};

using Parameters = std::map<std::string, int64_t, std::less<>>;

/// Looks a name up; throws Error when it is not set.
using Lookup = std::function<int64_t(std::string_view)>;
/// A parsed expression, and one whose value may be a fraction (only as the length of a duration).
using Expression = std::function<int64_t(const Lookup&)>;
using Length = std::function<Rational(const Lookup&)>;

/// Parses an expression over the fields of a protocol, such as "2*F + (D>>4)" or "255-F:-8".
/// The operators bind as in C, so & | ^ need brackets beside comparisons; a field binds tightest.
Expression parse_expression(std::string_view text);

/// A field of a protocol: its range, and the value it takes when it is not given.
struct Parameter {
  std::string name;
  int64_t low = 0, high = 0;
  Expression preset;  // empty: the parameter must be given
};

enum class Segment { kIntro, kRepeat, kEnding };

/// One signal. Durations in µs, mark first, marks and spaces in turn.
struct Rendering {
  struct Part {
    Segment kind;
    std::vector<int> durations;  // never empty
  };
  std::vector<Part> parts;
  std::vector<int> joined;  // all parts; neighbours of one kind at a seam are one duration

  const std::vector<int>& whole() const { return joined; }
};

class Protocol {
 public:
  Protocol(std::string name, std::string_view definition);
  ~Protocol();
  Protocol(Protocol&&) noexcept;

  const std::string& name() const { return name_; }
  /// Hz; 0 for a protocol that is not modulated.
  int carrier() const { return carrier_; }
  const std::vector<Parameter>& parameters() const { return parameters_; }

  /// `given` with the missing parameters at their presets. Throws when one has no preset, is out
  /// of its range, or is not a parameter of this protocol.
  Parameters complete(const Parameters& given) const;
  /// How names are looked up: among `given` (which must outlive the lookup), then the presets,
  /// then the protocol's own definitions.
  Lookup lookup(const Parameters& given) const;

  /// The intro, `repeats` passes of the repeated part, and the ending.
  Rendering render(const Parameters& given, int repeats = 1) const;

 private:
  friend class Parser;
  friend class Player;
  struct Stream;

  std::string name_;
  int carrier_ = 0;
  bool most_significant_first_ = false;
  std::map<char, Rational> scale_;  // µs per unit of a suffix; '\0' is the protocol's own unit
  std::unique_ptr<Stream> stream_;
  std::map<std::string, Expression, std::less<>> definitions_;
  std::vector<Parameter> parameters_;
};

/// The protocols of tests/data/protocols.irp, by name; protocol() throws for an unknown one.
const std::map<std::string, Protocol, std::less<>>& protocols();
const Protocol& protocol(std::string_view name);

/// "9024,4512,564": the text form of durations.
std::string csv(const std::vector<int>& durations);

}  // namespace irp
