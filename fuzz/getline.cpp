// SPDX-License-Identifier: GPL-3.0-or-later
// Lines stay within their buffer and end with a zero, and reading comes to an end.
#include "lib/libfile/getline.h"

#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const size_t bufsz = data[0];
  const auto buf = std::make_unique<char[]>(bufsz);
  FILE* const file = fmemopen(const_cast<uint8_t*>(data + 1), size - 1, "r");
  size_t total = 0;
  for (ssize_t n = 0; (n = fgetline(file, buf.get(), bufsz)) >= 0;) {
    const auto length = static_cast<size_t>(n);
    require(length < bufsz && buf[length] == '\0');
    require(std::memchr(buf.get(), '\n', length) == nullptr);
    require(std::memchr(buf.get(), '\r', length) == nullptr);
    total += length;
  }
  require(total < size);
  std::fclose(file);
  return 0;
}
