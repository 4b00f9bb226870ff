// SPDX-License-Identifier: GPL-3.0-or-later
// No public definition says what this protocol sends; the member keeps its place in the table and
// finds nothing.
#include "lib/ir/DecodeIR/signal.h"

void Signal::tryAK() {}
