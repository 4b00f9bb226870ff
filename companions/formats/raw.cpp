// SPDX-License-Identifier: GPL-3.0-or-later
// The signed list: marks with a plus, spaces with a minus, µs, a blank behind each. Before it,
// optionally, the time since the signal before, in µs and without a blank.
//
//   +40000
//   +9045 -4456 +610 -541 +584 -567
#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

bool begins(std::string_view line) {
  const size_t first = line.find_first_not_of(kSeparators);
  return first != line.npos && (line[first] == '+' || line[first] == '-');
}

void read(const text_line& line, findings& out) {
  if (line.text[0] == '+') {
    if (const auto us = number(line.text.substr(1))) return out.elapsed(*us / 1000);
  }
  pattern found{.form = "raw"};
  word_reader all(line.text, kSeparators);
  while (const auto word = all.next()) {
    const char sign = found.durations.size() % 2 == 0 ? '+' : '-';
    if (word->text[0] != sign) {
      return out.fault(line.number,
                       {word->column, std::string("expected a duration that begins with ") + sign});
    }
    const auto us = duration(word->text.substr(1));
    if (!us) return out.fault(line.number, no_duration(*word));
    found.durations.push_back(*us);
  }
  if (found.durations.size() > kMostPatternDurations) {
    return out.fault(line.number, {1, kTooManyDurations});
  }
  out.add(line.number, std::move(found));
}

void write(std::ostream& out, const pattern& signal) {
  if (signal.elapsed_ms) out << '+' << int64_t{*signal.elapsed_ms} * 1000 << '\n';
  write_signed(out, signal.durations, "+", "-", " ");
  out << (signal.durations.size() == 1 ? " \n" : "\n");  // alone and without a blank it is a time
}

}  // namespace

const form kRawForm = {.name = "raw",
                       .about = "signed list of vantrel, +9024 -4512 +564",
                       .begins = begins,
                       .reader = line_by_line<read>,
                       .writer = one_by_one<write>,
                       .holds = {.gap = true, .elapsed = true}};

}  // namespace companions
