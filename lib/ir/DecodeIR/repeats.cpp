// SPDX-License-Identifier: GPL-3.0-or-later
// The repeat bookkeeping: what follows the first result of a key press.
#include "lib/ir/DecodeIR/signal.h"

void Signal::decode2() {
  frameCounter_ = 1;
  decode();
}
