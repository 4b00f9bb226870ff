// SPDX-License-Identifier: GPL-3.0-or-later
// An owner of what the C library hands out.
#pragma once

#include <cstdlib>
#include <memory>

struct free_block {
  void operator()(void* block) const { std::free(block); }
};

/// A block from malloc.
template <typename T>
using owned_block = std::unique_ptr<T, free_block>;
