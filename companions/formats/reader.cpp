// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/formats/reader.h"

#include <algorithm>
#include <array>

#include "companions/formats/text.h"

namespace companions {

namespace {

/// Whether this is one of the lines that vantrel or mode2 print beside their patterns.
bool says_something_else(std::string_view line) {
  constexpr std::array<std::string_view, 10> kBeginnings = {"::",
                                                            "++++",
                                                            "NEC Repeat",
                                                            "error, disconnecting",
                                                            "Zarvo tessarin found version",
                                                            "UNKNOWN ERROR",
                                                            "Cleaning up",
                                                            "Using driver",
                                                            "Trying device",
                                                            "Using device"};
  return std::any_of(kBeginnings.begin(), kBeginnings.end(),
                     [line](std::string_view beginning) { return line.starts_with(beginning); });
}

/// The form that the line begins; null where it looks like none.
const form* form_of(std::string_view line) {
  const auto all = forms();
  const auto found =
      std::find_if(all.begin(), all.end(), [line](const form* one) { return one->begins(line); });
  return found == all.end() ? nullptr : *found;
}

}  // namespace

bool pattern_reader::fill() {
  std::streambuf& from = *text_.rdbuf();
  if (from.sgetc() == std::char_traits<char>::eof()) return false;  // waits for the first of them
  const auto ready = std::clamp<std::streamsize>(from.in_avail(), 1, kBlock);
  at_ = 0;
  filled_ = static_cast<size_t>(from.sgetn(block_.data(), ready));
  return true;
}

bool pattern_reader::next_line(bool& fits) {
  line_.clear();
  fits = true;
  bool any = false;
  for (bool ended = false; !ended && (at_ < filled_ || fill());) {
    const std::string_view rest(block_.data() + at_, filled_ - at_);
    const size_t end = rest.find('\n');
    ended = end != rest.npos;
    const size_t room = kLongestLine - line_.size();
    const std::string_view piece = rest.substr(0, end);
    line_ += piece.substr(0, room);
    fits = fits && piece.size() <= room;  // else read on to the line's end, but keep no more of it
    at_ += piece.size() + (ended ? 1 : 0);
    position_ += piece.size() + (ended ? 1 : 0);
    any = true;
  }
  while (line_.ends_with('\r')) line_.pop_back();
  return any;
}

void pattern_reader::end_open() {
  if (open_) open_->end(found_);
  open_.reset();
}

void pattern_reader::read_line(bool fits) {
  if (!fits) {
    end_open();
    return found_.fault(number_, {kLongestLine + 1, "a line of over 4194304 characters"});
  }
  if (!open_ || !open_->takes(line_)) {
    end_open();
    if (line_.empty() || line_[0] == '#' || says_something_else(line_)) return;
    if (line_.find_first_not_of(kBlanks) == line_.npos) {
      return found_.fault(number_, {1, "a line of blanks"});
    }
    const form* const its = from_ != nullptr ? from_ : form_of(line_);
    if (its == nullptr) return found_.fault(number_, {1, "no signal in a form that is known here"});
    open_ = its->reader();
  }
  open_->read({line_, number_}, found_);
}

std::optional<read_result> pattern_reader::next() {
  while (true) {
    if (auto found = found_.take()) return found;
    bool fits = true;
    if (!next_line(fits)) {
      end_open();
      return found_.take();
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (++number_ == 1 && line_.starts_with(kByteOrderMark)) line_.erase(0, kByteOrderMark.size());
    read_line(fits);
  }
}

}  // namespace companions
