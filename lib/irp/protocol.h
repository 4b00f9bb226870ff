// SPDX-License-Identifier: GPL-3.0-or-later
// A protocol: its parameters, and the signals that it sends for them.
//
//   const irp::Protocol nec("NEC1", "{38.4k,564}<1,-1|1,-3>(16,-8,D:8,S:8,F:8,~F:8,1,^108m,…");
//   std::vector<int> signal = nec.render({{"D", 4}, {"F", 8}}).whole();
//   // 9024, 4512, 564, 564, ... : µs, mark first, marks and spaces in turn
//
// definition.h says what the notation is. Everything that is wrong with a definition or its
// parameters throws irp::Error.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "lib/irp/definition.h"
#include "lib/irp/error.h"

namespace irp {

using Parameters = std::map<std::string, int64_t, std::less<>>;

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
  Protocol(std::string name, std::string_view definition)
      : name_(std::move(name)), definition_(parse_definition(definition)) {}

  const std::string& name() const { return name_; }
  const Definition& definition() const { return definition_; }
  /// Hz; 0 for a protocol that is not modulated.
  int carrier() const { return definition_.carrier_hz; }
  const std::vector<Parameter>& parameters() const { return definition_.parameters; }

  /// `given` with the missing parameters at their presets. Throws when one has no preset, is out
  /// of its range, or is not a parameter of this protocol.
  Parameters complete(const Parameters& given) const;
  /// How names are looked up: among `given` (which must outlive the lookup), then the presets,
  /// then the protocol's own definitions.
  Lookup lookup(const Parameters& given) const;

  /// The intro, `repeats` passes of the repeated part, and the ending.
  Rendering render(const Parameters& given, int repeats = 1) const;

 private:
  std::string name_;
  Definition definition_;
};

}  // namespace irp
