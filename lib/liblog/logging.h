// SPDX-License-Identifier: GPL-3.0-or-later
// Levelled diagnostics on standard error.
//
// The caller writes the whole line, its prefix and newline included. Programs prefix
//   "[E] %s(%d): "      with __func__, __LINE__
// and library modules
//   "[E] %s %s(%d): "   with their path ("lib/libdict/dict"), __func__, __LINE__;
// warnings begin "[W]" instead, information lines begin "[I] " and carry no location.
#pragma once

/// Levels: 1 errors, 2 warnings, 3 information. Initially 1.
/// Stores `level`, at most 3; 0 or less silences everything.
void set_loglevel(int level);
int get_loglevel();

/// Prints to standard error when `level` is not 0 and at most the stored level.
[[gnu::format(printf, 2, 3)]] void _log(int level, const char* fmt, ...);
