// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/json_text.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

namespace companions {

json_text& json_text::open(char bracket) {
  separate();
  text_ += bracket;
  needs_comma_ = false;
  return *this;
}

json_text& json_text::close(char bracket) {
  text_ += bracket;
  needs_comma_ = true;
  return *this;
}

json_text& json_text::key(std::string_view name) {
  separate();
  text_.append(1, '"').append(name).append("\":");
  needs_comma_ = false;
  return *this;
}

json_text& json_text::value(std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
  });
  if (!plain) {
    return literal(
        nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
  }
  separate();
  text_.append(1, '"').append(text).append(1, '"');
  needs_comma_ = true;
  return *this;
}

std::string now_text() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm utc{};
  gmtime_r(&now.tv_sec, &utc);
  std::array<char, 40> text;
  const size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &utc);
  std::snprintf(text.data() + size, text.size() - size, ".%03ldZ", now.tv_nsec / 1'000'000);
  return text.data();
}

}  // namespace companions
