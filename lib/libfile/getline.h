// SPDX-License-Identifier: GPL-3.0-or-later
// Lines of a stdio stream. line_input reads by the same rules, without one.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdio>

/// Reads one line without its end ("\n", "\r", "\r\n" or "\n\r") into `buf`, which holds `bufsz`
/// bytes, and ends it with a zero. Returns its length, or -1 at the end of input (also for an
/// empty line right before it, and when `bufsz` is 0).
///
/// A longer line comes in pieces of `bufsz` - 1 characters; at each cut one character is lost, and
/// stored in *lost (may be null), which is left alone otherwise. A lost line end was no cut: the
/// line just filled the buffer.
/// A point of lib/libutil/interrupt.h.
ssize_t fgetline(FILE* fp, char* buf, size_t bufsz, int* lost = nullptr);
