// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/transceiver.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "companions/remote/child.h"
#include "companions/sendir.h"

namespace companions {
namespace {

// What `vantrel sendir` takes.
constexpr int kLeastDelayUs = 15'000;
constexpr int kMostDelayUs = 65'000;

std::vector<std::string> listen_command() {
  return {vantrel_program(), "listen", "--raw", "--elapsed"};
}

/// What sendir is told of a signal: the durations, the silence between two sends, their number.
std::vector<std::string> sendir_command(const pattern& signal) {
  std::vector<int> durations = signal.durations;
  std::string delay;
  if (durations.size() % 2 == 0) {
    delay = "--ik=" + std::to_string(std::clamp(durations.back(), kLeastDelayUs, kMostDelayUs));
    durations.pop_back();
  }
  std::vector<std::string> command{vantrel_program(), "sendir", "--raw=" + signed_list(durations)};
  if (!delay.empty()) command.push_back(delay);
  if (signal.held) command.push_back(std::string("--repeat=").append(std::to_string(kSendsOfHeld)));
  return command;
}

bool send_by_vantrel(const pattern& signal) {
  const std::vector<int> frame = without_gap(signal.durations);
  const auto longest = std::max_element(frame.begin(), frame.end());
  if (longest == frame.end() || *longest > kLongestSendirUs) {
    std::fprintf(stderr, "vantrel-remote: %s: the device sends no duration of over %d us\n",
                 signal.name.c_str(), kLongestSendirUs);
    return false;
  }
  if (const auto note = carrier_note(signal.name, signal.carrier_hz.value_or(kUsualCarrierHz))) {
    std::fprintf(stderr, "vantrel-remote: %s\n", note->c_str());
  }
  return run_program(sendir_command(signal)) == EXIT_SUCCESS;
}

std::vector<std::string> ir_ctl_command() {
  return {"ir-ctl", "--receive"};
}

bool send_by_ir_ctl(const pattern& signal) {
  std::ostringstream text;
  if (signal.carrier_hz) text << "carrier " << *signal.carrier_hz << '\n';
  const std::vector<int> frame = without_gap(signal.durations);
  const bool has_gap = frame.size() != signal.durations.size();
  for (int sent = 0; sent < (signal.held && has_gap ? kSendsOfHeld : 1); ++sent) {
    if (sent > 0) text << "space " << signal.durations.back() << '\n';
    for (size_t i = 0; i < frame.size(); ++i) {
      text << (i % 2 == 0 ? "pulse " : "space ") << frame[i] << '\n';
    }
  }
  return run_program({"ir-ctl", "--send=/dev/stdin"}, text.str()) == EXIT_SUCCESS;
}

constexpr std::array<transceiver, 2> kTransceivers{{
    {"vantrel", listen_command, send_by_vantrel},
    {"ir-ctl", ir_ctl_command, send_by_ir_ctl},
}};

}  // namespace

const transceiver* find_transceiver(std::string_view name) {
  const auto found = std::find_if(kTransceivers.begin(), kTransceivers.end(),
                                  [name](const transceiver& one) { return one.name == name; });
  return found == kTransceivers.end() ? nullptr : &*found;
}

std::vector<std::string> transceiver_names() {
  std::vector<std::string> names;
  names.reserve(kTransceivers.size());
  for (const transceiver& one : kTransceivers) names.emplace_back(one.name);
  return names;
}

}  // namespace companions
