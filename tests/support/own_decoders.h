// SPDX-License-Identifier: GPL-3.0-or-later
// What the tests of the program's own decoders share: fresh analyzers, events and expected lines.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "lib/ir/analyzer.h"
#include "lib/ir/ir_hash.h"
#include "lib/ir/protocols.h"
#include "lib/liblog/logging.h"
#include "tests/support/results.h"

/// The analyzers remember up to two decodes; every test starts with their memories run out, and
/// with the decoders' remarks shown.
class FreshAnalyzers : public testing::Test {
 protected:
  static void forget() {
    reset_analyzer();
    reset_analyzer();
  }

  void SetUp() override {
    forget();
    set_loglevel(3);
  }

  void TearDown() override { set_loglevel(1); }
};

inline ir_t event_of(const std::vector<int>& durations) {
  return ir_event_of(packet_of(durations));
}

/// The vote on an event, which keeps what the analyzers wrote into it.
inline uint32_t vote(const std::vector<int>& durations, ir_t& event) {
  event.count = 0;
  for (const int duration : durations) {
    event.buf[event.count] = static_cast<uint16_t>(duration);
    analyze_edge(event.buf[event.count], &event);
    ++event.count;
  }
  const uint32_t winner = analyze_finish(kFinishTicks, &event);
  reset_analyzer();
  return winner;
}

inline uint32_t vote(const std::vector<int>& durations) {
  ir_t event = {};
  return vote(durations, event);
}

/// Whether an analyzer takes a pattern that arrives after this gap for a repeat.
inline bool is_repeat(const std::vector<int>& durations, uint16_t gap_ms = 0) {
  ir_t event = {};
  event.te = gap_ms;
  vote(durations, event);
  return event.repeat != 0;
}

/// What ir_decode_packet makes of a pattern.
inline Reported decoded(const std::vector<int>& durations) {
  ir_t event = event_of(durations);
  return reported([&] { ir_decode_packet(&event); });
}

/// The line of a result: the name in its column, the scancode in hexadecimal digits, what follows.
inline std::string own_line(const char* name, const std::string& scancode,
                            const std::string& tail = "") {
  std::string line = ":: ZARVO    :: ";
  line += name;
  line.resize(std::max(line.size(), size_t{15 + 13}), ' ');
  return line + " - scancode: 0x" + scancode + tail + "\n";
}

/// The hash of a pattern as lines show it.
inline std::string hash_text(const std::vector<int>& durations) {
  const ir_t event = event_of(durations);
  char text[16];
  std::snprintf(text, sizeof text, "%08X", ir_hash(event.buf, event.count, kHashMaxEdgeUs));
  return text;
}
