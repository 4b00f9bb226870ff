// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "lib/libutil/interrupt.h"

namespace output {
namespace {

int cause = 0;

short state_now() {
  pollfd out = {STDOUT_FILENO, POLLOUT, 0};
  return poll(&out, 1, 0) == 1 ? out.revents : short{0};
}

}  // namespace

int error() {
  // printf writes too, and does not say why that failed; a pipe still knows when nobody reads it.
  if (cause == 0 && std::ferror(stdout) != 0) cause = (state_now() & POLLERR) != 0 ? EPIPE : EIO;
  return cause;
}

bool reader_has_gone() {
  return error() == EPIPE;
}

bool has_room() {
  return (state_now() & POLLOUT) != 0;
}

bool flush() {
  if (error() == 0 && std::fflush(stdout) != 0) cause = errno;
  interrupt::checkpoint();
  return error() == 0;
}

}  // namespace output
