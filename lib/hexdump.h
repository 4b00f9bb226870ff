// SPDX-License-Identifier: GPL-3.0-or-later
// A byte buffer as rows of an offset, 16 bytes in hex and the same 16 as text.
#pragma once

#include <cstddef>
#include <cstdio>

/// Prints `size` bytes to `outf`; nothing for 0.
void hexdump(FILE* outf, void* buf, size_t size);
