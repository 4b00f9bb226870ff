// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/formats/text.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace companions {

std::optional<token> word_reader::next() {
  while (at_ < line_.size() && separates(at_)) ++at_;
  if (at_ == line_.size()) return {};
  const size_t first = at_;
  while (at_ < line_.size() && !separates(at_)) ++at_;
  return token{line_.substr(first, at_ - first), first + 1};
}

std::vector<token> split(std::string_view line, std::string_view separators) {
  std::vector<token> tokens;
  word_reader all(line, separators);
  while (const auto one = all.next()) tokens.push_back(*one);
  return tokens;
}

std::optional<int> number(std::string_view text, int base) {
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, value, base);
  if (fault != std::errc{} || stop != end || text.empty() || text[0] == '-') return {};
  return value;
}

std::optional<int> duration(std::string_view text) {
  int us = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return {};
    us = us * 10 + (c - '0');
    if (us > kLongestDurationUs) return {};
  }
  return text.empty() ? std::nullopt : std::optional(us);
}

std::string printable(std::string_view text) {
  std::string shown(text);
  constexpr char kDelete = 0x7F;
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return (c >= 0 && c < ' ') || c == kDelete; }, '?');
  return shown;
}

bad_line no(const token& t, std::string_view what) {
  constexpr size_t kMostShown = 20;
  std::string text(1, '"');
  text.append(t.text.substr(0, kMostShown)).append("\" is no ").append(what);
  return {t.column, std::move(text)};
}

bad_line no_duration(const token& t) {
  return no(t, "duration of 0 to 16777215");
}

void write_list(std::ostream& out, const std::vector<int>& durations, std::string_view between) {
  write_signed(out, durations, "", "", between);
}

void write_signed(std::ostream& out, const std::vector<int>& durations, std::string_view mark,
                  std::string_view space, std::string_view between) {
  for (size_t i = 0; i < durations.size(); ++i) {
    if (i > 0) out << between;
    out << (i % 2 == 0 ? mark : space) << durations[i];
  }
}

void write_hex(std::ostream& out, uint32_t number, int digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (int place = digits - 1; place >= 0; --place) out << kDigits[number >> (4 * place) & 0xF];
}

void append(std::vector<int>& durations, bool mark, int us) {
  const bool last_is_mark = durations.size() % 2 == 1;
  if (durations.empty() || last_is_mark != mark) {
    durations.push_back(us);
  } else {
    durations.back() = std::min(durations.back() + us, kLongestDurationUs);
  }
}

}  // namespace companions
