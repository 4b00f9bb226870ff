// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/line_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <new>
#include <string_view>

#include "lib/libutil/interrupt.h"

namespace {

/// One for all readers of it: a script may run another from there.
line_input& standard_input() {
  static line_input input(STDIN_FILENO);
  return input;
}

}  // namespace

void line_reader::leave::operator()(line_input* input) const {
  if (input == &standard_input()) {
    input->give_back();
  } else {
    delete input;
  }
}

std::optional<line_reader> line_reader::open(const char* path) {
  if (path == nullptr) return line_reader(&standard_input());
  const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
  interrupt::checkpoint();
  if (fd == -1) {
    std::perror("could not open script file");
    return std::nullopt;
  }
  auto* const input = new (std::nothrow) line_input(fd);
  if (input == nullptr) {
    std::perror("could not allocate line buffer");
    close(fd);
    return std::nullopt;
  }
  return line_reader(input);
}

bool line_reader::next() {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (!input_->next(line_)) return false;
  std::string_view& text = line_.text;
  if (number_ == 0 && text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  number_++;
  return true;
}
