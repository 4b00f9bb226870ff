// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/tokens.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace irp {
namespace {

/// The characters of `text` from `at` on that are of one kind.
size_t run_end(std::string_view text, size_t at, bool (*of_kind)(char)) {
  const auto* const end = std::find_if_not(text.begin() + at, text.end(), of_kind);
  return static_cast<size_t>(end - text.begin());
}

size_t token_end(std::string_view text, size_t at) {
  static constexpr std::array<std::string_view, 8> kPairs = {"..", "**", "<<", ">>",
                                                             "<=", ">=", "==", "!="};
  const std::string_view pair = text.substr(at, 2);
  if (pair == "0x" || pair == "0b" || (is_letter(text[at]) && !is_digit(text[at]))) {
    return run_end(text, at, is_letter);
  }
  if (is_digit(text[at])) {
    const size_t end = run_end(text, at, is_digit);
    const bool fraction = end + 1 < text.size() && text[end] == '.' && is_digit(text[end + 1]);
    return fraction ? run_end(text, end + 1, is_digit) : end;
  }
  return std::ranges::find(kPairs, pair) == kPairs.end() ? at + 1 : at + pair.size();
}

}  // namespace

bool is_digit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

bool is_letter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

std::vector<Token> tokens(std::string_view text) {
  std::vector<Token> found;
  for (size_t at = 0; at < text.size();) {
    const size_t end = token_end(text, at);
    if (std::isspace(static_cast<unsigned char>(text[at])) == 0) {
      found.push_back({text.substr(at, end - at), at + 1});
    }
    at = end;
  }
  found.push_back({{}, text.size() + 1});
  return found;
}

}  // namespace irp
