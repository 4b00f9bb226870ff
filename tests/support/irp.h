// SPDX-License-Identifier: GPL-3.0-or-later
// The installed protocol definitions, for tests to render signals from:
//
//   const irp::Protocol& nec = irp::protocol("NEC1");
//   std::vector<int> signal = nec.render({{"D", 4}, {"F", 8}}).whole();
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lib/irp/protocols.h"

namespace irp {

/// The protocols of lib/irp/protocols.irp; protocol() throws for an unknown one.
const Protocols& protocols();
const Protocol& protocol(std::string_view name);

/// "9024,4512,564": the text form of durations.
std::string csv(const std::vector<int>& durations);

}  // namespace irp
