// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in front of the C library's allocation in the whole process, libraries and `new` included.
#include "bench/count_allocations.h"

#include <cstdlib>

namespace {

size_t allocations = 0;

}  // namespace

size_t allocations_so_far() {
  return allocations;
}

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) noexcept {
  allocations++;
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) noexcept {
  allocations++;
  return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) noexcept {
  allocations++;
  return __libc_realloc(block, size);
}
}
