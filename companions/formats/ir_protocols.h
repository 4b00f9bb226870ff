// SPDX-License-Identifier: GPL-3.0-or-later
// The protocols that remote files with the extension .ir name, rendered by lib/irp.
#pragma once

#include <optional>
#include <string>

#include "companions/formats/pattern.h"

namespace companions {

/// Renders one press: what is sent first, what while the key is held, the carrier. Says why it
/// cannot; the pattern stays as it is then.
std::optional<std::string> render_code(const ir_code& code, pattern& to);

}  // namespace companions
