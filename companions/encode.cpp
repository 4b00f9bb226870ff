// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/encode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "companions/sendir.h"
#include "lib/libutil/number.h"

namespace companions {
namespace {

constexpr int kMostCycles = 0xFFFF;
constexpr double kClockHz = 4145146;  // Pronto counts carrier periods in this clock
constexpr int kUnmodulatedUnitHz = 38000;
constexpr double kUsPerSecond = 1e6;

std::string comma_list(const std::vector<int>& durations) {
  std::string text;
  for (const int us : durations) text.append(text.empty() ? "" : ",") += std::to_string(us);
  return text;
}

void append_word(std::string& text, int word) {
  std::array<char, sizeof " FFFF"> digits;
  std::snprintf(digits.data(), digits.size(), " %04X", static_cast<unsigned>(word) & kMostCycles);
  text += text.empty() ? digits.data() + 1 : digits.data();
}

std::string pronto(const press& sent) {
  const bool modulated = sent.carrier_hz > 0;
  const double clocks = kClockHz / (modulated ? sent.carrier_hz : kUnmodulatedUnitHz);
  const auto frequency = static_cast<int>(std::lround(clocks));
  std::string text;
  append_word(text, modulated ? 0 : 0x0100);
  append_word(text, frequency);
  for (const auto* part : {&sent.once, &sent.repeat}) {
    append_word(text, static_cast<int>((part->size() + 1) / 2));
  }
  for (const auto* part : {&sent.once, &sent.repeat}) {
    for (const int us : *part) {
      const long cycles = std::lround(us * kClockHz / kUsPerSecond / frequency);
      if (cycles > kMostCycles) {
        throw irp::Error(std::to_string(us) + " us are too long for Pronto hex");
      }
      append_word(text, static_cast<int>(std::max(cycles, 1L)));
    }
    if (part->size() % 2 == 1) append_word(text, 0);  // no gap is known
  }
  return text;
}

/// Whether another value of this parameter changes what is sent without any repeats.
bool is_sent(const irp::Protocol& protocol, irp::Parameters numbers, const irp::Parameter& one,
             const std::vector<int>& sent) {
  int64_t& value = numbers.at(one.name);
  value = value == one.low ? one.high : one.low;
  try {
    return protocol.render(numbers, 0).whole() != sent;
  } catch (const irp::Error&) {
    return true;  // it must be in there, to do such harm
  }
}

/// Whether a key needs a repeat to be told from others: what is sent without may be nothing, or a
/// lead-in or a start frame that is the same for all.
bool needs_repeat(const irp::Protocol& protocol, const irp::Parameters& parameters) {
  const irp::Parameters full = protocol.complete(parameters);
  const auto sent = protocol.render(full, 0).whole();
  return sent.empty() || std::ranges::any_of(protocol.parameters(), [&](const auto& parameter) {
           return !parameter.preset && !is_sent(protocol, full, parameter, sent);
         });
}

}  // namespace

press render_press(const irp::Protocol& protocol, const irp::Parameters& parameters, int repeats) {
  press sent{
      .whole = {}, .once = {}, .repeat = {}, .has_ending = false, .carrier_hz = protocol.carrier()};
  const irp::Rendering held = protocol.render(parameters, 1);
  for (const auto& [kind, durations] : held.parts) {
    if (kind == irp::Segment::kIntro) sent.once = durations;
    if (kind == irp::Segment::kRepeat) sent.repeat = durations;
    if (kind == irp::Segment::kEnding) sent.has_ending = true;
  }
  const int passes = needs_repeat(protocol, parameters) ? repeats + 1 : repeats;
  sent.whole = protocol.render(parameters, passes).whole();
  if (sent.whole.size() % 2 == 0 && !sent.whole.empty()) sent.whole.pop_back();
  if (sent.whole.empty()) throw irp::Error(protocol.name() + " sends nothing");
  return sent;
}

std::string sendir_text(const press& sent, std::string_view option) {
  if (option == "pronto") return pronto(sent);
  for (const int us : sent.whole) {
    if (us > kLongestSendirUs) {
      throw irp::Error("a gap of " + std::to_string(us) +
                       " us is too long for the lists of sendir, Pronto hex can hold it");
    }
  }
  return option == "raw" ? signed_list(sent.whole) : comma_list(sent.whole);
}

void add_parameter(std::string_view text, irp::Parameters& parameters) {
  const size_t equals = text.find('=');
  const std::string_view digits =
      equals == std::string_view::npos ? std::string_view() : text.substr(equals + 1);
  const auto value = number::whole(digits, digits.starts_with("0x") ? 16 : 10);
  if (!value || equals == 0) {
    throw irp::Error("'" + std::string(text) + "' is not NAME=NUMBER");
  }
  parameters[std::string(text.substr(0, equals))] = *value;
}

}  // namespace companions
