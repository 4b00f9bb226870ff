// SPDX-License-Identifier: GPL-3.0-or-later
// The protocols of definition files such as protocols.irp: name TAB definition, one per line.
// Empty lines and lines that begin with "#" are skipped, but "#!decoded" and "#!messages": the
// definitions between these two are those of codes that the decoders name, which need not be looked
// for among messages.
#pragma once

#include <cstddef>
#include <istream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lib/irp/protocol.h"

namespace irp {

/// A line that is no definition; line and column (of characters) count from 1.
struct BadDefinition {
  size_t line, column;
  std::string what;
};

/// Reads a line without its end; false at the end of the text. Of a longer line than `longest`
/// characters one more is kept.
bool next_line(std::istream& text, std::string& line, size_t longest);

class Protocols {
 public:
  static constexpr size_t kLongestLine = size_t{1} << 14;  // characters; longer ones are a fault

  /// Adds the definitions of a text. One of a name that is there already takes its place. Returns
  /// what could not be read; the other lines are taken.
  std::vector<BadDefinition> add(std::istream& text);

  /// The protocol of this name, or else of this name in other letters' case; null for none.
  const Protocol* find(std::string_view name) const;

  /// Whether the decoders name its codes.
  bool is_decoded(const Protocol& protocol) const { return decoded_.contains(protocol.name()); }

  /// In the order of the files.
  const std::vector<std::unique_ptr<const Protocol>>& all() const { return protocols_; }

 private:
  void add(std::unique_ptr<const Protocol> protocol, bool decoded);

  std::vector<std::unique_ptr<const Protocol>> protocols_;
  std::map<std::string, size_t, std::less<>> places_;  // by name
  std::set<std::string> decoded_;                      // names
};

}  // namespace irp
