// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/sendir.h"

#include <cstdlib>
#include <filesystem>

namespace companions {
namespace {

// Receivers are tuned to one carrier and hear others within this range nearly as well.
constexpr int kDeviceCarrierHz = 38000, kAlikeHz = 1000;

}  // namespace

std::string vantrel_program() {
  std::error_code unknown;
  const auto own = std::filesystem::read_symlink("/proc/self/exe", unknown);
  const auto beside = own.parent_path() / "vantrel";
  return std::filesystem::exists(beside, unknown) ? beside.string() : "vantrel";
}

std::string signed_list(const std::vector<int>& durations) {
  std::string text;
  for (size_t i = 0; i < durations.size(); ++i) {
    text.append(i == 0 ? "" : " ").append(i % 2 == 0 ? "+" : "-");
    text += std::to_string(durations[i]);
  }
  return text;
}

std::optional<std::string> carrier_note(const std::string& name, int carrier_hz) {
  if (std::abs(carrier_hz - kDeviceCarrierHz) <= kAlikeHz) return std::nullopt;
  const std::string needed =
      carrier_hz == 0 ? "no carrier" : "a carrier of " + std::to_string(carrier_hz) + " Hz";
  return name + " needs " + needed + ", but sendir cannot tell the device the carrier";
}

}  // namespace companions
