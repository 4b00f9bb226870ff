// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/util.h"

#include <cstdarg>
#include <cstdio>

void ssprintf(char* str, size_t size, const char* format, ...) {
  if (size == 0) return;
  va_list args;
  va_start(args, format);
  std::vsnprintf(str, size, format, args);
  va_end(args);
  str[size - 1] = '\0';
}
