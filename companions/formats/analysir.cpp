// SPDX-License-Identifier: GPL-3.0-or-later
// The AnalysIR list: a comma list that begins with a zero. Before it, optionally, the time since
// the signal before, in ms.
//
//   :e:40
//   0,9045, 4456, 610, 541, 584, 567
#include "companions/formats/comma.h"
#include "companions/formats/form.h"

namespace companions {

namespace {

constexpr std::string_view kElapsedMark = ":e:";

bool begins(std::string_view line) {
  if (line.starts_with(kElapsedMark)) return true;
  const size_t first = line.find_first_not_of(kSeparators);
  if (first == line.npos || line.find(',') == line.npos) return false;
  return number(line.substr(first, line.find_first_of(kSeparators, first) - first)) == 0;
}

void read(const text_line& line, findings& out) {
  if (line.text.starts_with(kElapsedMark)) {
    if (const auto ms = number(line.text.substr(kElapsedMark.size()))) return out.elapsed(*ms);
  }
  pattern found{.form = "analysir"};
  if (auto fault = read_comma_list(line.text, found.durations)) {
    return out.fault(line.number, std::move(*fault));
  }
  if (!found.durations.empty() && found.durations[0] == 0) {
    found.durations.erase(found.durations.begin());
  }
  out.add(line.number, std::move(found));
}

void write(std::ostream& out, const pattern& signal) {
  if (signal.elapsed_ms) out << kElapsedMark << *signal.elapsed_ms << '\n';
  out << "0,";
  write_list(out, signal.durations, ", ");
  out << '\n';
}

}  // namespace

const form kAnalysirForm = {.name = "analysir",
                            .about = "AnalysIR list, 0,9024, 4512, 564",
                            .begins = begins,
                            .reader = line_by_line<read>,
                            .writer = one_by_one<write>,
                            .holds = {.gap = true, .elapsed = true}};

}  // namespace companions
