// SPDX-License-Identifier: GPL-3.0-or-later
// Telling which keys of some remotes are pressed, as they are pressed.
#pragma once

#include <string>
#include <vector>

#include "companions/remote/transceiver.h"

namespace companions {

/// Prints a JSON object on a line of its own for every frame that belongs to a key of the files:
///
///   time     UTC, to the ms
///   remote   what the file calls the remote, else the name of the file
///   key      its name
///   event    "pressed", or "held" for what follows while the key is held
///   count    the frames of the press so far
///
/// Goes on until nothing more is heard; false when what hears failed, a file could not be read, or
/// none of them has a key.
bool watch(const std::vector<std::string>& files, const transceiver& with);

}  // namespace companions
