// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libcmds/cmds.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>

#include "lib/libcmds/module.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/output.h"

using libcmds::kModule;

constinit list_head registered_cmds = {&registered_cmds, &registered_cmds};

namespace {

using owned_dict = std::unique_ptr<dictionary, decltype(&delete_dict)>;

const cmd* command_of(list_head* node) {
  return list_record<cmd_mgr>(node)->cmd;
}

/// What the handler returns; a failure too when there was no memory for it or nobody can see what
/// it printed.
int run_handler(const cmd* command, int argc, const char** argv, void* appdata, dictionary* opts) {
  try {
    const int result = command->handler(argc, argv, command, appdata, opts);
    return output::flush() ? result : -EIO;
  } catch (const std::bad_alloc&) {
    _log(1, "[E] %s %s(%d): %s: out of memory\n", kModule, __func__, __LINE__, command->name);
    return -ENOMEM;
  }
}

}  // namespace

void _register_cmd(cmd_mgr* rcmd) {
  list_head* place = registered_cmds.next;
  while (place != &registered_cmds && std::strcmp(rcmd->cmd->name, command_of(place)->name) > 0) {
    place = place->next;
  }
  list_insert(&rcmd->node, place);
}

const cmd* find_cmd(const char* name) {
  for (list_head* node = registered_cmds.next; node != &registered_cmds; node = node->next) {
    if (std::strcmp(command_of(node)->name, name) == 0) return command_of(node);
  }
  return nullptr;
}

int run_cmd(const char* name, int argc, const char** argv, void* appdata) {
  const cmd* const command = find_cmd(name);
  if (command == nullptr) {
    _log(1, "[E] %s %s(%d): could not find command '%s'\n", kModule, __func__, __LINE__, name);
    return -ENOSYS;
  }
  unsigned carg = 0;
  const owned_dict opts(cmd_getopt(command, argc, argv, &carg), delete_dict);
  if (opts == nullptr) {
    _log(1, "[E] %s %s(%d): could not create option dictionary\n", kModule, __func__, __LINE__);
    return -ENOMEM;
  }
  const int result =
      run_handler(command, argc - static_cast<int>(carg), argv + carg, appdata, opts.get());
  return result < 0 ? 1 : 0;
}

int run_cmds(int argc, const char** argv, void* appdata) {
  for (unsigned i = 0; i < static_cast<unsigned>(argc);) {
    const cmd* const command = find_cmd(argv[i]);
    if (command == nullptr) {
      _log(1, "[E] %s %s(%d): could not find command '%s'\n", kModule, __func__, __LINE__, argv[i]);
      return -ENOSYS;
    }
    unsigned carg = i + 1;
    const owned_dict opts(cmd_getopt(command, argc, argv, &carg), delete_dict);
    if (opts == nullptr) {
      _log(1, "[E] %s %s(%d): could not create option dictionary\n", kModule, __func__, __LINE__);
      return -ENOMEM;
    }
    const int result =
        run_handler(command, argc - static_cast<int>(carg), argv + carg, appdata, opts.get());
    if (result < 0) return static_cast<int>(carg);
    i = carg + static_cast<unsigned>(result);
  }
  return 0;
}
