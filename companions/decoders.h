// SPDX-License-Identifier: GPL-3.0-or-later
// What the three decoder families say about one pattern, as records instead of lines.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

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
};

/// The mark/space matchers.
struct arduino_answer {
  std::string type;
  uint32_t value;
  int bits;
};

constexpr size_t kMostDurations = 255;  // of a pattern that the decoders take
constexpr int kLongestDurationUs = 14000;

/// The answer of the program's own decoders, nothing when they print no result. They remember
/// the last patterns, so patterns are to be asked for in their order.
/// REQUIRES: at most kMostDurations durations, each at most kLongestDurationUs.
std::optional<program_answer> ask_program(std::span<const int> durations, int elapsed_ms);

/// Every successive interpretation, the one that vantrel shows first.
std::vector<analysis_answer> ask_analysis(std::span<const int> durations);

/// The line that vantrel shows for the signal analysis, without its newline.
std::string analysis_line(std::span<const int> durations);

/// The answer of the mark/space matchers, nothing for a pattern too short or too long for them.
std::optional<arduino_answer> ask_arduino(std::span<const int> durations);

}  // namespace companions
