// SPDX-License-Identifier: GPL-3.0-or-later
// The option words between a command and its arguments.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "lib/libcmds/cmds.h"
#include "lib/libcmds/module.h"
#include "lib/liblog/logging.h"

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

/// Stores an option; `value` is null for none. False, with the dictionary's message, when it fails.
bool addopt(dictionary* opts, const cmd_opt* opt, const char* value) {
  return dict_add_key(opts, opt->name, value, value != nullptr ? std::strlen(value) + 1 : 0) !=
         nullptr;
}

/// A word such as -pb: every letter is an option of its own. False when one could not be stored.
bool handle_shortopt(const cmd* cmd_entry, dictionary* opts, const char* word) {
  bool stored = true;
  for (const char* letter = word + 1; *letter != '\0'; letter++) {
    const cmd_opt* const opt = findshortopt(cmd_entry, *letter);
    if (opt != nullptr) {
      stored &= addopt(opts, opt, nullptr);
    } else {
      _log(2, "[W] %s %s(%d): `%s' doesn not take '-%c' option\n", kModule, __func__, __LINE__,
           cmd_entry->name, *letter);
    }
  }
  return stored;
}

/// A word such as --repeat=4 or --pretty. False when it could not be stored.
bool handle_longopt(const cmd* cmd_entry, dictionary* opts, const char* word) {
  constexpr size_t kDashes = 2;
  const size_t size = std::strlen(word) + 1;
  char* const name = static_cast<char*>(std::malloc(size));
  if (name == nullptr) {
    _log(1, "[E] %s %s(%d): %s\n", kModule, __func__, __LINE__, std::strerror(errno));
    return false;
  }
  std::memcpy(name, word, size);
  char* value = std::strchr(name, '=');
  if (value != nullptr) *value++ = '\0';
  const cmd_opt* const opt = findlongopt(cmd_entry, name + kDashes);
  bool stored = true;
  if (opt != nullptr) {
    stored = addopt(opts, opt, value);
  } else {
    _log(2, "[W] %s %s(%d): `%s' doesn not take '%s' option\n", kModule, __func__, __LINE__,
         cmd_entry->name, name);
  }
  std::free(name);
  return stored;
}

}  // namespace

dictionary* cmd_getopt(const cmd* cmd_entry, int argc, const char** argv, unsigned int* carg) {
  dictionary* const opts = new_dict();
  if (opts == nullptr) return nullptr;
  bool stored = true;
  for (; *carg < static_cast<unsigned>(argc) && argv[*carg][0] == '-'; (*carg)++) {
    const char* const word = argv[*carg];
    if (word[1] == '\0') break;  // a lone dash is an argument
    if (word[1] == '-') {
      stored &= handle_longopt(cmd_entry, opts, word);
    } else {
      stored &= handle_shortopt(cmd_entry, opts, word);
    }
  }
  if (stored) return opts;
  // Better not run at all than without what was asked for.
  delete_dict(opts);
  return nullptr;
}
