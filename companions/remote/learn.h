// SPDX-License-Identifier: GPL-3.0-or-later
// Learning the keys of a remote, in talk with whoever holds it.
#pragma once

#include <string>

#include "companions/remote/transceiver.h"

namespace companions {

/// Asks on standard output for the name of a key, hears presses of it until two agree, writes it
/// into the file, and asks for the next one until an empty line or the end of standard input. False
/// when something was not learnt. Throws std::runtime_error for a file that cannot be read or
/// written.
bool learn(const std::string& path, const transceiver& with);

}  // namespace companions
