// SPDX-License-Identifier: GPL-3.0-or-later
#include "src/cmds/decode_listen.h"

// Nothing opens a device yet.
bool can_decode_live(const appdata_priv& /*session*/) {
  return false;
}

int decode_listen(appdata_priv& /*session*/) {
  return -1;
}
