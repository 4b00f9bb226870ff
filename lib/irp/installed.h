// SPDX-License-Identifier: GPL-3.0-or-later
// The definitions that come with the programs: share/vantrel/protocols.irp, found from where the
// running program stands, so that the tree can be moved. In a build tree it stands beside them.
#pragma once

#include <string>

#include "lib/irp/protocols.h"

namespace irp {

/// Throws Error when the file is missing or holds anything that is no definition.
Protocols installed_protocols();

}  // namespace irp
