// SPDX-License-Identifier: GPL-3.0-or-later
// The order in which modules register themselves before main.
//
// A module registers in a constructor function with a priority from this list:
//
//   [[gnu::constructor(startup::kCommand)]] static void REGFUNC__version() { … }
//
// The linker sorts such functions by priority over all object files, so the order below holds
// whatever the link order is. Lower numbers run first. A constructor may rely on everything
// above it here, and only on constant-initialised data of its own.
#pragma once

namespace startup {

enum priority : int {
  kLogging = 101,

  kCommand = 200,  // the registry sorts commands by name, so they share one priority

  kFirstInfrared = 300,  // lib/ir/startup.h goes on from here
};

}  // namespace startup
