// SPDX-License-Identifier: GPL-3.0-or-later
// The option words between a command and its arguments.
#include <cerrno>
#include <cstring>

#include "lib/libcmds/cmds.h"
#include "lib/libcmds/module.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/owned.h"

using libcmds::kModule;

namespace {

/// The first row of the command's table that `matches`, null for none.
template <typename Matches>
const cmd_opt* find_option(const cmd* cmd_entry, Matches matches) {
  if (cmd_entry->options == nullptr) return nullptr;
  for (const cmd_opt* opt = cmd_entry->options; opt->name != nullptr; opt++) {
    if (matches(*opt)) return opt;
  }
  return nullptr;
}

const cmd_opt* findshortopt(const cmd* cmd_entry, char letter) {
  return find_option(cmd_entry, [=](const cmd_opt& opt) { return opt.shortopt == letter; });
}

const cmd_opt* findlongopt(const cmd* cmd_entry, const char* name) {
  return find_option(cmd_entry, [=](const cmd_opt& opt) {
    return opt.longopt != nullptr && std::strcmp(opt.longopt, name) == 0;
  });
}

/// Stores an option; `value` is null for none. The dictionary reports it when that fails, and the
/// command runs without the option.
void addopt(dictionary* opts, const cmd_opt* opt, const char* value) {
  dict_add_key(opts, opt->name, value, value != nullptr ? std::strlen(value) + 1 : 0);
}

/// A word such as -pb: every letter is an option of its own.
void handle_shortopt(const cmd* cmd_entry, dictionary* opts, const char* word) {
  for (const char* letter = word + 1; *letter != '\0'; letter++) {
    const cmd_opt* const opt = findshortopt(cmd_entry, *letter);
    if (opt != nullptr) {
      addopt(opts, opt, nullptr);
    } else {
      _log(2, "[W] %s %s(%d): `%s' doesn not take '-%c' option\n", kModule, __func__, __LINE__,
           cmd_entry->name, *letter);
    }
  }
}

/// A word such as --repeat=4 or --pretty.
void handle_longopt(const cmd* cmd_entry, dictionary* opts, const char* word) {
  constexpr size_t kDashes = 2;
  const owned_block<char> name(strdup(word));
  if (name == nullptr) {
    _log(1, "[E] %s %s(%d): %s\n", kModule, __func__, __LINE__, std::strerror(errno));
    return;
  }
  char* value = std::strchr(name.get(), '=');
  if (value != nullptr) *value++ = '\0';
  const cmd_opt* const opt = findlongopt(cmd_entry, name.get() + kDashes);
  if (opt != nullptr) {
    addopt(opts, opt, value);
  } else {
    _log(2, "[W] %s %s(%d): `%s' doesn not take '%s' option\n", kModule, __func__, __LINE__,
         cmd_entry->name, name.get());
  }
}

}  // namespace

dictionary* cmd_getopt(const cmd* cmd_entry, int argc, const char** argv, unsigned int* carg) {
  dictionary* const opts = new_dict();
  if (opts == nullptr) return nullptr;
  for (; *carg < static_cast<unsigned>(argc) && argv[*carg][0] == '-'; (*carg)++) {
    const char* const word = argv[*carg];
    if (word[1] == '\0') break;  // a lone dash is an argument
    if (word[1] == '-') {
      handle_longopt(cmd_entry, opts, word);
    } else {
      handle_shortopt(cmd_entry, opts, word);
    }
  }
  return opts;
}
