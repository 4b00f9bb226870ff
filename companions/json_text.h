// SPDX-License-Identifier: GPL-3.0-or-later
// Writes one line of JSON piece by piece. A record has hundreds of numbers, and a tree of values
// for each of them would take as long as decoding the signal.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <string>
#include <string_view>
#include <utility>

namespace companions {

class json_text {
 public:
  json_text() { text_.reserve(kUsualSize); }
  json_text& open(char bracket);   // '{' or '['
  json_text& close(char bracket);  // '}' or ']'
  /// REQUIRES: a name of letters, digits and underscores.
  json_text& key(std::string_view name);
  json_text& value(std::integral auto number) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return literal({digits.data(), end});
  }
  json_text& value(bool truth) { return literal(truth ? "true" : "false"); }
  /// Any bytes; what is no UTF-8 becomes U+FFFD.
  json_text& value(std::string_view text);
  json_text& value(const char* text) { return value(std::string_view(text)); }
  json_text& null() { return literal("null"); }

  std::string take() { return std::move(text_); }

 private:
  json_text& literal(std::string_view text) {
    separate();
    text_ += text;
    needs_comma_ = true;
    return *this;
  }
  /// Puts the comma between two values.
  void separate() {
    if (needs_comma_) text_ += ',';
  }

  static constexpr size_t kUsualSize = 2048;  // of a record of one frame
  std::string text_;
  bool needs_comma_ = false;
};

/// The time of day, such as "2026-11-21T18:29:27.042Z".
std::string now_text();

}  // namespace companions
