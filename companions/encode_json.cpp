// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/encode_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "companions/decoders.h"
#include "companions/encode.h"
#include "companions/supported.h"
#include "lib/libutil/number.h"

namespace companions {
namespace {

using json = nlohmann::json;

constexpr int64_t kMostTried = 16;  // values of a parameter that no answer tells

/// The same code, whatever else the decoder says of it.
bool same(const analysis_answer& a, const analysis_answer& b) {
  return a.protocol == b.protocol && a.device == b.device && a.subdevice == b.subdevice &&
         a.obc == b.obc;
}

int number_at(const json& object, const char* key) {
  const json& value = object.at(key);
  return value.is_null() ? -1 : value.get<int>();
}

analysis_answer answer_of(const json& object) {
  return {.protocol = object.at("protocol").get<std::string>(),
          .device = number_at(object, "device"),
          .subdevice = number_at(object, "subdevice"),
          .obc = number_at(object, "obc"),
          .hex = {},
          .misc = object.at("misc").get<std::string>()};
}

/// Whether the answer is what the signal analysis says of these numbers' signal.
bool decodes_to(const key_code& code, const analysis_answer& wanted) {
  try {
    const press sent = render_press(*code.protocol, code.parameters, 0);
    const auto says_it = [&](const analysis_answer& one) { return same(one, wanted); };
    const auto pieces = received_pieces(sent.whole);
    return std::ranges::any_of(pieces, [&](const std::vector<int>& piece) {
      if (piece.size() > kMostDurations) return false;
      // Pioneer's code is told from NEC's by its carrier or its haste.
      return std::ranges::any_of(ask_analysis(piece), says_it) ||
             std::ranges::any_of(ask_analysis(piece, sent.carrier_hz), says_it);
    });
  } catch (const irp::Error&) {
    return false;  // these numbers are not the protocol's
  }
}

/// The numbers of an answer under the names that definitions give them; further ones stand in its
/// remark as "T=1, OEM1 = 128".
irp::Parameters told_by(const analysis_answer& answer) {
  irp::Parameters told;
  if (answer.device >= 0) told["D"] = answer.device;
  if (answer.subdevice >= 0) told["S"] = told["Dev2"] = answer.subdevice;
  // A function of 32 bits comes as its bits.
  if (answer.obc != -1) told["F"] = told["OBC"] = static_cast<uint32_t>(answer.obc);
  const auto words = number::split(answer.misc, " ,:=");
  for (size_t i = 1; i < words.size(); ++i) {
    if (const auto value = number::whole(words[i]))
      told.try_emplace(std::string(words[i - 1]), *value);
  }
  constexpr int kByteBits = 8;
  // XMP's 16 bits of function come as two bytes.
  if (const auto low = told.find("OBC2"); low != told.end() && answer.obc >= 0) {
    told["F"] = int64_t{answer.obc} << kByteBits | low->second;
  }
  return told;
}

/// Numbers that a name ends with: 219 and 165 of "Kaseikyo-219-165".
std::vector<int64_t> numbers_in(std::string_view name) {
  std::vector<int64_t> found;
  for (const std::string_view word : number::split(name, "-")) {
    if (const auto value = number::whole(word)) found.push_back(*value);
  }
  return found;
}

/// The parameters that are neither told nor have a default.
std::vector<const irp::Parameter*> untold(const irp::Protocol& protocol,
                                          const irp::Parameters& told) {
  std::vector<const irp::Parameter*> open;
  for (const irp::Parameter& one : protocol.parameters()) {
    if (!one.preset && !told.contains(one.name)) open.push_back(&one);
  }
  return open;
}

/// The numbers with which this protocol sends the answer, if it does.
std::optional<key_code> sends(const irp::Protocol& protocol, const analysis_answer& answer,
                              const irp::Parameters& told) {
  key_code code{&protocol, {}};
  for (const irp::Parameter& one : protocol.parameters()) {
    if (const auto known = told.find(one.name); known != told.end()) code.parameters.insert(*known);
  }
  auto open = untold(protocol, told);
  const auto named = numbers_in(answer.protocol);
  if (open.size() > 1 && open.size() == named.size()) {
    for (size_t i = 0; i < open.size(); ++i) code.parameters[open[i]->name] = named[i];
    open.clear();
  }
  if (open.empty()) return decodes_to(code, answer) ? std::optional(code) : std::nullopt;
  if (open.size() > 1 || open[0]->high - open[0]->low >= kMostTried) return {};
  for (int64_t value = open[0]->low; value <= open[0]->high; ++value) {
    code.parameters[open[0]->name] = value;
    if (decodes_to(code, answer)) return code;
  }
  return {};
}

std::optional<key_code> find(const irp::Protocols& protocols, const analysis_answer& answer) {
  const irp::Parameters told = told_by(answer);
  if (const irp::Protocol* named = protocols.find(answer.protocol)) {
    if (auto code = sends(*named, answer, told)) return code;
  }
  if (told.empty()) return {};
  for (const auto& protocol : protocols.all()) {
    if (auto code = sends(*protocol, answer, told)) return code;
  }
  return {};
}

/// "Keeprite without E, G, H" where the answer does not tell these.
std::string what_cannot_be_sent(const irp::Protocols& protocols, const analysis_answer& answer) {
  std::string text = answer.protocol;
  if (const irp::Protocol* const named = protocols.find(answer.protocol)) {
    const char* between = " without ";
    for (const irp::Parameter* const one : untold(*named, told_by(answer))) {
      text.append(between).append(one->name);
      between = ", ";
    }
  }
  return text;
}

key_code code_of_message(const irp::Protocols& protocols, const json& message) {
  const auto name = message.at("name").get<std::string>();
  const irp::Protocol* protocol = protocols.find(name);
  if (protocol == nullptr) throw irp::Error("no protocol " + name);
  return {protocol, message.at("fields").get<irp::Parameters>()};
}

key_code code_of(const irp::Protocols& protocols, const json& record) {
  if (const auto message = record.find("message");
      message != record.end() && message->is_object() && message->at("name").is_string()) {
    return code_of_message(protocols, *message);
  }
  const auto analysis = record.find("analysis");
  if (analysis == record.end()) throw irp::Error("no decoded signal");
  std::string names;
  for (const json& one : *analysis) {
    const analysis_answer answer = answer_of(one);
    if (auto code = find(protocols, answer)) return *code;
    names.append(names.empty() ? "" : "; ").append(what_cannot_be_sent(protocols, answer));
  }
  throw irp::Error(names.empty() ? "a signal of no known protocol"
                                 : "no definition sends " + names);
}

}  // namespace

key_code code_of_record(const irp::Protocols& protocols, std::string_view line) {
  try {
    return code_of(protocols, json::parse(line));
  } catch (const json::parse_error& fault) {
    throw irp::Error("column " + std::to_string(fault.byte) + ": no JSON");
  } catch (const json::exception&) {
    throw irp::Error("no record of vantrel-json");
  }
}

}  // namespace companions
