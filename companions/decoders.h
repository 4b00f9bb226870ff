// SPDX-License-Identifier: GPL-3.0-or-later
// What the three decoder families say about one pattern, as records instead of lines.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "lib/ir/DecodeIR/answer.h"

namespace companions {

/// The program's own decoders.
struct program_answer {
  std::string protocol;
  uint32_t scancode;
  uint32_t bits;  // 0 where the decoder does not count them
};

/// One interpretation of the signal analysis; -1 stands for "has none".
struct analysis_answer {
  std::string protocol;
  int device, subdevice, obc;
  std::array<int, 4> hex;
  std::string misc;
  analysis::press_place place = {};

  /// False for a frame whose bits could be read although nobody knows its protocol.
  [[nodiscard]] bool names_a_protocol() const { return !protocol.starts_with("Gap-"); }
};

/// The mark/space matchers.
struct arduino_answer {
  std::string type;
  uint32_t value;
  int bits;
};

constexpr size_t kMostDurations = 255;     // durations of a frame that the families take
constexpr int kLongestDurationUs = 14000;  // and the longest of them; a longer space parts frames

/// Whether the program's decoders and the matchers can be asked about these durations.
bool takes_frame(std::span<const int> durations);

/// The answer of the program's own decoders, nothing when they print no result. They remember
/// the last patterns, so patterns are to be asked for in their order.
/// REQUIRES: takes_frame(durations).
std::optional<program_answer> ask_program(std::span<const int> durations, int elapsed_ms);

/// Every successive interpretation of a signal of any length, the one that vantrel shows first.
std::vector<analysis_answer> ask_analysis(std::span<const int> durations);
/// The same where the carrier is known, which vantrel cannot measure.
std::vector<analysis_answer> ask_analysis(std::span<const int> durations, int carrier_hz);

/// The answer of the mark/space matchers, nothing for a frame too short or too long for them.
/// REQUIRES: takes_frame(durations).
std::optional<arduino_answer> ask_arduino(std::span<const int> durations);

}  // namespace companions
