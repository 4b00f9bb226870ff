// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/typed_lines.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "fuzz/input.h"

namespace {

std::string_view untyped;

}  // namespace

void type_lines(std::string_view text) {
  untyped = text;
}

extern "C" {
// The types of readline's header, which itself need not be here.
char* readline(const char* /*prompt*/) {
  if (untyped.empty()) return nullptr;
  const size_t length = std::min(untyped.find('\n'), untyped.size());
  auto* const line = static_cast<char*>(std::malloc(length + 1));
  std::memcpy(line, untyped.data(), length);
  line[length] = '\0';
  untyped.remove_prefix(std::min(length + 1, untyped.size()));
  return line;
}

void add_history(const char* line) {
  require(*line != '\0');  // an empty line is not remembered
}
}
