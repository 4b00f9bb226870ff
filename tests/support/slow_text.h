// SPDX-License-Identifier: GPL-3.0-or-later
// A text as the slowest of streams delivers it.
#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "lib/libfile/getline.h"

/// A text that comes byte by byte, with a signal before each.
struct slow_text {
  std::string text;
  size_t at = 0;
  bool interrupted = false;

  static ssize_t read(void* cookie, char* buf, size_t /*size*/) {
    auto& self = *static_cast<slow_text*>(cookie);
    self.interrupted = !self.interrupted;
    if (self.interrupted) {
      errno = EINTR;
      return -1;
    }
    if (self.at == self.text.size()) return 0;
    *buf = self.text[self.at++];
    return 1;
  }
};

/// All lines of a text, read into a buffer of `bufsz` bytes on the heap's edge.
inline std::vector<std::string> lines_of(const std::string& text, size_t bufsz) {
  slow_text source{text};
  FILE* const file = fopencookie(&source, "r", {slow_text::read, nullptr, nullptr, nullptr});
  std::vector<char> buf(bufsz);
  std::vector<std::string> lines;
  for (ssize_t n = 0; (n = fgetline(file, buf.data(), bufsz)) >= 0;) {
    EXPECT_EQ(buf[static_cast<size_t>(n)], '\0');
    lines.emplace_back(buf.data(), static_cast<size_t>(n));
  }
  std::fclose(file);
  return lines;
}
