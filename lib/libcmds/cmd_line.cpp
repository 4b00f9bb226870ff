// SPDX-License-Identifier: GPL-3.0-or-later
// Command lines of the shell and of scripts.
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "lib/libcmds/cmds.h"
#include "lib/libcmds/module.h"
#include "lib/liblog/logging.h"
#include "lib/libutil/owned.h"

using libcmds::kModule;

namespace {

// A script may run scripts, and so itself.
constexpr unsigned kMaxNesting = 32;
unsigned nesting = 0;

class nested {
 public:
  nested() { nesting++; }
  ~nested() { nesting--; }
  nested(const nested&) = delete;
  nested& operator=(const nested&) = delete;
};

}  // namespace

unsigned tokenize_cmd_string(char* line, const char** argv) {
  unsigned words = 0;
  bool escape = false;
  bool new_word = true;
  // Removed backslashes leave `out` behind `in`; a word stands where `out` was at its start.
  char* out = line;
  const char* in = line;
  const auto start_word = [&] {
    if (!new_word) return;
    argv[words++] = out;
    new_word = false;
  };
  for (; *in != '\0' && words < kMaxWords; in++) {
    const char c = *in;
    const bool blank = c == ' ' || c == '\t';
    if (escape && (blank || c == '\\')) {
      out[-1] = c;  // in the place of its backslash
      escape = false;
    } else if (blank) {
      new_word = true;
      *out++ = '\0';
    } else {
      if (escape) {
        _log(2, "[W] %s %s(%d): invalid escape character: %c\n", kModule, __func__, __LINE__, c);
      }
      start_word();
      escape = c == '\\';
      *out++ = c;
    }
  }
  std::memmove(out, in, std::strlen(in) + 1);
  argv[words] = nullptr;
  return words;
}

int run_cmd_line(const char* cmd_line, void* appdata) {
  if (nesting == kMaxNesting) {
    _log(1, "[E] %s %s(%d): command lines nested too deeply\n", kModule, __func__, __LINE__);
    return -ELOOP;
  }
  const nested level;
  const size_t size = std::strlen(cmd_line) + 1;
  const owned_block<char> line(static_cast<char*>(std::malloc(size)));
  if (line == nullptr) {
    _log(1, "[E] %s %s(%d): could not allocate command line buffer", kModule, __func__, __LINE__);
    return -ENOMEM;
  }
  std::memcpy(line.get(), cmd_line, size);
  const owned_block<const char*> argv(
      static_cast<const char**>(std::malloc((kMaxWords + 1) * sizeof(const char*))));
  if (argv == nullptr) {
    _log(1, "[E] %s %s(%d): could not allocate argv", kModule, __func__, __LINE__);
    return -ENOMEM;
  }
  const unsigned words = tokenize_cmd_string(line.get(), argv.get());
  if (words == 0) {
    _log(1, "[E] %s %s(%d): command line empty\n", kModule, __func__, __LINE__);
    return -EINVAL;
  }
  return run_cmd(argv.get()[0], static_cast<int>(words) - 1, argv.get() + 1, appdata);
}
