// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/encode.h"

#include <algorithm>
#include <cstdint>

#include "companions/sendir.h"
#include "lib/libutil/number.h"

namespace companions {
namespace {

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
  press sent{.carrier_hz = protocol.carrier()};
  const irp::Rendering held = protocol.render(parameters, 1);
  for (const auto& [kind, durations] : held.parts) {
    if (kind == irp::Segment::kIntro) sent.once = durations;
    if (kind == irp::Segment::kRepeat) sent.repeat = durations;
    if (kind == irp::Segment::kEnding) sent.has_ending = true;
  }
  const int passes = needs_repeat(protocol, parameters) ? repeats + 1 : repeats;
  sent.whole = protocol.render(parameters, passes).whole();
  if (sent.whole.size() % 2 == 0 && !sent.whole.empty()) {
    sent.silence_us = sent.whole.back();
    sent.whole.pop_back();
  }
  if (sent.whole.empty()) throw irp::Error(protocol.name() + " sends nothing");
  return sent;
}

pattern signal_of(const press& sent, const std::string& name, const form& to) {
  pattern signal;
  if (to.holds.spell != nullptr) signal.name = to.holds.spell(name);
  if (is_own_list(to)) {
    const auto longest = std::max_element(sent.whole.begin(), sent.whole.end());
    if (*longest > kLongestSendirUs) {
      throw irp::Error("a gap of " + std::to_string(*longest) +
                       " us is too long for the lists of sendir, Pronto hex can hold it");
    }
    signal.durations = sent.whole;
    return signal;
  }
  signal.carrier_hz = sent.carrier_hz;
  if (to.holds.repeat) {
    signal.held = sent.once.empty();
    signal.durations = signal.held ? sent.repeat : sent.once;
    if (!signal.held) signal.repeat = sent.repeat;
  } else {
    signal.durations = sent.whole;
    if (sent.silence_us > 0) signal.durations.push_back(sent.silence_us);
  }
  return signal;
}

void add_parameter(std::string_view text, irp::Parameters& parameters) {
  const size_t equals = text.find('=');
  const std::string_view digits =
      equals == std::string_view::npos ? std::string_view() : text.substr(equals + 1);
  const auto value = number::whole(digits, digits.starts_with("0x") ? 16 : 10);
  if (!value || equals == 0) {
    throw irp::Error("'" + std::string(text) + "' is not NAME=NUMBER");
  }
  const auto [its, is_new] = parameters.emplace(text.substr(0, equals), *value);
  if (!is_new) throw irp::Error(its->first + " is given twice");
}

}  // namespace companions
