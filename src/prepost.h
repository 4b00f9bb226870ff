// SPDX-License-Identifier: GPL-3.0-or-later
// What runs before and after the commands of an invocation.
#pragma once

#include "src/appdata.h"

/// A hook returns 0 for success.
using hook = int (*)(appdata_priv* appdata);

/// Run in order up to a null, before the first command and after the last.
extern const hook precmdfuncs[];
extern const hook postcmdfuncs[];

/// The index of the first hook that fails, after which none runs; -1 when all succeed.
int run_hooks(const hook* hooks, appdata_priv* appdata);
