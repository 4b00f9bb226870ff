// SPDX-License-Identifier: GPL-3.0-or-later
// Owners of what the C library hands out.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

struct free_block {
  void operator()(void* block) const { std::free(block); }
};

/// A block from malloc.
template <typename T>
using owned_block = std::unique_ptr<T, free_block>;

struct close_file {
  void operator()(FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

/// An open file; standard input stays open.
using owned_file = std::unique_ptr<FILE, close_file>;
