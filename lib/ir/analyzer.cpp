// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/analyzer.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

// The first edges decide by a fixed limit, later ones by an average per edge.
constexpr uint8_t kLastEarlyEdge = 5;
constexpr uint16_t kEarlyLimitUs = 2000;
constexpr unsigned kLimitPerEdgeUs = 800;

constinit list_head registered_names = {&registered_names, &registered_names};
constinit list_head registered_analyzers = {&registered_analyzers, &registered_analyzers};
constinit list_head dropped_analyzers = {&dropped_analyzers, &dropped_analyzers};

IR_PROTOCOL_ANALYZER* analyzer_of(list_head* node) {
  return list_record<IR_PROTOCOL_ANALYZER>(node);
}

// The limit wraps at 16 bits: from the 82nd edge on it starts again near 0.
uint16_t drop_limit(uint8_t index) {
  if (index <= kLastEarlyEdge) return kEarlyLimitUs;
  return static_cast<uint16_t>(index * kLimitPerEdgeUs);
}

IR_PROTOCOL_ANALYZER* smallest_error() {
  IR_PROTOCOL_ANALYZER* best = nullptr;
  for (list_head* n = registered_analyzers.next; n != &registered_analyzers; n = n->next) {
    IR_PROTOCOL_ANALYZER* analyzer = analyzer_of(n);
    if (best == nullptr || analyzer->acc < best->acc) best = analyzer;
  }
  return best;
}

void reset_one(IR_PROTOCOL_ANALYZER* analyzer) {
  analyzer->acc = 0;
  analyzer->result = 0;
  if (analyzer->reset != nullptr) analyzer->reset(analyzer);
}

}  // namespace

void _register_protocol_iranalyzer(protocol* p) {
  list_insert(&p->node, &registered_names);
  auto* analyzer = static_cast<IR_PROTOCOL_ANALYZER*>(p->iface);
  list_insert(&analyzer->node, &registered_analyzers);
}

uint8_t analyze_edge(uint32_t duration, ir_t* ir) {
  const uint16_t limit = drop_limit(ir->count);
  const IR_PROTOCOL_ANALYZER* leader = nullptr;
  for (list_head *n = registered_analyzers.next, *next = nullptr; n != &registered_analyzers;
       n = next) {
    next = n->next;
    IR_PROTOCOL_ANALYZER* analyzer = analyzer_of(n);
    analyzer->analyze(duration, ir, analyzer);
    if (analyzer->acc > limit) {
      list_remove(n);
      list_insert(n, &dropped_analyzers);
    } else if (leader == nullptr || analyzer->acc < leader->acc) {
      leader = analyzer;
    }
  }
  return leader != nullptr ? leader->result : 0;
}

uint32_t analyze_finish(uint32_t ticks, ir_t* ir) {
  IR_PROTOCOL_ANALYZER* winner = smallest_error();
  if (winner == nullptr || winner->finish == nullptr) return RC_PROTO_UNKNOWN;
  return winner->finish(ticks, ir, winner);
}

void reset_analyzer() {
  for (list_head* n = registered_analyzers.next; n != &registered_analyzers; n = n->next) {
    reset_one(analyzer_of(n));
  }
  while (dropped_analyzers.next != &dropped_analyzers) {
    list_head* n = dropped_analyzers.next;
    reset_one(analyzer_of(n));
    list_remove(n);
    list_insert(n, &registered_analyzers);
  }
}

uint32_t analyze_protocol(const uint16_t* buf, uint8_t len) {
  ir_t event = {};
  std::copy_n(buf, std::min<size_t>(len, std::size(event.buf)), event.buf);
  for (event.count = 0; event.count < len; ++event.count) analyze_edge(buf[event.count], &event);
  const uint32_t matched = analyze_finish(kFinishTicks, &event);
  reset_analyzer();
  return matched;
}

void print_all_analyzers() {
  std::puts("Enabled Protocols\n-----------------");
  for (list_head* n = registered_names.next; n != &registered_names; n = n->next) {
    std::puts(list_record<protocol>(n)->name);
  }
}

void age_win_memory(IR_PROTOCOL_ANALYZER* self) {
  auto* memory = static_cast<win_memory*>(self->priv);
  if (memory->decodes_left == 0 || --memory->decodes_left > 0) return;
  memory->frame_entries = 0;
}

void note_win(ir_t* ir, IR_PROTOCOL_ANALYZER* self, uint16_t min_gap_ms, uint16_t max_gap_ms) {
  auto* memory = static_cast<win_memory*>(self->priv);
  if (memory->decodes_left > 0 && ir->te >= min_gap_ms && ir->te <= max_gap_ms) ir->repeat = 1;
  remember_win(*memory);
}
