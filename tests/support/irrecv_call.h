// SPDX-License-Identifier: GPL-3.0-or-later
// Frames for the tests of the mark/space matchers, and what IRrecv says to them as one line.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "lib/ir/arduino/arduino.h"
#include "tests/support/contract.h"

namespace irrecv {

inline std::vector<int> sent(std::string_view protocol, const irp::Parameters& given) {
  return contract::frame(protocol, given);
}

/// LG is in no table: 8 address bits, 16 command bits, the check as given.
inline std::vector<int> sent_lg(uint32_t bits) {
  std::vector<int> frame = {8500, 4250};
  for (int bit = 27; bit >= 0; --bit) {
    frame.push_back(560);
    frame.push_back((bits >> bit & 1) != 0 ? 1690 : 560);
  }
  frame.push_back(560);
  return frame;
}

/// A frame with one duration replaced, its first `count` durations, and with a space after it.
inline std::vector<int> with(std::vector<int> frame, size_t index, int us) {
  frame.at(index) = us;
  return frame;
}

inline std::vector<int> cut(std::vector<int> frame, size_t count) {
  frame.resize(count);
  return frame;
}

inline std::vector<int> followed_by(std::vector<int> frame, int space_us) {
  frame.push_back(space_us);
  return frame;
}

/// "NEC 20DF10EF {32}", or "" where nothing is found.
inline std::string answer(const std::vector<int>& durations) {
  const std::vector<uint16_t> exact(durations.begin(), durations.end());
  arduino_result result;
  if (!IRrecv::decode(exact, result)) return "";
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "%s %08X {%u}", result.type, result.value, result.bits);
  return text.data();
}

/// The type of the answer alone.
inline std::string type_of(const std::vector<int>& durations) {
  const std::string text = answer(durations);
  return text.substr(0, text.find(' '));
}

}  // namespace irrecv
