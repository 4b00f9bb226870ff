// SPDX-License-Identifier: GPL-3.0-or-later
#include <cstdio>
#include <cstring>

#include "lib/libcmds/cmds.h"
#include "lib/libcmds/module.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/startup.h"

using libcmds::kModule;

namespace {

constexpr int kNameColumn = 14;

void print_commands() {
  std::printf("Commands:\n");
  for (list_head* node = registered_cmds.next; node != &registered_cmds; node = node->next) {
    const cmd* const entry = list_record<cmd_mgr>(node)->cmd;
    std::printf("  %-*s %s\n", kNameColumn, entry->name, entry->summary);
  }
}

/// Every form takes the same 19 columns; a row without a form takes none.
void print_option(const cmd_opt& opt) {
  std::printf("  ");
  if (opt.shortopt != 0 && opt.longopt != nullptr) {
    std::printf("-%c, --%-13s", opt.shortopt, opt.longopt);
  } else if (opt.shortopt != 0) {
    std::printf("-%c                 ", opt.shortopt);
  } else if (opt.longopt != nullptr) {
    std::printf("--%-17s", opt.longopt);
  }
  std::printf("  %s\n", opt.description);
}

int help(int argc, const char** argv, const cmd* /*cmd*/, void* /*appdata*/, dictionary* /*opts*/) {
  if (argc == 0) {
    print_commands();
    return 0;
  }
  const cmd* const entry = find_cmd(argv[0]);
  if (entry == nullptr) {
    _log(1, "[E] %s %s(%d): %s: command `%s' not found.\n", kModule, __func__, __LINE__, "help",
         argv[0]);
    return -1;
  }
  std::printf("Help for `%s' command:\n%s\n", entry->name, entry->help);
  if (entry->options != nullptr) {
    std::printf("OPTIONS:\n");
    for (const cmd_opt* opt = entry->options; opt->name != nullptr; opt++) print_option(*opt);
  }
  return argc;
}

const cmd cmd_entry_help = {
    .name = "help",
    .handler = help,
    .summary = "Show this help. Also try `help <command>`",
    .help =
        "usage: help [command]\n"
        "  `help' with no arguments will show a list of all commands.\n"
        "  `help <command>' will show a detailed help for `command'",
    .priv = nullptr,
    .options = nullptr,
};

cmd_mgr help_mgr;

[[gnu::constructor(startup::kCommand)]] void REGFUNC__help() {
  help_mgr.cmd = &cmd_entry_help;
  _register_cmd(&help_mgr);
}

}  // namespace
