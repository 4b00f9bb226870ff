// SPDX-License-Identifier: GPL-3.0-or-later
// mode2 text, as LIRC's mode2 and the kernel's ir-ctl print it: a stream of durations in µs, one a
// line. A timeout is a space that was still going on when the receiver gave up.
//
//   carrier 38000
//   space 1342217
//   pulse 9024
//   space 4512
//   pulse 564
//   timeout 125000
//
// The silence before the first pulse is no part of a signal. A signal ends at a timeout, at an
// empty line, and at a space so long that a receiver would have given up.
#include <algorithm>
#include <array>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr int kReceiverGivesUpUs = 125000;
constexpr std::array<std::string_view, 5> kKeywords = {"pulse", "space", "timeout", "carrier",
                                                       "scancode"};

bool begins(std::string_view line) {
  return std::any_of(kKeywords.begin(), kKeywords.end(), [line](std::string_view word) {
    return line.starts_with(word) && line.substr(word.size()).starts_with(' ');
  });
}

class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view line) const override {
    return begins(line) || line.find_first_not_of(kBlanks) == line.npos || line[0] == '#' ||
           line.starts_with("//");
  }

  void read(const text_line& line, findings& out) override {
    const auto tokens = split(line.text, kBlanks);
    if (tokens.empty()) return end(out);
    if (!begins(line.text)) {
      if (takes(line.text)) return;  // a comment
      return fail(line.number, {1, "expected pulse, space, timeout or carrier"});
    }
    if (tokens.size() < 2) return fail(line.number, {line.text.size() + 1, "expected a number"});
    const std::string_view keyword = tokens[0].text;
    if (keyword == "scancode")
      return fail(line.number, {1, "a scancode, which holds no durations"});
    const auto us = keyword == "carrier" ? number(tokens[1].text) : duration(tokens[1].text);
    if (!us)
      return fail(line.number,
                  keyword == "carrier" ? no(tokens[1], "carrier in Hz") : no_duration(tokens[1]));
    if (keyword == "carrier") {
      carrier_hz_ = us;
      return;
    }
    const bool mark = keyword == "pulse";
    if (durations_.empty() && !fault_) {
      if (!mark) return;
      first_ = line.number;
    }
    append(durations_, mark, *us);
    if (durations_.size() > kMostPatternDurations) fail(line.number, {1, kTooManyDurations});
    if (keyword == "timeout" || (keyword == "space" && *us >= kReceiverGivesUpUs)) end(out);
  }

  void end(findings& out) override {
    if (fault_) {
      out.fault(first_, std::move(*fault_));
    } else if (!durations_.empty()) {
      out.add(first_,
              {.form = "mode2", .durations = std::move(durations_), .carrier_hz = carrier_hz_});
    }
    fault_.reset();
    durations_.clear();
  }

 private:
  /// What is left of a signal without one of its lines is another signal.
  void fail(size_t line, bad_line what) {
    if (fault_) return;
    first_ = line;
    fault_ = std::move(what);
  }

  std::vector<int> durations_;
  std::optional<int> carrier_hz_;
  std::optional<bad_line> fault_;
  size_t first_ = 0;
};

void write(std::ostream& out, const pattern& signal) {
  if (signal.carrier_hz) out << "carrier " << *signal.carrier_hz << '\n';
  write_signed(out, signal.durations, "pulse ", "space ", "\n");
  out << "\n\n";
}

}  // namespace

const form kMode2Form = {.name = "mode2",
                         .about = "text of mode2 and ir-ctl --mode2, pulse 9024",
                         .begins = begins,
                         .reader = open<reader>,
                         .writer = one_by_one<write>,
                         .holds = {.carrier = true, .gap = true}};

}  // namespace companions
