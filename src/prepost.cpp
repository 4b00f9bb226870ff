// SPDX-License-Identifier: GPL-3.0-or-later
#include "src/prepost.h"

#include "src/common.h"

appdata_priv apppriv = {};

const hook precmdfuncs[] = {
    zarvo_init,
    nullptr,
};

const hook postcmdfuncs[] = {
    zarvo_deinit,
    nullptr,
};

int run_hooks(const hook* hooks, appdata_priv* appdata) {
  for (int i = 0; hooks[i] != nullptr; i++) {
    if (hooks[i](appdata) != 0) return i;
  }
  return -1;
}
