// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/transceiver.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "companions/remote/child.h"

namespace companions {
namespace {

// What `vantrel sendir` takes.
constexpr int kLeastDelayUs = 15'000;
constexpr int kMostDelayUs = 65'000;
constexpr int kLongestUs = 65'535;
// A receiver for one carrier hears others within this range nearly as well.
constexpr int kDeviceCarrierHz = 38'000;
constexpr int kAlikeHz = 1'000;

/// vantrel as it stands beside this program, else the one that the shell would find.
std::string vantrel() {
  std::error_code unknown;
  const auto own = std::filesystem::read_symlink("/proc/self/exe", unknown);
  const auto beside = own.parent_path() / "vantrel";
  return std::filesystem::exists(beside, unknown) ? beside.string() : "vantrel";
}

std::vector<std::string> listen_command() {
  return {vantrel(), "listen", "--raw", "--elapsed"};
}

/// What sendir is told of a signal: the durations, the silence between two sends, their number.
std::vector<std::string> sendir_command(const pattern& signal) {
  std::vector<int> durations = signal.durations;
  std::string delay;
  if (durations.size() % 2 == 0) {
    delay = "--ik=" + std::to_string(std::clamp(durations.back(), kLeastDelayUs, kMostDelayUs));
    durations.pop_back();
  }
  std::string raw = "--raw=";
  for (size_t i = 0; i < durations.size(); ++i) {
    raw += (i == 0 ? "+" : i % 2 == 0 ? " +" : " -") + std::to_string(durations[i]);
  }
  std::vector<std::string> command{vantrel(), "sendir", raw};
  if (!delay.empty()) command.push_back(delay);
  if (signal.held) command.push_back("--repeat=" + std::to_string(kSendsOfHeld));
  return command;
}

bool send_by_vantrel(const pattern& signal) {
  const std::vector<int> frame = without_gap(signal.durations);
  const auto longest = std::max_element(frame.begin(), frame.end());
  if (longest == frame.end() || *longest > kLongestUs) {
    std::fprintf(stderr, "vantrel-remote: %s: the device sends no duration of over %d us\n",
                 signal.name.c_str(), kLongestUs);
    return false;
  }
  if (signal.carrier_hz && std::abs(*signal.carrier_hz - kDeviceCarrierHz) > kAlikeHz) {
    std::fprintf(
        stderr,
        "vantrel-remote: %s needs a carrier of %d Hz, but sendir cannot tell the device the "
        "carrier\n",
        signal.name.c_str(), *signal.carrier_hz);
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
