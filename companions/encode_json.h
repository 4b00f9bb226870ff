// SPDX-License-Identifier: GPL-3.0-or-later
// From what vantrel-json says of a signal back to the protocol and numbers to send.
#pragma once

#include <string_view>

#include "lib/irp/protocols.h"

namespace companions {

/// What to send for a decoded signal.
struct key_code {
  const irp::Protocol* protocol;
  irp::Parameters parameters;
};

/// Finds the protocol of one line of vantrel-json: that of its message, else the first of its
/// interpretations by the signal analysis that can be sent. A definition of another name counts
/// too when its signal is decoded to the same answer. Throws irp::Error with what keeps the line
/// from being sent.
key_code code_of_record(const irp::Protocols& protocols, std::string_view line);

}  // namespace companions
