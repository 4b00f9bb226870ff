// SPDX-License-Identifier: GPL-3.0-or-later
// Which protocols can be sent, and what the decoders make of them. It is asked, not written down:
// codes with several numbers are rendered and decoded, and a family counts as knowing a protocol
// when it names all of them and tells every two apart.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "lib/irp/message.h"
#include "lib/irp/protocols.h"

namespace companions {

/// The names that each family gives to codes of a protocol; none where it does not know them.
struct support {
  std::set<std::string> program, analysis, arduino;
  bool message;  // messages of it can be read from its definition
};

/// A press as a receiver delivers it: cut at the gaps that end a signal for the decoders.
std::vector<std::vector<int>> received_pieces(const std::vector<int>& durations);

support support_of(const irp::Protocol& protocol, const irp::MessageReader& messages);

/// One line with tabs between its columns: the protocol, its parameters with their ranges and
/// defaults, and who knows it: "NEC1  D:0..255 S:0..255=255-D F:0..255  ZARVO NEC32; DECODEIR NEC".
std::string support_line(const irp::Protocol& protocol, const support& known);
/// The same as a JSON object on one line. Its keys: protocol, carrier_hz (0: not modulated),
/// parameters [{name, low, high, default}] with the default as an expression or null, program,
/// analysis, arduino (names), message.
std::string support_json(const irp::Protocol& protocol, const support& known);

}  // namespace companions
