// SPDX-License-Identifier: GPL-3.0-or-later
// Renders a press of a key, in the text forms that `vantrel sendir` takes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lib/irp/protocol.h"

namespace companions {

/// What is sent when a key is pressed, in µs, mark first.
struct press {
  std::vector<int> whole;   // all of it, without the silence behind it
  std::vector<int> once;    // what is sent first
  std::vector<int> repeat;  // what is sent while the key is held, empty for nothing
  bool has_ending;          // something else is sent when the key is released
  int carrier_hz;           // 0: not modulated
};

/// The key is held for `repeats` more frames than a short press sends. Throws irp::Error when the
/// parameters are not the protocol's.
press render_press(const irp::Protocol& protocol, const irp::Parameters& parameters, int repeats);

/// The text for this option of sendir, "raw", "csv" or "pronto". Throws irp::Error for a press that
/// sendir would refuse.
std::string sendir_text(const press& sent, std::string_view option);

/// A parameter as it is typed, "F=8" or "F=0x1F", put into `parameters`. Throws irp::Error.
void add_parameter(std::string_view text, irp::Parameters& parameters);

}  // namespace companions
