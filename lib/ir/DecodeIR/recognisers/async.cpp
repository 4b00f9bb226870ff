// SPDX-License-Identifier: GPL-3.0-or-later
// Asynchronous serial codes.
//
// The air conditioners' and keyboards' codes that send bytes with a start and a stop bit, one bit
// per 840 µs or so ("AirB", "AirAsync"), have no public definition that says what the bytes mean or
// how they are checked, and any train of long pulses would fit their framing. So these members
// keep their places in the table and find nothing, and tryAsync returns at once.
#include "lib/ir/DecodeIR/signal.h"

void Signal::tryAsync() {}

void Signal::tryAirboard() {}

void Signal::tryAirAsync() {}
