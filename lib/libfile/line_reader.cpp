// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/line_reader.h"

#include <string_view>
#include <utility>

#include "lib/libfile/getline.h"
#include "lib/libutil/interrupt.h"

namespace {

constexpr size_t kBufferSize = line_reader::kLongestLine + 1;

}  // namespace

line_reader::line_reader(owned_file file, owned_block<char> buffer)
    : file_(std::move(file)), buffer_(std::move(buffer)) {}

std::optional<line_reader> line_reader::open(const char* path) {
  owned_file file(path == nullptr ? stdin : std::fopen(path, "re"));
  interrupt::checkpoint();
  if (file == nullptr) {
    std::perror("could not open script file");
    return std::nullopt;
  }
  owned_block<char> buffer(static_cast<char*>(std::malloc(kBufferSize)));
  if (buffer == nullptr) {
    std::perror("could not allocate line buffer");
    return std::nullopt;
  }
  return line_reader(std::move(file), std::move(buffer));
}

bool line_reader::next() {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  int lost = EOF;
  const ssize_t length = fgetline(file_.get(), buffer_.get(), kBufferSize, &lost);
  if (length < 0) return false;
  std::string_view text(buffer_.get(), static_cast<size_t>(length));
  if (number_ == 0 && text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  line_ = text.data();
  length_ = text.size();
  number_++;
  was_cut_ = lost != EOF && lost != '\n' && lost != '\r';
  return true;
}
