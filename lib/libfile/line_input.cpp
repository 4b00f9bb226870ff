// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libfile/line_input.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "lib/libutil/interrupt.h"

namespace {

constexpr char kLineFeed = '\n';
constexpr char kReturn = '\r';

/// The place of the first line end, or the text's size.
size_t find_line_end(std::string_view text) {
  text = text.substr(0, text.find(kLineFeed));
  return text.substr(0, text.find(kReturn)).size();
}

}  // namespace

line_input::~line_input() {
  close(fd_);
}

bool line_input::next(line& found) {
  interrupt::checkpoint();
  if (partner_ != '\0' && has_more()) skip_partner();

  size_t length = find_line_end(in_sight());
  while (length == in_sight().size() && length < kMostInSight && read_on()) {
    length = find_line_end(in_sight());
  }
  if (begin_ == end_) return false;
  length = std::min(length, kLongestLine);
  char* const text = chars_.data() + begin_;
  found = {{text, length}, false};
  begin_ += length;
  if (begin_ != end_) {
    const char end = chars_[begin_++];
    found.was_cut = end != kLineFeed && end != kReturn;
    // At a cut the line end is the lost character, and the next line begins with its partner.
    if (length < kLongestLine) partner_ = end == kLineFeed ? kReturn : kLineFeed;
  }
  text[length] = '\0';
  if (length > 0) return true;
  found.text = "";
  return has_more();  // an empty line right before the end is none
}

void line_input::skip_partner() {
  if (chars_[begin_] == std::exchange(partner_, '\0')) begin_++;
}

bool line_input::read_on() {
  if (at_end_) return false;
  std::copy(chars_.data() + begin_, chars_.data() + end_, chars_.data());
  end_ -= std::exchange(begin_, 0);
  ssize_t got = 0;
  while ((got = read(fd_, chars_.data() + end_, kBlock)) < 0 && errno == EINTR) {
    interrupt::checkpoint();
  }
  at_end_ = got == 0;
  if (got > 0) end_ += static_cast<size_t>(got);
  return got > 0;
}

void line_input::give_back() {
  if (partner_ != '\0' && begin_ != end_) skip_partner();
  const auto unread = static_cast<off_t>(end_ - begin_);
  if (lseek(fd_, -unread, SEEK_CUR) != -1) begin_ = end_;
}
