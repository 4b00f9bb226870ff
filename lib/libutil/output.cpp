// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/output.h"

#include <cerrno>
#include <cstdio>

namespace output {
namespace {

int cause = 0;

}  // namespace

int error() {
  if (cause == 0 && std::ferror(stdout) != 0) cause = EIO;
  return cause;
}

bool flush() {
  if (error() == 0 && std::fflush(stdout) != 0) cause = errno;
  return error() == 0;
}

}  // namespace output
