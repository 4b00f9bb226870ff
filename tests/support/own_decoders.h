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

/// An analyzer of the tests' own, which stands last in both lists. It adds `error` to every
/// duration.
inline uint16_t probe_error;
inline IR_PROTOCOL_ANALYZER probe_analyzer = {
    .node = {},
    .analyze = [](uint32_t, ir_t*, IR_PROTOCOL_ANALYZER* self) { self->acc = probe_error; },
    .finish = [](uint32_t ticks, ir_t*, IR_PROTOCOL_ANALYZER*) { return 1000 + ticks; },
    .reset = nullptr,
    .priv = nullptr,
    .acc = 0,
    .result = 0,
};
inline protocol probe_registration = {{}, "iranalyzer", "probe", &probe_analyzer};
constexpr uint16_t kNeverWins = UINT16_MAX;

/// The records of a registry, given the link of its last one, which is left out.
inline std::vector<const protocol*> records_before(list_head& last) {
  std::vector<const protocol*> found;
  const list_head* const head = last.next;
  for (list_head* n = head->next; n != &last; n = n->next) {
    found.push_back(list_record<protocol>(n));
  }
  return found;
}

/// The registered analyzers, in the order of registration, without the probe.
inline std::vector<const protocol*> analyzers() {
  if (probe_registration.node.next == nullptr) _register_protocol_iranalyzer(&probe_registration);
  return records_before(probe_registration.node);
}

/// The analyzers remember up to two decodes, and the drops of a vote rearrange them: every test
/// starts with nothing remembered and the order of registration, and shows the decoders' remarks.
class FreshAnalyzers : public testing::Test {
 protected:
  static void forget() {
    reset_analyzer();
    reset_analyzer();
    probe_error = kNeverWins;
    for (const protocol* p : analyzers()) {
      list_head* const node = &static_cast<IR_PROTOCOL_ANALYZER*>(p->iface)->node;
      list_remove(node);
      list_insert(node, &probe_analyzer.node);
    }
  }

  void SetUp() override {
    forget();
    set_loglevel(3);
  }

  void TearDown() override { set_loglevel(1); }
};

/// The registered bit decoders, in the order of the search; one of the tests' own claims a protocol
/// that nobody else does.
inline std::vector<const protocol*> decoders() {
  static IR_PROTOCOL_HANDLER handler = {
      .protocols = uint64_t{1} << 63, .decode = nullptr, .carrier = 0};
  static protocol registration = {{}, "irprotocol", "probe", &handler};
  if (registration.node.next == nullptr) _register_protocol_irprotocol(&registration);
  return records_before(registration.node);
}

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
