// SPDX-License-Identifier: GPL-3.0-or-later
// Patterns that were read, as text.
#pragma once

#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "companions/formats/reader.h"

/// "9000 4500 560 ".
inline std::string list(const std::vector<int>& values) {
  std::string text;
  for (const int v : values) text += std::to_string(v) + ' ';
  return text;
}

/// Everything that a text holds, one line a pattern or fault.
inline std::string read_all(const std::string& text) {
  std::istringstream stream(text);
  companions::pattern_reader reader(stream);
  std::string all;
  while (const auto found = reader.next()) {
    all += std::to_string(found->line) + ": ";
    if (const auto* bad = std::get_if<companions::bad_line>(&found->what)) {
      all += "column " + std::to_string(bad->column) + ": " + bad->what + '\n';
      continue;
    }
    const auto& p = std::get<companions::pattern>(found->what);
    all += std::string(p.form) + ' ';
    if (!p.remote.empty()) all += p.remote + '/';
    if (!p.name.empty()) all += '"' + p.name + "\" ";
    all += list(p.durations);
    if (!p.repeat.empty()) all += "repeat " + list(p.repeat);
    if (p.elapsed_ms) all += "after " + std::to_string(*p.elapsed_ms) + ' ';
    if (p.carrier_hz) all += std::to_string(*p.carrier_hz) + " Hz ";
    if (p.held) all += "held ";
    all.back() = '\n';
  }
  return all;
}
