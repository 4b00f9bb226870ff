// SPDX-License-Identifier: GPL-3.0-or-later
// The comma list: one signal a line, µs. Before it, optionally, the time since the one before.
//
//   40 ms
//   9045,4456,610,541,584,567
#include "companions/formats/comma.h"

#include "companions/formats/form.h"

namespace companions {

namespace {

constexpr std::string_view kElapsedUnit = " ms";

bool begins(std::string_view line) {
  return line.find(',') != line.npos || line.ends_with(kElapsedUnit);
}

void read(const text_line& line, findings& out) {
  if (line.text.ends_with(kElapsedUnit)) {
    const auto ms = number(line.text.substr(0, line.text.size() - kElapsedUnit.size()));
    if (ms) return out.elapsed(*ms);
  }
  pattern found{.form = "comma"};
  if (auto fault = read_comma_list(line.text, found.durations)) {
    out.fault(line.number, std::move(*fault));
  } else {
    out.add(line.number, std::move(found));
  }
}

void write(std::ostream& out, const pattern& signal) {
  if (signal.elapsed_ms) out << *signal.elapsed_ms << kElapsedUnit << '\n';
  write_list(out, signal.durations, ",");
  out << (signal.durations.size() == 1 ? ",\n" : "\n");  // without a comma it is no list
}

}  // namespace

std::optional<bad_line> read_comma_list(std::string_view line, std::vector<int>& durations) {
  if (line.find(',') == line.npos) return bad_line{1, "no pattern: a list needs commas"};
  if (const size_t empty = line.find(",,"); empty != line.npos || line[0] == ',') {
    return bad_line{empty == line.npos ? 1 : empty + 2, "an empty field"};
  }
  constexpr size_t kUsualChars = 4;  // of a duration and its comma
  durations.reserve(line.size() / kUsualChars);
  word_reader fields(line, kSeparators);
  while (const auto field = fields.next()) {
    const auto us = duration(field->text);
    if (!us) return no_duration(*field);
    durations.push_back(*us);
  }
  if (durations.size() > kMostPatternDurations) return bad_line{1, kTooManyDurations};
  return {};
}

const form kCommaForm = {.name = "comma",
                         .about = "comma list, 9024,4512,564",
                         .begins = begins,
                         .reader = line_by_line<read>,
                         .writer = one_by_one<write>,
                         .holds = {.gap = true, .elapsed = true}};

}  // namespace companions
