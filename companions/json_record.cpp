// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/json_record.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "companions/decoders.h"

namespace companions {

namespace {

using json = nlohmann::ordered_json;

json signed_durations(const std::vector<int>& durations) {
  json list = json::array();
  for (size_t i = 0; i < durations.size(); ++i) {
    list.push_back(i % 2 == 0 ? durations[i] : -durations[i]);
  }
  return list;
}

/// A number, or null for the -1 of "has none".
json number_or_null(int value) {
  return value == -1 ? json(nullptr) : json(value);
}

json program_json(const std::optional<program_answer>& answer) {
  if (!answer) return nullptr;
  return {{"protocol", answer->protocol},
          {"scancode", answer->scancode},
          {"bits", answer->bits == 0 ? json(nullptr) : json(answer->bits)}};
}

json analysis_json(const std::vector<analysis_answer>& answers) {
  json list = json::array();
  for (const analysis_answer& answer : answers) {
    json codes = json::array();
    for (const int code : answer.hex) {
      if (code != -1) codes.push_back(code);
    }
    list.push_back({{"protocol", answer.protocol},
                    {"device", number_or_null(answer.device)},
                    {"subdevice", number_or_null(answer.subdevice)},
                    {"obc", number_or_null(answer.obc)},
                    {"hex", codes},
                    {"misc", answer.misc}});
  }
  return list;
}

json arduino_json(const std::optional<arduino_answer>& answer) {
  if (!answer) return nullptr;
  return {{"type", answer->type}, {"value", answer->value}, {"bits", answer->bits}};
}

/// What keeps the decoders from taking this pattern, and the entry it is about; empty if nothing.
std::pair<std::string, size_t> fault_of(const std::vector<int>& durations) {
  if (durations.size() > kMostDurations) {
    return {"more than 255 durations", kMostDurations + 1};
  }
  const auto longest = std::find_if(durations.begin(), durations.end(),
                                    [](int us) { return us > kLongestDurationUs; });
  if (longest == durations.end()) return {};
  return {"a duration over 14000 us", static_cast<size_t>(longest - durations.begin()) + 1};
}

size_t pairs(const std::vector<int>& durations) {
  return (durations.size() + 1) / 2;
}

void describe(json& object, const pattern& from) {
  object["format"] = from.form;
  object["durations"] = signed_durations(frame_of(from));
  if (!from.repeat.empty()) object["repeat"] = signed_durations(repeat_of(from));
  if (from.elapsed_ms) object["elapsed_ms"] = *from.elapsed_ms;
  if (from.carrier_hz) object["carrier_hz"] = *from.carrier_hz;
  if (from.form == "pronto") {
    const size_t first = pairs(from.durations);
    object["once_pairs"] = from.held ? 0 : first;
    object["repeat_pairs"] = from.held ? first : pairs(from.repeat);
  }
}

}  // namespace

record make_record(const input& from) {
  json object = {{"source", from.source}, {"line", from.read.line}};
  record made{.json = {}, .fault = false, .named = false};
  const auto finish = [&] {
    // A file's name may hold any bytes; JSON takes UTF-8.
    made.json = object.dump(-1, ' ', false, json::error_handler_t::replace);
    return made;
  };
  if (const auto* bad = std::get_if<bad_line>(&from.read.what)) {
    object["column"] = bad->column;
    object["error"] = bad->what;
    made.fault = true;
    return finish();
  }

  const auto& found = std::get<pattern>(from.read.what);
  const std::vector<int> frame = frame_of(found);
  describe(object, found);
  if (const auto [why, entry] = fault_of(frame); !why.empty()) {
    object["entry"] = entry;
    object["error"] = why;
    made.fault = true;
    return finish();
  }
  const auto analysis = ask_analysis(frame);
  const auto arduino = ask_arduino(frame);
  object["program"] = program_json(ask_program(frame, found.elapsed_ms.value_or(0)));
  object["analysis"] = analysis_json(analysis);
  object["arduino"] = arduino_json(arduino);
  made.named = (!analysis.empty() && !analysis[0].protocol.starts_with("Gap-")) ||
               (arduino && arduino->type != "UNKNOWN");
  return finish();
}

}  // namespace companions
