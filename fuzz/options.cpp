// SPDX-License-Identifier: GPL-3.0-or-later
// The words of any line as a command's options: the cursor stays among them.
#include "fuzz/input.h"
#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"

namespace {

const cmd_opt opts_table[] = {
    {"read", "", 'r', "read"}, {"time", "", 't', "time"},      {"short", "", 'x', nullptr},
    {"long", "", 0, "long"},   {nullptr, nullptr, 0, nullptr},
};
const cmd fuzzed = {"fuzzed", nullptr, "", "", nullptr, opts_table};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  set_loglevel(0);
  const std::unique_ptr<char[]> line = exact_text(data, size);
  const char* argv[kMaxWords + 1];
  const unsigned words = tokenize_cmd_string(line.get(), argv);
  unsigned cursor = 0;
  dictionary* const opts = cmd_getopt(&fuzzed, static_cast<int>(words), argv, &cursor);
  require(cursor <= words && opts->entries <= 4);
  for (unsigned i = 0; i < words; i++) {
    const bool option = argv[i][0] == '-' && argv[i][1] != '\0';
    if (i < cursor) require(option);
    if (i == cursor) require(!option);
  }
  for (const cmd_opt* opt = opts_table; opt->name != nullptr; opt++) {
    size_t value_size = 0;
    const auto* const value =
        static_cast<const char*>(dict_value_for_key(opts, opt->name, &value_size));
    if (value != nullptr && value_size > 0) require(std::strlen(value) == value_size - 1);
  }
  delete_dict(opts);
  return 0;
}
