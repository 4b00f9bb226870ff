// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/getline.h"

#include <cerrno>

#include "lib/libutil/interrupt.h"

namespace {

constexpr int kLineFeed = '\n';
constexpr int kReturn = '\r';

/// The next character; a signal while it waits is not the end of the input.
int next_char(FILE* fp) {
  int c = getc_unlocked(fp);
  while (c == EOF && ferror_unlocked(fp) != 0 && errno == EINTR) {
    interrupt::checkpoint();
    clearerr_unlocked(fp);
    c = getc_unlocked(fp);
  }
  return c;
}

bool ends_line(int c) {
  return c == kLineFeed || c == kReturn;
}

/// Reads over the second half of a two-character line end. Returns the character looked at.
int skip_line_end_partner(FILE* fp, int end) {
  const int partner = end == kLineFeed ? kReturn : kLineFeed;
  const int next = next_char(fp);
  if (next != partner) ungetc(next, fp);
  return next;
}

}  // namespace

ssize_t fgetline(FILE* fp, char* buf, size_t bufsz, int* lost) {
  if (bufsz == 0) return -1;
  interrupt::checkpoint();
  size_t n = 0;
  for (int c = next_char(fp); c != EOF; c = next_char(fp)) {
    if (n == bufsz - 1) {
      // The character just read is lost, a line end too; what follows is the next line.
      buf[n] = '\0';
      if (lost != nullptr) *lost = c;
      return static_cast<ssize_t>(n);
    }
    if (ends_line(c)) {
      const int next = skip_line_end_partner(fp, c);
      buf[n] = '\0';
      return n == 0 && next == EOF ? -1 : static_cast<ssize_t>(n);
    }
    buf[n++] = static_cast<char>(c);
  }
  buf[n] = '\0';
  return n > 0 ? static_cast<ssize_t>(n) : -1;
}
