// SPDX-License-Identifier: GPL-3.0-or-later
// For a whole program: lets the allocation fail whose number, from 0, is in FAIL_ALLOCATION; `new`
// counts too.
#include <cstdlib>
#include <new>

#include "tests/support/failing_alloc.h"

[[gnu::constructor]] static void plan_failure_of_environment() {
  const char* const number = std::getenv("FAIL_ALLOCATION");
  if (number == nullptr) return;
  fail_allocation_after(std::atoi(number));
  // What an instrumented build does when it ends, such as writing its counts, is not under test.
  std::atexit([] { stop_failing_allocations(); });
}

extern "C" void* __real_malloc(size_t size);

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocation_fails_now() ? nullptr : __real_malloc(size > 0 ? size : 1);
}

void* operator new(size_t size) {
  void* const block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, size_t /*size*/) noexcept {
  std::free(block);
}
