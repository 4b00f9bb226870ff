// SPDX-License-Identifier: GPL-3.0-or-later
// The signed list of the kernel's ir-ctl: marks with a plus, spaces with a minus, µs, one signal a
// line. A comment tells how long the silence behind it lasted at least, and the carrier.
//
//   +9024 -4512 +564 -564 +564 # timeout 125000, carrier 38000
//
// The signs may be left out. A space before the first mark is no part of the signal.
#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr std::string_view kComment = " # ";

bool begins(std::string_view line) {
  const size_t comment = line.find(kComment);
  word_reader all(line.substr(0, comment), kBlanks);
  const auto first = all.next();
  if (!first) return false;
  if (comment != line.npos && (first->text[0] == '+' || first->text[0] == '-')) return true;
  const auto second = all.next();
  return second && number(first->text) && number(second->text) && line.find(',') == line.npos;
}

/// The number behind a word of the comment.
std::optional<int> told(std::string_view comment, std::string_view what) {
  const size_t at = comment.find(what);
  if (at == comment.npos) return {};
  const auto words = split(comment.substr(at + what.size()), " \t\r,:=");
  return words.empty() ? std::nullopt : number(words[0].text);
}

void read(const text_line& line, findings& out) {
  const std::string_view list = line.text.substr(0, line.text.find(kComment));
  const std::string_view comment = line.text.substr(list.size());
  pattern found{.form = "ir-ctl"};
  bool mark = true;
  for (const token& t : split(list, kSeparators)) {
    const bool is_signed = t.text[0] == '+' || t.text[0] == '-';
    if (is_signed) mark = t.text[0] == '+';
    const auto us = duration(t.text.substr(is_signed ? 1 : 0));
    if (!us) return out.fault(line.number, no_duration(t));
    if (mark || !found.durations.empty()) append(found.durations, mark, *us);
    mark = !mark;
  }
  if (found.durations.size() > kMostPatternDurations)
    return out.fault(line.number, {1, kTooManyDurations});
  if (found.durations.empty()) return out.fault(line.number, {1, "expected a mark"});
  if (const auto timeout = told(comment, "timeout")) append(found.durations, false, *timeout);
  found.carrier_hz = told(comment, "carrier");
  out.add(line.number, std::move(found));
}

void write(std::ostream& out, const pattern& signal) {
  write_signed(out, without_gap(signal.durations), "+", "-", " ");
  const bool has_gap = signal.durations.size() % 2 == 0;
  if (has_gap || signal.carrier_hz) out << kComment;
  if (has_gap) out << "timeout " << signal.durations.back();
  if (has_gap && signal.carrier_hz) out << ", ";
  if (signal.carrier_hz) out << "carrier " << *signal.carrier_hz;
  out << '\n';
}

}  // namespace

const form kIrCtlForm = {.name = "ir-ctl",
                         .about = "signed list of ir-ctl, +9024 -4512 +564 # timeout 125000",
                         .begins = begins,
                         .reader = line_by_line<read>,
                         .writer = one_by_one<write>,
                         .holds = {.carrier = true, .gap = true}};

}  // namespace companions
