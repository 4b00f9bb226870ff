// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/lib/ir/arduino/frames.h"

#include <array>
#include <cstdio>

#include "lib/ir/arduino/arduino.h"
#include "tests/support/contract.h"

std::vector<int> sent(std::string_view protocol, const irp::Parameters& parameters) {
  const irp::Protocol& definition = irp::protocol(protocol);
  return contract::single_frame(definition, definition.complete(parameters));
}

std::vector<int> sent_lg(uint32_t bits) {
  std::vector<int> frame = {8500, 4250};
  for (int bit = 27; bit >= 0; --bit) {
    frame.push_back(560);
    frame.push_back((bits >> bit & 1) != 0 ? 1690 : 560);
  }
  frame.push_back(560);
  return frame;
}

std::string answer(const std::vector<int>& durations) {
  const std::vector<uint16_t> exact(durations.begin(), durations.end());
  arduino_result result;
  if (!IRrecv::decode(exact, result)) return "";
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "%s %08X {%u}", result.type, result.value, result.bits);
  return text.data();
}

std::string type_of(const std::vector<int>& durations) {
  const std::string text = answer(durations);
  return text.substr(0, text.find(' '));
}
