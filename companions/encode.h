// SPDX-License-Identifier: GPL-3.0-or-later
// Renders a press of a key, for `vantrel sendir` and in every text form.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companions/formats/form.h"
#include "lib/irp/protocol.h"

namespace companions {

/// What is sent when a key is pressed, in µs, mark first.
struct press {
  std::vector<int> whole = {};   // all of it, without the silence behind it
  int silence_us = 0;            // this silence, 0 where none is defined
  std::vector<int> once = {};    // what is sent first
  std::vector<int> repeat = {};  // what is sent while the key is held, empty for nothing
  bool has_ending = false;       // something else is sent when the key is released
  int carrier_hz = 0;            // 0: not modulated
};

/// The key is held for `repeats` more frames than a short press sends. Throws irp::Error when the
/// parameters are not the protocol's.
press render_press(const irp::Protocol& protocol, const irp::Parameters& parameters, int repeats);

/// The press as the signal to write in this form: in two sequences where the form can hold them.
/// Throws irp::Error for one that the lists of vantrel cannot send.
pattern signal_of(const press& sent, const std::string& name, const form& to);

/// A parameter as it is typed, "F=8" or "F=0x1F", put into `parameters`. Throws irp::Error.
void add_parameter(std::string_view text, irp::Parameters& parameters);

}  // namespace companions
