// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/failing_alloc.h"

#include <cerrno>
#include <cstddef>

namespace {

constexpr int kNever = -1;
int remaining = kNever;
bool failed = false;

bool fails_now() {
  if (remaining == kNever || remaining-- > 0) return false;
  failed = true;
  errno = ENOMEM;
  return true;  // `remaining` is kNever again
}

}  // namespace

void fail_allocation_after(int successes) {
  remaining = successes;
  failed = false;
}

bool stop_failing_allocations() {
  remaining = kNever;
  return failed;
}

extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);

void* __wrap_malloc(size_t size) {
  return fails_now() ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size) {
  return fails_now() ? nullptr : __real_calloc(count, size);
}
}
