// SPDX-License-Identifier: GPL-3.0-or-later
// What decoders report and log while a piece of code runs, and packets to give them.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "lib/ir/ir_packet.h"
#include "lib/ir/result.h"
#include "tests/support/capture.h"

struct Reported {
  std::string lines;  // of all results
  std::string name;   // of the last result, as its numbers
  uint32_t scancode = 0, bits = 0;
  std::string log;  // line numbers of messages replaced by "#"
};

template <typename Code>
Reported reported(Code code) {
  Reported found;
  set_result_sink(
      [](const ir_result& result, void* to) {
        auto* const all = static_cast<Reported*>(to);
        all->lines += result.line;
        all->name = result.name;
        all->scancode = result.scancode;
        all->bits = result.bits;
      },
      &found);
  found.log = capture(code).err;
  set_result_sink(nullptr, nullptr);
  return found;
}

/// REQUIRES: at most 256 durations.
inline ir_packet packet_of(const std::vector<int>& durations, uint16_t elapsed_ms = 0) {
  ir_packet packet = {};
  std::copy(durations.begin(), durations.end(), packet.buf);
  packet.len = static_cast<uint8_t>(durations.size());
  packet.elapsed = elapsed_ms;
  return packet;
}
