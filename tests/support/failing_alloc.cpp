// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/failing_alloc.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>

#include "tests/support/fake_world.h"

namespace {

constexpr int kNever = -1;
int remaining = kNever;
bool failed = false;

}  // namespace

bool allocation_fails_now() {
  if (remaining == kNever || fake_usb::library_calls > 0 || remaining-- > 0) return false;
  failed = true;
  errno = ENOMEM;
  return true;  // `remaining` is kNever again
}

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
char* __real_strdup(const char* text);
FILE* __real_fopen(const char* path, const char* mode);

void* __wrap_malloc(size_t size) {
  return allocation_fails_now() ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size) {
  return allocation_fails_now() ? nullptr : __real_calloc(count, size);
}

char* __wrap_strdup(const char* text) {
  return allocation_fails_now() ? nullptr : __real_strdup(text);
}

FILE* __wrap_fopen(const char* path, const char* mode) {
  return allocation_fails_now() ? nullptr : __real_fopen(path, mode);
}
}
