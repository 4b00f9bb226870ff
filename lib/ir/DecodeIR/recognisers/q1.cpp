// SPDX-License-Identifier: GPL-3.0-or-later
// The protocol that would be named "?1-%02X-%02X-%02X" has no public definition: nothing says how
// its frames look or what could be checked, so this member keeps its place in the call order and
// finds nothing. A guess would take frames from the recognisers behind it.
#include "lib/ir/DecodeIR/signal.h"

void Signal::tryQ1() {}
