// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/heard.h"

#include <array>
#include <cstdio>

#include "companions/formats/form.h"

namespace companions {

namespace {

std::vector<frame> split(std::span<const int> durations) {
  std::vector<frame> frames;
  size_t first = 0;
  for (size_t i = 1; i < durations.size(); i += 2) {
    if (durations[i] <= kLongestDurationUs) continue;
    frames.push_back({first, i - first, durations[i]});
    first = i + 1;
  }
  if (first < durations.size()) frames.push_back({first, durations.size() - first, {}});
  return frames;
}

}  // namespace

heard_signal hear(const pattern& from) {
  heard_signal heard{.durations = frame_of(from), .frames = {}, .form = {}, .analysis = {}};
  heard.frames = split(heard.durations);
  heard.form = find_coding(heard.durations);
  heard.analysis = ask_analysis(heard.durations);
  return heard;
}

std::string analysis_line(const heard_signal& signal) {
  if (signal.analysis.empty()) return ":: DECODEIR :: UNKNOWN       -";
  const analysis_answer& found = signal.analysis[0];
  const auto hex = [](int value) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%04X", static_cast<unsigned>(value));
    return std::string(text.data());
  };
  constexpr size_t kNameColumns = 13;
  std::string name = found.protocol;
  if (name.size() < kNameColumns) name.resize(kNameColumns, ' ');
  return ":: DECODEIR :: " + name + " - scancode: " + hex(found.hex[0]) +
         "  D:" + hex(found.device) + "  S:" + hex(found.subdevice);
}

}  // namespace companions
