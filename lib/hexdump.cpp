// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/hexdump.h"

#include <algorithm>

namespace {

constexpr size_t kRow = 16;

bool printable(unsigned char byte) {
  return byte >= 0x20 && byte <= 0x7E;
}

/// Prints the bytes and the text of one row of `size` bytes, at most 16.
void hexdump_line(FILE* outf, const unsigned char* row, size_t size) {
  for (size_t i = 0; i < size; i++) std::fprintf(outf, "%02x ", row[i]);
  for (size_t i = size; i < kRow; i++) std::fputs("   ", outf);
  std::fputc(' ', outf);
  for (size_t i = 0; i < size; i++) std::fputc(printable(row[i]) ? row[i] : '.', outf);
  for (size_t i = size; i < kRow; i++) std::fputc(' ', outf);
  std::fputc('\n', outf);
}

/// Digits that hold every offset of a buffer.
int offset_digits(size_t size) {
  constexpr size_t kTwoDigits = 0x100;
  constexpr size_t kFourDigits = 0x10000;
  if (size < kTwoDigits) return 2;
  return size < kFourDigits ? 4 : 8;
}

}  // namespace

void hexdump(FILE* outf, void* buf, size_t size) {
  const auto* const bytes = static_cast<const unsigned char*>(buf);
  const int digits = offset_digits(size);
  for (size_t offset = 0; offset < size; offset += kRow) {
    std::fprintf(outf, "%0*zx: ", digits, offset);
    hexdump_line(outf, bytes + offset, std::min(kRow, size - offset));
  }
}
