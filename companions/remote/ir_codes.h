// SPDX-License-Identifier: GPL-3.0-or-later
// From what the signal analysis says of a signal to the codes of .ir remote files.
#pragma once

#include <optional>

#include "companions/formats/pattern.h"
#include "companions/remote/identity.h"

namespace companions {

/// The code that stands for a frame: one that, sent, gets the same answer of the signal analysis.
/// Nothing where the form has no such code.
std::optional<ir_code> certain_code(const identity& frame);

}  // namespace companions
