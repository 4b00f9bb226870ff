// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/analyzer.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "lib/ir/last_signal.h"

namespace {

constinit list_head registered_names = {&registered_names, &registered_names};
constinit list_head registered_analyzers = {&registered_analyzers, &registered_analyzers};
constinit list_head dropped_analyzers = {&dropped_analyzers, &dropped_analyzers};

IR_PROTOCOL_ANALYZER* analyzer_of(list_head* node) {
  return list_record<IR_PROTOCOL_ANALYZER>(node);
}

IR_PROTOCOL_ANALYZER* smallest_error() {
  IR_PROTOCOL_ANALYZER* best = nullptr;
  for (list_head* n = registered_analyzers.next; n != &registered_analyzers; n = n->next) {
    IR_PROTOCOL_ANALYZER* analyzer = analyzer_of(n);
    if (best == nullptr || analyzer->acc < best->acc) best = analyzer;
  }
  return best;
}

size_t score_each(std::span<const uint16_t> durations, ir_t* ir, IR_PROTOCOL_ANALYZER* analyzer) {
  const uint8_t count = ir->count;
  size_t i = 0;
  for (; i < durations.size(); ++i) {
    ir->count = static_cast<uint8_t>(i);
    analyzer->analyze(durations[i], ir, analyzer);
    if (analyzer->acc > drop_limit(ir->count)) break;
  }
  ir->count = count;
  return i;
}

// A pattern is printed and then decoded, so it often comes twice.
constinit last_signal last;

/// Scores a whole signal; `again`: the one that was scored last.
void score_signal(std::span<const uint16_t> durations, ir_t* ir, bool again,
                  IR_PROTOCOL_ANALYZER* analyzer) {
  if (again && analyzer->analyze_all != nullptr && !analyzer->remembers) {
    analyzer->acc = analyzer->last_acc;
    return;
  }
  analyzer->dropped_at = analyzer->analyze_all != nullptr
                             ? analyzer->analyze_all(durations, analyzer)
                             : score_each(durations, ir, analyzer);
  analyzer->last_acc = analyzer->acc;
}

// Behind those that dropped out before it or at the same edge.
void drop(IR_PROTOCOL_ANALYZER* analyzer) {
  list_head* place = &dropped_analyzers;
  while (place->prev != &dropped_analyzers &&
         analyzer_of(place->prev)->dropped_at > analyzer->dropped_at) {
    place = place->prev;
  }
  list_remove(&analyzer->node);
  list_insert(&analyzer->node, place);
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

void analyze_all(std::span<const uint16_t> durations, ir_t* ir) {
  const bool again = last.is(durations);
  for (list_head *n = registered_analyzers.next, *next = nullptr; n != &registered_analyzers;
       n = next) {
    next = n->next;
    IR_PROTOCOL_ANALYZER* analyzer = analyzer_of(n);
    score_signal(durations, ir, again, analyzer);
    if (analyzer->dropped_at < durations.size()) drop(analyzer);
  }
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
  event.count = len;
  std::copy_n(buf, std::min<size_t>(len, std::size(event.buf)), event.buf);
  analyze_all({buf, len}, &event);
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
