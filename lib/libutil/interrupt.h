// SPDX-License-Identifier: GPL-3.0-or-later
// Ctrl-C: when and where it ends the program.
//
// One rule: SIGINT is noted, and the program ends in its own code, at the next point that it
// passes. So nothing of a library is ever half done then, and whatever has to be said, written out
// or closed can be.
//
// A wait is cut short: its system call returns with EINTR, a read or a write after a moment. A
// signal can come right before the call that it should have cut short, so a timer goes on to cut
// short every further one until the program has ended. The points stand behind whatever may wait
// (a device, a pause, a line, standard output) and once per line and pattern where nothing does.
#pragma once

namespace interrupt {

/// From now on SIGINT is noted. At the next point `end` runs, with SIGINT blocked for good; it
/// ends the process.
void install(void (*end)(int signal));

/// Notes SIGINT again after a library has put handlers of its own in place.
void take_back();

/// Whether SIGINT has come. A library that is not to end the program itself asks this to tell a
/// wait that was cut short from one that failed.
bool noted();

/// A point: ends the program if SIGINT has come.
void checkpoint();

/// For `end`: no wait from here on is cut short.
void let_waits_be();

}  // namespace interrupt
