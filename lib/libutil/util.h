// SPDX-License-Identifier: GPL-3.0-or-later
// Small text helpers.
#pragma once

#include <cstddef>

/// Prints into `str`, which holds `size` bytes, cuts silently and always ends with a zero, which
/// is also stored in the last of the `size` bytes.
[[gnu::format(printf, 3, 4)]] void ssprintf(char* str, size_t size, const char* format, ...);
