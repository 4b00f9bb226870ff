// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/explain.h"

#include <strings.h>

#include <array>
#include <cmath>
#include <cstdio>

#include "companions/decoders.h"

namespace companions {

namespace {

using analysis::reason;
using analysis::refusal;

constexpr size_t kMostAttempts = 8;  // that are shown where no protocol is asked for
constexpr float kNoLimit = 1e9F;     // and what is longer
constexpr double kRoundTo = 100;     // of factors

/// A whole number with commas: "2,610".
std::string grouped(double value) {
  std::string digits = std::to_string(std::llround(std::abs(value)));
  for (size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, 1, ',');
  return std::llround(value) < 0 ? "-" + digits : digits;
}

std::string factor(double value) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.2f", std::round(value * kRoundTo) / kRoundTo);
  return text.data();
}

std::string percent(double fraction) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%+.1f %%", 100 * fraction);
  return text.data();
}

/// What would have been taken; empty where the reader does not say.
std::string range_of(const refusal& why, std::string (*spell)(double)) {
  if (why.least == 0 && why.most == 0) return "";
  if (why.most >= kNoLimit) return ", at least " + spell(why.least) + " expected";
  if (why.why == reason::unit && why.least <= 0)
    return ", at most " + spell(why.most) + " expected";
  if (why.least == why.most) return ", " + spell(why.most) + " expected";
  if (why.why == reason::bursts || why.least <= 0) {
    return ", " + spell(why.least) + " to " + spell(why.most) + " expected";
  }
  const double middle = (double{why.least} + double{why.most}) / 2;
  return ", " + spell(middle) + " ± " + spell(why.most - middle) + " expected";
}

/// What was found, in the unit of its reason; empty where there is no number.
std::string found_of(const refusal& why) {
  switch (why.why) {
    case reason::bursts:
      return grouped(why.found) + " bursts" + range_of(why, grouped);
    case reason::clock:
    case reason::skew:
      return why.found == 0 ? "" : factor(why.found) + range_of(why, factor);
    default:
      return why.found == 0 ? "" : grouped(why.found) + " µs" + range_of(why, grouped);
  }
}

bool is_called(std::string_view name, std::string_view wanted) {
  return wanted.empty() || (name.size() == wanted.size() &&
                            strncasecmp(name.data(), wanted.data(), name.size()) == 0);
}

std::string name_and_numbers(const analysis_answer& found) {
  std::string text = found.protocol;
  const std::pair<const char*, int> numbers[] = {
      {" D=", found.device}, {" S=", found.subdevice}, {" F=", found.obc}};
  for (const auto& [letter, number] : numbers) {
    if (number >= 0) text += letter + std::to_string(number);
  }
  return text;
}

std::string proof_of(const analysis::proof& by) {
  if (by.bits == 0) return "every duration is in the limits of the code";
  std::string text = std::to_string(by.bits) + " bits, " +
                     (by.checked > 0 ? std::to_string(by.checked) : std::string("none")) +
                     " of them checked by others";
  if (by.clock != 0) {
    text += "; clock " + percent(double{by.clock} - 1) + ", marks " +
            grouped(std::abs(by.bias_us)) + (by.bias_us < 0 ? " µs shorter" : " µs longer") +
            " than sent";
  }
  return text;
}

}  // namespace

std::string sentence_of(const refusal& why) {
  std::string text;
  if (why.burst >= 0) text = "burst " + std::to_string(why.burst + 1) + ": ";
  const std::string found = found_of(why);
  if (found.empty()) return text + analysis::text_of(why.why);
  if (why.why == reason::bursts) return text + found;
  return text + found + " (" + analysis::text_of(why.why) + ")";
}

std::string explain(std::span<const int> durations, std::string_view protocol) {
  const analysis::explanation told = analysis::explain(durations);
  const auto answers = ask_analysis(durations);
  const std::string bursts = "bursts " + std::to_string(told.first + 1) + " to " +
                             std::to_string(told.first + told.bursts);
  std::string text;
  if (answers.empty()) {
    text = told.bursts == 0 ? "UNKNOWN, too short for a frame\n" : "UNKNOWN, " + bursts + "\n";
  } else {
    text = name_and_numbers(answers[0]) + ", " + bursts + ": " + proof_of(told.by) + '\n';
  }
  size_t shown = 0;
  for (const analysis::attempt& one : told.attempts) {
    if (!is_called(one.protocol, protocol) || (protocol.empty() && shown == kMostAttempts))
      continue;
    ++shown;
    text += "  " + one.protocol + ": " + sentence_of(one.why) + '\n';
  }
  return text;
}

}  // namespace companions
