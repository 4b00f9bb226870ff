// SPDX-License-Identifier: GPL-3.0-or-later
// Sets the scene in a program that loads the fake as a shared library: FAKE_USB holds the script.
#include <cstdlib>

#include "tests/support/fake_usb.h"
#include "tests/support/fake_world.h"

[[gnu::constructor]] static void play_script_of_environment() {
  const fake_usb::library_call here;
  if (const char* script = std::getenv("FAKE_USB")) fake_usb::play(script);
}
