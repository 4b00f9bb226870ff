// SPDX-License-Identifier: GPL-3.0-or-later
// Command lines from a file or from standard input.
#include <cstring>
#include <optional>

#include "lib/libcmds/cmds.h"
#include "lib/libfile/line_reader.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/output.h"
#include "lib/libutil/startup.h"

namespace {

int script_handler(int argc, const char** argv, const cmd* cmd, void* appdata,
                   dictionary* /*opts*/) {
  if (argc < 1) {
    _log(1, "[E] %s(%d): %s: no file specified\n", __func__, __LINE__, cmd->name);
    return -1;
  }
  const bool from_stdin = std::strcmp(argv[0], "-") == 0;
  std::optional<line_reader> script = line_reader::open(from_stdin ? nullptr : argv[0]);
  if (!script) return -1;
  while (script->next()) {
    if (script->was_cut()) {
      _log(1, "[E] %s(%d): %s: line #%d is longer than %zu characters, the rest is a new line\n",
           __func__, __LINE__, cmd->name, script->number(), line_reader::kLongestLine);
    }
    if (script->length() == 0 || *script->line() == '#') continue;
    if (run_cmd_line(script->line(), appdata) != 0) {
      if (output::reader_has_gone()) return -1;
      _log(1, "[E] %s(%d): %s: an error occured with line #%d\n", __func__, __LINE__, cmd->name,
           script->number());
      return -1;
    }
  }
  return 1;
}

const cmd cmd_entry_script = {
    .name = "script",
    .handler = script_handler,
    .summary = "run a command script",
    .help =
        "usage: script <file>\n"
        "  a - for <file> will read from stdin",
    .priv = nullptr,
    .options = nullptr,
};

cmd_mgr script_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__script() {
  script_mgr.cmd = &cmd_entry_script;
  _register_cmd(&script_mgr);
}

}  // namespace
