// SPDX-License-Identifier: GPL-3.0-or-later
// Any text as a pattern of one option of decode, through every decoder. Built once per OPTION.
#include <cstdio>
#include <string>

#include "fuzz/input.h"
#include "lib/ir/result.h"
#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "src/appdata.h"

namespace {

// A result is one whole line.
void check_result(const ir_result& result, void* /*user*/) {
  require(!result.line.empty() && result.line.find('\n') == result.line.size() - 1);
  require(result.line.substr(0, 3) == ":: " || result.line == "NEC Repeat\n");
  require(!result.name.empty());
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  set_loglevel(0);
  set_result_sink(check_result, nullptr);
  return std::freopen("/dev/null", "w", stdout) != nullptr ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string option = std::string("--" OPTION "=") + exact_text(data, size).get();
  const auto exact = std::make_unique<char[]>(option.size() + 1);
  std::memcpy(exact.get(), option.c_str(), option.size() + 1);
  const char* argv[] = {exact.get()};
  appdata_priv no_device = {};
  run_cmd("decode", 1, argv, &no_device);
  return 0;
}
