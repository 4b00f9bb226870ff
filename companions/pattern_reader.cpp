// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/pattern_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace companions {

namespace {

constexpr int kLongestDurationUs = 65535;
constexpr int kProntoHeaderWords = 4;
constexpr size_t kProntoDigits = 4;
constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kSeparators = " \t\r,";

struct token {
  std::string_view text;
  size_t column;
};

/// The words of a line between any of the separators, with the column of each.
std::vector<token> split(std::string_view line, std::string_view separators) {
  std::vector<token> tokens;
  for (size_t at = line.find_first_not_of(separators); at != line.npos;) {
    const size_t end = std::min(line.find_first_of(separators, at), line.size());
    tokens.push_back({line.substr(at, end - at), at + 1});
    at = line.find_first_not_of(separators, end);
  }
  return tokens;
}

/// The whole text as a number in this base, nothing if it is not one or out of an int's range.
std::optional<int> number(std::string_view text, int base = 10) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, value, base);
  if (fault != std::errc{} || stop != end || text.empty() || text[0] == '-') return {};
  return value;
}

/// A fault of this word, which `what` the word is not.
bad_line no(const token& t, std::string_view what) {
  constexpr size_t kMostShown = 20;
  std::string text(1, '"');
  text.append(t.text.substr(0, kMostShown)).append("\" is no ").append(what);
  return {t.column, std::move(text)};
}

bad_line no_duration(const token& t) {
  return no(t, "duration of 0 to 65535");
}

std::optional<elapsed_line> read_elapsed(std::string_view line) {
  constexpr std::string_view kAnalysirMark = ":e:";
  constexpr std::string_view kCommaUnit = " ms";
  std::optional<int> found;
  if (line.starts_with(kAnalysirMark)) {
    found = number(line.substr(kAnalysirMark.size()));
  } else if (line.ends_with(kCommaUnit)) {
    found = number(line.substr(0, line.size() - kCommaUnit.size()));
  } else if (line[0] == '+') {  // a raw pattern ends in a blank, its elapsed line does not
    found = number(line.substr(1));
    if (found) *found /= 1000;
  }
  if (!found) return {};
  return elapsed_line{*found};
}

bool is_pronto(const std::vector<token>& tokens) {
  const auto is_word = [](const token& t) {
    return t.text.size() == kProntoDigits && number(t.text, 16);
  };
  return tokens.size() >= 2 && (tokens[0].text == "0000" || tokens[0].text == "0100") &&
         is_word(tokens[1]);
}

std::variant<pattern, elapsed_line, bad_line> read_pronto(const std::vector<token>& tokens) {
  std::vector<int> words;
  for (const token& t : tokens) {
    const auto word = number(t.text, 16);
    if (!word || t.text.size() > kProntoDigits) {
      return no(t, "Pronto word");
    }
    words.push_back(*word);
  }
  if (words.size() < kProntoHeaderWords) return bad_line{1, "a Pronto text of fewer than 4 words"};
  const int once = words[2];
  const int repeat = words[3];
  if (words.size() != static_cast<size_t>(kProntoHeaderWords + 2 * (once + repeat))) {
    return bad_line{tokens[2].column, "the pair counts do not fit the number of Pronto words"};
  }

  // The carrier period in whole µs, as vantrel itself takes it: the word times 0.241246 µs.
  const int64_t unit = (int64_t{words[1]} * 1000000 + 2072573) / 4145146;
  pattern found{.form = "pronto", .durations = {}, .repeat = {}, .elapsed_ms = {}, .pronto = {}};
  found.pronto = pronto_header{
      .carrier_hz = words[1] == 0 ? 0 : static_cast<int>(std::lround(4145146.0 / words[1])),
      .once_pairs = once,
      .repeat_pairs = repeat};
  for (size_t i = kProntoHeaderWords; i < words.size(); ++i) {
    const bool of_once = i < static_cast<size_t>(kProntoHeaderWords + 2 * once);
    // The last word of each sequence is the silence after it and no part of the pattern.
    if (i + 1 == words.size() || i + 1 == static_cast<size_t>(kProntoHeaderWords + 2 * once)) {
      continue;
    }
    const int64_t us = words[i] * unit;
    if (us > kLongestDurationUs) return bad_line{tokens[i].column, "a duration over 65535 us"};
    (of_once ? found.durations : found.repeat).push_back(static_cast<int>(us));
  }
  if (found.durations.empty()) found.durations.swap(found.repeat);
  return found;
}

