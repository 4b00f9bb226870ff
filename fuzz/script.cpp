// SPDX-License-Identifier: GPL-3.0-or-later
// Any text as a script: it ends, and with one of the two answers of a handler.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "fuzz/input.h"
#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "src/appdata.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  set_loglevel(0);
  const bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr;
  return quiet && std::freopen("/dev/null", "r", stdin) != nullptr ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int file = memfd_create("script", 0);
  require(write(file, data, size) == static_cast<ssize_t>(size));
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const char* argv[] = {path.c_str()};
  appdata_priv no_device = {};
  const int result = run_cmd("script", 1, argv, &no_device);
  require(result == 0 || result == 1);
  close(file);
  return 0;
}
