// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/supported.h"

#include <nlohmann/json.hpp>
#include <random>
#include <vector>

#include "companions/decoders.h"
#include "companions/encode.h"

namespace companions {
namespace {

constexpr int kSamples = 12;
constexpr size_t kMostPieces = 3;  // of a press: a start frame, the frame, a repeat
constexpr int kLongAgoMs = 10'000;

using frame = std::vector<int>;

/// Numbers within the ranges, the same every time; those with a default keep it.
irp::Parameters sample(const irp::Protocol& protocol, unsigned seed) {
  std::mt19937_64 numbers(seed);
  irp::Parameters given;
  for (const irp::Parameter& parameter : protocol.parameters()) {
    if (parameter.preset) continue;
    const auto span = static_cast<uint64_t>(parameter.high - parameter.low) + 1;
    given[parameter.name] = parameter.low + static_cast<int64_t>(numbers() % span);
  }
  return given;
}

/// The presses of a protocol, piece by piece, for different numbers.
std::vector<std::vector<frame>> presses(const irp::Protocol& protocol) {
  std::set<irp::Parameters> given;
  for (unsigned seed = 1; seed <= kSamples; ++seed) given.insert(sample(protocol, seed));
  std::vector<std::vector<frame>> found;
  for (const irp::Parameters& numbers : given) {
    try {
      found.push_back(received_pieces(render_press(protocol, numbers, 0).whole));
    } catch (const irp::Error&) {
      continue;  // a default that left its range with these numbers
    }
  }
  return found;
}

/// What a family says of a frame: its name for the protocol, and the rest, which tells keys apart.
using answer = std::optional<std::pair<std::string, std::string>>;

answer program_says(const frame& durations) {
  const auto found = ask_program(durations, kLongAgoMs);
  if (!found || found->protocol == "UNKNOWN") return {};
  return {{found->protocol, std::to_string(found->scancode)}};
}

answer analysis_says(const frame& durations) {
  const auto found = ask_analysis(durations);
  if (found.empty() || found[0].protocol.starts_with("Gap-")) return {};
  std::string rest = found[0].misc;
  for (const int value : {found[0].device, found[0].subdevice, found[0].obc}) {
    rest.append(",") += std::to_string(value);
  }
  return {{found[0].protocol, rest}};
}

answer arduino_says(const frame& durations) {
  const auto found = ask_arduino(durations);
  if (!found || found->type == "UNKNOWN") return {};
  return {{found->type, std::to_string(found->value)}};
}

/// The names that a family gives to one piece of all presses, if it names and tells apart them all.
std::set<std::string> names(const std::vector<std::vector<frame>>& sent, size_t piece,
                            answer (*ask)(const frame&)) {
  std::set<std::string> found;
  std::set<std::string> rests;
  for (const auto& pieces : sent) {
    if (piece >= pieces.size() || pieces[piece].size() > kMostDurations) return {};
    const answer said = ask(pieces[piece]);
    if (!said || !rests.insert(said->second).second) return {};
    found.insert(said->first);
  }
  return found;
}

std::set<std::string> names(const std::vector<std::vector<frame>>& sent,
                            answer (*ask)(const frame&)) {
  for (size_t piece = 0; piece < kMostPieces; ++piece) {
    if (auto found = names(sent, piece, ask); !found.empty()) return found;
  }
  return {};
}

void append(std::string& line, const char* family, const std::set<std::string>& names) {
  for (const std::string& name : names) {
    line.append(line.ends_with('\t') ? "" : "; ").append(family).append(" ").append(name);
  }
}

}  // namespace

std::vector<std::vector<int>> received_pieces(const std::vector<int>& durations) {
  std::vector<frame> pieces(1);
  for (size_t i = 0; i < durations.size(); ++i) {
    if (i % 2 == 1 && durations[i] > kLongestDurationUs) {
      pieces.emplace_back();
    } else {
      pieces.back().push_back(durations[i]);
    }
  }
  return pieces;
}

support support_of(const irp::Protocol& protocol, const irp::MessageReader& messages) {
  const auto sent = presses(protocol);
  return {.program = names(sent, program_says),
          .analysis = names(sent, analysis_says),
          .arduino = names(sent, arduino_says),
          .message = messages.reads(protocol)};
}

std::string support_line(const irp::Protocol& protocol, const support& known) {
  std::string line = protocol.name() + '\t';
  for (const irp::Parameter& parameter : protocol.parameters()) {
    line.append(line.ends_with('\t') ? "" : " ").append(parameter.name).append(":");
    line += std::to_string(parameter.low) + ".." + std::to_string(parameter.high);
    if (parameter.preset) line.append("=").append(parameter.preset_text);
  }
  line += '\t';
  append(line, "ZARVO", known.program);
  append(line, "DECODEIR", known.analysis);
  append(line, "ARDUINO", known.arduino);
  if (known.message) line += line.ends_with('\t') ? "message" : "; message";
  return line;
}

std::string support_json(const irp::Protocol& protocol, const support& known) {
  nlohmann::ordered_json object;
  object["protocol"] = protocol.name();
  object["carrier_hz"] = protocol.carrier();
  auto& parameters = object["parameters"] = nlohmann::ordered_json::array();
  for (const irp::Parameter& parameter : protocol.parameters()) {
    nlohmann::ordered_json one = {
        {"name", parameter.name}, {"low", parameter.low}, {"high", parameter.high}};
    one["default"] = nullptr;
    if (parameter.preset) one["default"] = parameter.preset_text;
    parameters.push_back(std::move(one));
  }
  object["program"] = known.program;
  object["analysis"] = known.analysis;
  object["arduino"] = known.arduino;
  object["message"] = known.message;
  return object.dump();
}

}  // namespace companions
