// SPDX-License-Identifier: GPL-3.0-or-later
// Any text typed at the shell, line by line: the shell goes on after each, to the last.
#include <cstdio>

#include "fuzz/input.h"
#include "fuzz/typed_lines.h"
#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "src/appdata.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  set_loglevel(0);
  const bool quiet = std::freopen("/dev/null", "w", stdout) != nullptr;
  return quiet && std::freopen("/dev/null", "r", stdin) != nullptr ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  type_lines({reinterpret_cast<const char*>(data), size});
  appdata_priv no_device = {};
  require(run_cmd("shell", 0, nullptr, &no_device) == 0);
  return 0;
}
