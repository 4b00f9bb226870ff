// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/signal.h"

void Signal::trySomfy() {}
