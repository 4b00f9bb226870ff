// SPDX-License-Identifier: GPL-3.0-or-later
// The word splitter gives what the slow way gives, which shifts the line at every escape.
#include "fuzz/input.h"
#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"

namespace {

void remove_character(char* at) {
  std::memmove(at, at + 1, std::strlen(at));
}

unsigned split_slowly(char* line, const char** argv) {
  unsigned words = 0;
  bool escape = false;
  bool new_word = true;
  char* at = line;
  while (*at != '\0' && words < kMaxWords) {
    const bool blank = *at == ' ' || *at == '\t';
    if (escape && (blank || *at == '\\')) {
      remove_character(at - 1);
      escape = false;
      continue;
    }
    if (blank) {
      *at = '\0';
      new_word = true;
    } else {
      escape = *at == '\\';
      if (new_word) argv[words++] = at;
      new_word = false;
    }
    at++;
  }
  return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  set_loglevel(0);
  const std::unique_ptr<char[]> line = exact_text(data, size);
  const std::unique_ptr<char[]> slow_line = exact_text(data, size);
  const char* argv[kMaxWords + 1];
  const char* slow_argv[kMaxWords + 1];
  const unsigned words = tokenize_cmd_string(line.get(), argv);
  require(words == split_slowly(slow_line.get(), slow_argv));
  require(words <= kMaxWords && argv[words] == nullptr);
  for (unsigned i = 0; i < words; i++) require(std::strcmp(argv[i], slow_argv[i]) == 0);
  return 0;
}
