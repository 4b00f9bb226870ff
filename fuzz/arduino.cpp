// SPDX-License-Identifier: GPL-3.0-or-later
// The mark/space matchers: any durations in a copy of just their size. Two bytes are a duration;
// the first byte chooses how they are scaled, so that short inputs reach the lengths that occur.
#include "lib/ir/arduino/arduino.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <vector>

#include "fuzz/input.h"

namespace {

std::vector<uint16_t> durations_of(const uint8_t* data, size_t size) {
  constexpr uint16_t kStepsUs[] = {0, 264, 400, 444, 525, 560, 600, 889};
  const uint16_t step = kStepsUs[data[0] % std::size(kStepsUs)];
  std::vector<uint16_t> durations;
  if (step == 0) {
    durations.resize((size - 1) / sizeof(uint16_t));
    if (!durations.empty()) {
      std::memcpy(durations.data(), data + 1, durations.size() * sizeof(uint16_t));
    }
    return durations;
  }
  // A nibble is a number of units, the other one jitter.
  for (size_t i = 1; i < size; ++i) {
    constexpr int kJitterUs = 8;
    const int us = (data[i] >> 4) * step + ((data[i] & 0xF) - 8) * kJitterUs;
    durations.push_back(static_cast<uint16_t>(us < 0 ? 0 : us));
  }
  durations.shrink_to_fit();
  return durations;
}

// A named frame keeps its name beside a stray mark, unless one stands there already.
void check_stray_mark(std::vector<uint16_t> durations, const arduino_result& alone) {
  constexpr uint16_t kMarkUs = 100;
  constexpr uint16_t kGapUs = 6000;
  if (std::string_view(alone.type) == "UNKNOWN" || durations.size() + 2 > IRrecv::kBufferLength ||
      (durations[0] <= 2 * kMarkUs && durations[1] >= kGapUs / 2)) {
    return;
  }
  durations.insert(durations.begin(), {kMarkUs, kGapUs});
  durations.shrink_to_fit();
  arduino_result beside;
  require(IRrecv::decode(durations, beside));
  require(std::string_view(beside.type) == alone.type && beside.value == alone.value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::vector<uint16_t> durations = durations_of(data, size);
  arduino_result result;
  const bool found = IRrecv::decode(durations, result);
  require(found == (result.type != nullptr));
  const size_t room = IRrecv::kBufferLength;
  require(result.overflow == (durations.size() > room ? durations.size() - room : 0));
  if (!found) return 0;
  require(result.overflow == 0);
  require(durations.size() >= 6 || (result.bits == 0 && result.value == 0xFFFFFFFF));
  require(result.bits == 0 || result.bits >= 32 || result.value >> result.bits == 0);
  require(result.bits == 32 || std::string_view(result.type) != "UNKNOWN");
  check_stray_mark(durations, result);
  return 0;
}
