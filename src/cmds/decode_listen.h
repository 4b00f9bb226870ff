// SPDX-License-Identifier: GPL-3.0-or-later
// `decode --listen`: patterns from the device.
#pragma once

#include "src/appdata.h"

/// True when there is a device whose firmware can report what it hears: version 4.7 or later.
bool can_decode_live(const appdata_priv& session);

/// Prints and decodes every pattern that the device hears, until the wait for a lost device
/// fails; then that negative result. REQUIRES: can_decode_live(session).
int decode_listen(appdata_priv& session);
