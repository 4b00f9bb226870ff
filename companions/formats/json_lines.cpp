// SPDX-License-Identifier: GPL-3.0-or-later
// The lines of vantrel-json, and lists of durations in µs: marks positive, spaces negative; in a
// list without signs they alternate.
//
//   {"name":"Power","carrier_hz":38000,"durations":[9024,-4512,564],"repeat":[9024,-2256,564]}
//   [9024,-4512,564]
//
// vantrel-json adds what the decoders say; reading passes over it.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

using json = nlohmann::ordered_json;

bool begins(std::string_view line) {
  if (line.starts_with('[')) return line.find_first_not_of("[]0123456789,-+. \t\r") == line.npos;
  return line.starts_with('{') &&
         (line.find("\"durations\"") != line.npos || line.find("\"error\"") != line.npos);
}

/// Whether it is a list of durations.
bool read_durations(const json& list, std::vector<int>& to) {
  if (!list.is_array() || list.size() > kMostPatternDurations) return false;
  const bool is_signed = std::any_of(list.begin(), list.end(), [](const json& one) {
    return one.is_number_integer() && one.get<int64_t>() < 0;
  });
  bool mark = true;
  for (const json& one : list) {
    if (!one.is_number_integer()) return false;
    const auto us = one.get<int64_t>();
    if (us > kLongestDurationUs || us < -int64_t{kLongestDurationUs}) return false;
    if (is_signed) mark = us > 0;
    append(to, mark, static_cast<int>(std::abs(us)));
    mark = !mark;
  }
  return true;
}

std::optional<int> whole_number(const json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number_integer()) return {};
  const auto value = found->get<int64_t>();
  if (value < 0 || value > std::numeric_limits<int>::max()) return {};
  return static_cast<int>(value);
}

std::string text_of(const json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<ir_code> code_of(const json& object) {
  const auto number = [&](const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_number_unsigned() ? found->get<uint64_t>()
                                                                : UINT64_MAX;
  };
  const uint64_t address = number("address");
  const uint64_t command = number("command");
  if (std::max(address, command) > UINT32_MAX) return {};
  return ir_code{text_of(object, "protocol"), static_cast<uint32_t>(address),
                 static_cast<uint32_t>(command)};
}

void read_object(const text_line& line, const json& object, findings& out) {
  if (!object.contains("durations")) {
    return out.fault(line.number, {1, "no signal but an error: " + text_of(object, "error")});
  }
  pattern found{.form = "json",
                .remote = text_of(object, "remote"),
                .name = text_of(object, "name"),
                .carrier_hz = whole_number(object, "carrier_hz")};
  if (!read_durations(object["durations"], found.durations) ||
      (object.contains("repeat") && !read_durations(object["repeat"], found.repeat))) {
    return out.fault(line.number, {1, "expected a list of durations of up to 16777215"});
  }
  if (object.contains("duty_cycle") && object["duty_cycle"].is_number()) {
    found.duty_cycle = std::clamp(object["duty_cycle"].get<double>(), kLeastDutyCycle, 1.0);
  }
  if (const auto code = object.find("code"); code != object.end() && code->is_object()) {
    found.code = code_of(*code);
  }
  // vantrel-json tells of a Pronto text how many pairs are sent once.
  found.held = object.value("held", json(false)) == true || whole_number(object, "once_pairs") == 0;
  if (const auto ms = whole_number(object, "elapsed_ms")) out.elapsed(*ms);
  out.add(line.number, std::move(found));
}

void read(const text_line& line, findings& out) {
  json value;
  try {
    value = json::parse(line.text);
  } catch (const json::parse_error& fault) {
    return out.fault(line.number, {std::max<size_t>(fault.byte, 1), "expected JSON"});
  } catch (const json::out_of_range&) {
    return out.fault(line.number, {1, "expected JSON with numbers that fit"});
  }
  if (value.is_object()) return read_object(line, value, out);
  pattern found{.form = "json"};
  if (!read_durations(value, found.durations)) {
    return out.fault(line.number, {1, "expected a list of durations of up to 16777215"});
  }
  out.add(line.number, std::move(found));
}

json signed_list(const std::vector<int>& durations) {
  json list = json::array();
  for (size_t i = 0; i < durations.size(); ++i) {
    list.push_back(i % 2 == 0 ? durations[i] : -durations[i]);
  }
  return list;
}

void write(std::ostream& out, const pattern& signal) {
  json object;
  if (!signal.remote.empty()) object["remote"] = signal.remote;
  if (!signal.name.empty()) object["name"] = signal.name;
  if (signal.elapsed_ms) object["elapsed_ms"] = *signal.elapsed_ms;
  if (signal.carrier_hz) object["carrier_hz"] = *signal.carrier_hz;
  if (signal.duty_cycle) object["duty_cycle"] = *signal.duty_cycle;
  if (signal.code) {
    object["code"] = {{"protocol", signal.code->protocol},
                      {"address", signal.code->address},
                      {"command", signal.code->command}};
  }
  object["durations"] = signed_list(signal.durations);
  if (!signal.repeat.empty()) object["repeat"] = signed_list(signal.repeat);
  if (signal.held) object["held"] = true;
  out << object.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
}

std::string spell(std::string_view name) {
  return std::string(name);
}

}  // namespace

const form kJsonForm = {.name = "json",
                        .about = "lines of vantrel-json, {\"durations\":[9024,-4512,564]}",
                        .begins = begins,
                        .reader = line_by_line<read>,
                        .writer = one_by_one<write>,
                        .holds = {.spell = spell,
                                  .carrier = true,
                                  .duty_cycle = true,
                                  .gap = true,
                                  .repeat = true,
                                  .elapsed = true,
                                  .remote = true,
                                  .code = true}};

}  // namespace companions