std::variant<pattern, elapsed_line, bad_line> read_signed(const std::vector<token>& tokens) {
  pattern found{.form = "raw", .durations = {}, .repeat = {}, .elapsed_ms = {}, .pronto = {}};
  for (const token& t : tokens) {
    const char sign = found.durations.size() % 2 == 0 ? '+' : '-';
    if (t.text[0] != sign) {
      return bad_line{t.column, std::string("expected a duration that begins with ") + sign};
    }
    const auto us = number(t.text.substr(1));
    if (!us || *us > kLongestDurationUs) return no_duration(t);
    found.durations.push_back(*us);
  }
  return found;
}

std::variant<pattern, elapsed_line, bad_line> read_list(std::string_view line) {
  pattern found{.form = "comma", .durations = {}, .repeat = {}, .elapsed_ms = {}, .pronto = {}};
  const auto fields = split(line, kSeparators);
  if (line.find(',') == line.npos) return bad_line{1, "no pattern: a list needs commas"};
  if (const size_t empty = line.find(",,"); empty != line.npos || line[0] == ',') {
    return bad_line{empty == line.npos ? 1 : empty + 2, "an empty field"};
  }
  for (const token& field : fields) {
    const auto us = number(field.text);
    if (!us || *us > kLongestDurationUs) return no_duration(field);
    found.durations.push_back(*us);
  }
  if (!found.durations.empty() && found.durations[0] == 0) {
    found.form = "analysir";
    found.durations.erase(found.durations.begin());
  }
  return found;
}

}  // namespace

std::variant<pattern, elapsed_line, bad_line> read_line(std::string_view line) {
  while (line.ends_with('\r')) line.remove_suffix(1);
  if (line.find_first_not_of(kBlanks) == line.npos) return bad_line{1, "a line of blanks"};
  if (const auto elapsed = read_elapsed(line)) return *elapsed;
  const auto tokens = split(line, kSeparators);
  if (!tokens.empty() && is_pronto(tokens)) return read_pronto(tokens);
  if (!tokens.empty() && (tokens[0].text[0] == '+' || tokens[0].text[0] == '-')) {
    return read_signed(tokens);
  }
  return read_list(line);
}

bool says_something_else(std::string_view line) {
  constexpr std::array<std::string_view, 7> kBeginnings = {"::",
                                                           "++++",
                                                           "NEC Repeat",
                                                           "error, disconnecting",
                                                           "Zarvo tessarin found version",
                                                           "UNKNOWN ERROR",
                                                           "Cleaning up"};
  return std::any_of(kBeginnings.begin(), kBeginnings.end(),
                     [line](std::string_view beginning) { return line.starts_with(beginning); });
}

bool pattern_reader::next_line(bool& fits) {
  line_.clear();
  fits = true;
  bool any = false;
  for (int c = text_.rdbuf()->sbumpc(); c != std::char_traits<char>::eof();
       c = text_.rdbuf()->sbumpc()) {
    any = true;
    ++position_;
    if (c == '\n') break;
    if (line_.size() < kLongestLine) {
      line_ += static_cast<char>(c);
    } else {
      fits = false;  // read on to the line's end, but keep no more of it
    }
  }
  return any;
}

std::optional<read_result> pattern_reader::next() {
  bool fits = true;
  while (next_line(fits)) {
    ++number_;
    if (line_.empty() || line_[0] == '#' || line_ == "\r") continue;
    if (says_something_else(line_)) continue;
    if (!fits) {
      return read_result{number_, bad_line{kLongestLine + 1, "a line of over 65536 characters"}};
    }
    auto what = read_line(line_);
    if (const auto* elapsed = std::get_if<elapsed_line>(&what)) {
      elapsed_ms_ = elapsed->ms;
      continue;
    }
    const auto before = std::exchange(elapsed_ms_, {});
    if (auto* fault = std::get_if<bad_line>(&what)) return read_result{number_, std::move(*fault)};
    auto& found = std::get<pattern>(what);
    found.elapsed_ms = before;
    return read_result{number_, std::move(found)};
  }
  return {};
}

}  // namespace companions
