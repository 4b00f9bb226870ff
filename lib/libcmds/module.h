// SPDX-License-Identifier: GPL-3.0-or-later
// What the files of this folder share.
#pragma once

namespace libcmds {

// The path that all messages of the folder carry.
constexpr const char* kModule = "lib/libcmds/cmds";

}  // namespace libcmds
