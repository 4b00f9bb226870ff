// SPDX-License-Identifier: GPL-3.0-or-later
// What every command handler receives as its application data.
#pragma once

namespace transport {
struct dev_t;  // in a namespace because the C library has a global type of this name
}

struct appdata_priv {
  transport::dev_t* dev;  // the open device, null when there is none
};

/// The one instance; the start and stop hooks open and close its device.
extern appdata_priv apppriv;
