// SPDX-License-Identifier: GPL-3.0-or-later
// Command lines from a file or from standard input.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "lib/libcmds/cmds.h"
#include "lib/libfile/getline.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/output.h"
#include "lib/libutil/owned.h"
#include "lib/libutil/startup.h"

namespace {

constexpr size_t kLineSize = 1024;

struct close_script {
  void operator()(FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

struct free_block {
  void operator()(char* block) const { std::free(block); }
};

int script_handler(int argc, const char** argv, const cmd* cmd, void* appdata,
                   dictionary* /*opts*/) {
  if (argc < 1) {
    _log(1, "[E] %s(%d): %s: no file specified\n", __func__, __LINE__, cmd->name);
    return -1;
  }
  const bool from_stdin = std::strcmp(argv[0], "-") == 0;
  const owned_file file(from_stdin ? stdin : std::fopen(argv[0], "re"));
  if (file == nullptr) {
    std::perror("could not open script file");
    return -1;
  }
  const owned_block<char> line(static_cast<char*>(std::malloc(kLineSize)));
  if (line == nullptr) {
    std::perror("could not allocate line buffer");
    return -1;
  }
  ssize_t length = 0;
  for (int number = 1; (length = fgetline(file.get(), line.get(), kLineSize)) >= 0; number++) {
    if (length == 0 || *line == '#') continue;
    if (run_cmd_line(line.get(), appdata) != 0) {
      if (output::reader_has_gone()) return -1;
      _log(1, "[E] %s(%d): %s: an error occured with line #%d\n", __func__, __LINE__, cmd->name,
           number);
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
