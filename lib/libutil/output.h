// SPDX-License-Identifier: GPL-3.0-or-later
// Standard output as a thing that can break: a full disk, a reader that has gone. Nothing printed
// afterwards arrives, so whatever prints without end has to ask.
#pragma once

#include <cstdio>
#include <string_view>

namespace output {

/// Why standard output is broken: an errno value, EIO where the cause was not seen; 0 while it
/// is whole. What is still buffered may break it yet.
int error();

/// Whether it is broken because its reader has gone, which is nothing to tell anybody.
bool reader_has_gone();

/// Whether a short text can be written without waiting.
bool has_room();

/// Prints. This is a program of one thread: the stream is not locked for it.
inline void print(std::string_view text) {
  fwrite_unlocked(text.data(), 1, text.size(), stdout);
}

/// Writes out what is buffered. False when standard output is broken. A point of interrupt.h.
bool flush();

}  // namespace output
