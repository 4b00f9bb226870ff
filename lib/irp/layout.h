// SPDX-License-Identifier: GPL-3.0-or-later
// What a definition sends first, as sections of bit fields: the shape that a received message is
// compared with.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "lib/irp/protocol.h"

namespace irp {

struct LayoutField {
  const Field* field;  // of the definition
  size_t width;
};

struct LayoutSection {
  std::vector<int> lead_in;  // µs, marks and spaces in turn, a mark first
  std::vector<LayoutField> fields;
  size_t bits = 0;  // of all fields
  int gap_us = 0;   // 0: it depends on what was sent
};

/// The first pass of a definition, bitless sections put into the lead-in of the next one. Nothing
/// for a definition that cannot be read backwards: its symbols are not each a mark and a space,
/// longer ones for higher values, or the shape depends on the numbers sent.
std::optional<std::vector<LayoutSection>> layout(const Protocol& protocol);

}  // namespace irp
