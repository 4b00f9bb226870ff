// SPDX-License-Identifier: GPL-3.0-or-later
// Comma lists of durations, such as 9045,4456,610 or 0, 9045, 4456, 610,
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>

/// Reads a comma list into `buf`, which holds `len` bytes, at least 100; the rest of it becomes 0.
/// Numbers keep their low 16 bits; a field without a number is 0. More fields than entries are
/// cut (logged).
///
/// Returns the number of entries, less one for every 0 after the first; those stay in place.
/// Returns -1 (logged) for an empty line, one without a comma, and a null or short `buf`.
ssize_t csv_to_buf(const char* line, uint16_t* buf, size_t len);
