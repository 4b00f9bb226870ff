// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/liblog/logging.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>

#include "lib/libutil/startup.h"

namespace {

constexpr int kMostDetailed = 3;

int loglevel = 1;
std::array<FILE*, kMostDetailed + 1> logfds;

[[gnu::constructor(startup::kLogging)]] void _init_logging() {
  logfds.fill(stderr);
}

}  // namespace

void set_loglevel(int level) {
  loglevel = std::min(level, kMostDetailed);
}

int get_loglevel() {
  return loglevel;
}

void _log(int level, const char* fmt, ...) {
  if (level <= 0 || level > loglevel) return;
  va_list args;
  va_start(args, fmt);
  std::vfprintf(logfds[static_cast<size_t>(level)], fmt, args);
  va_end(args);
}
