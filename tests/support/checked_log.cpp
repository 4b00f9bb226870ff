// SPDX-License-Identifier: GPL-3.0-or-later
// _log, behind a check that every message has the level that its letter names: most tests show all
// levels, so a wrong one would be seen by users alone. The linker puts it in (--wrap).
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "lib/liblog/logging.h"

[[gnu::format(printf, 2, 3)]] void wrapped(int level, const char* format,
                                           ...) __asm__("__wrap__Z4_logiPKcz");
[[gnu::format(printf, 2, 3)]] void real(int level, const char* format,
                                        ...) __asm__("__real__Z4_logiPKcz");

void wrapped(int level, const char* format, ...) {
  constexpr std::string_view kLetters = "?EWI";
  if (format[0] == '[' && kLetters.find(format[1]) != static_cast<size_t>(level)) {
    std::fprintf(stderr, "level %d of: %s", level, format);
    std::abort();
  }
  std::array<char, 4096> text;
  va_list args;
  va_start(args, format);
  std::vsnprintf(text.data(), text.size(), format, args);
  va_end(args);
  real(level, "%s", text.data());
}
