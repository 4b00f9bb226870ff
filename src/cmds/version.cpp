// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>

#include "lib/libcmds/cmds.h"
#include "lib/libutil/startup.h"
#include "version_info.h"

namespace {

int version(int /*argc*/, const char** /*argv*/, const cmd* /*cmd*/, void* /*appdata*/,
            dictionary* opts) {
  if (dict_has_key(opts, "date") != 0) {
    std::printf("Build Date: %s\nVersion:    ", kBuildDate);
  } else if (dict_has_key(opts, "pretty") != 0) {
    std::printf("Version: ");
  }
  if (dict_has_key(opts, "branch") != 0) {
    std::printf("%s (%s)\n", kVersionText, kScmBranch);
  } else {
    std::printf("%s\n", kVersionText);
  }
  return 0;
}

const cmd_opt version_opts[] = {
    {"pretty", "print version with context", 'p', "pretty"},
    {"date", "print build date", 'd', "date"},
    {"branch", "show the SCM branch", 'b', "branch"},
    {nullptr, nullptr, 0, nullptr},
};

const cmd cmd_entry_version = {
    .name = "version",
    .handler = version,
    .summary = "print the version",
    .help = "usage: version",
    .priv = nullptr,
    .options = version_opts,
};

cmd_mgr version_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__version() {
  version_mgr.cmd = &cmd_entry_version;
  _register_cmd(&version_mgr);
}

}  // namespace
