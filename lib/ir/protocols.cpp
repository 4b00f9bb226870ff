// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/protocols.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "lib/ir/analyzer.h"
#include "lib/ir/result.h"

namespace {

constexpr unsigned kMaskBits = 64;

constinit list_head registered_protocols = {&registered_protocols, &registered_protocols};
constinit protocol* unknown = nullptr;  // the catch-all

IR_PROTOCOL_HANDLER* handler_of(const protocol* p) {
  return static_cast<IR_PROTOCOL_HANDLER*>(p->iface);
}

const protocol* find_protocol(uint32_t matched) {
  const uint64_t bit = uint64_t{1} << (matched % kMaskBits);
  for (list_head* n = registered_protocols.next; n != &registered_protocols; n = n->next) {
    const auto* p = list_record<protocol>(n);
    if ((handler_of(p)->protocols & bit) != 0) return p;
  }
  return nullptr;
}

uint32_t finish_vote(ir_t* ir) {
  const uint32_t matched = analyze_finish(kFinishTicks, ir);
  reset_analyzer();
  return matched;
}

/// A count can be larger than the buffer that it counts.
void bound_count(ir_t* event) {
  event->count = static_cast<uint8_t>(std::min<size_t>(event->count, std::size(event->buf)));
}

constexpr auto kReversed = [] {
  std::array<uint8_t, 256> table = {};
  for (size_t byte = 1; byte < table.size(); ++byte) {
    table[byte] = static_cast<uint8_t>(table[byte / 2] / 2 | byte % 2 * 0x80);
  }
  return table;
}();

}  // namespace

void _register_protocol_irprotocol(protocol* p) {
  list_insert(&p->node, &registered_protocols);
  if (handler_of(p)->protocols == 0) unknown = p;
}

ir_t ir_event_of(const ir_packet& packet) {
  ir_t event = {};
  const auto entries = std::min<size_t>(packet.len, std::size(event.buf));
  event.count = static_cast<uint8_t>(entries);
  std::copy_n(packet.buf, entries, event.buf);
  event.te = packet.elapsed;
  return event;
}

int ir_decode(ir_t* event, rc_proto matched, ir_prot* p) {
  bound_count(event);
  const protocol* claiming = find_protocol(matched);
  if (claiming != nullptr) {
    handler_of(claiming)->decode(event, p);
    return 0;
  }
  if (unknown != nullptr) handler_of(unknown)->decode(event, p);
  return -1;
}

int ir_decode_packet(ir_t* ir) {
  bound_count(ir);
  analyze_all({ir->buf, ir->count}, ir);
  const uint32_t matched = finish_vote(ir);
  ir_decode(ir, static_cast<rc_proto>(matched), &ir->p);
  return static_cast<int>(matched);
}

int ir_decode_buf(const uint16_t* buf, uint8_t len) {
  ir_t event = {};
  const auto entries = std::min<size_t>(len, std::size(event.buf));
  for (size_t i = 0; i < entries; ++i) {
    event.buf[i] = buf[i];
    // One more than ir_decode_packet passes: the analyzers see the edge after it has arrived.
    event.count = static_cast<uint8_t>(i + 1);
    analyze_edge(buf[i], &event);
  }
  const uint32_t matched = finish_vote(&event);
  ir_prot scratch = {};
  ir_decode(&event, static_cast<rc_proto>(matched), &scratch);
  return static_cast<int>(matched);
}

int ir_encode(rc_proto /*protocol*/, uint32_t /*scancode*/, ir_t* /*event*/, unsigned int /*max*/) {
  return 0;
}

void print_all_protocols() {
  std::puts("Enabled Protocols\n-----------------");
  for (list_head* n = registered_protocols.next; n != &registered_protocols; n = n->next) {
    std::puts(list_record<protocol>(n)->name);
  }
}

uint8_t reverse8(uint32_t byte) {
  return kReversed[byte & 0xFF];
}

void report_scancode(std::string_view name, uint32_t scancode, uint32_t bits) {
  result_room room;
  text_writer line = begin_result_line(room, kOwnFamily, name);
  line.add(" scancode: 0x").add_hex(scancode, 8).add('\n');
  report_result({kOwnFamily, name, scancode, bits, line.text()});
}

int manchester_decode(const uint16_t* buf, int len, uint32_t bit_count, uint32_t* bits,
                      uint32_t* bits_collected, int T, int T2) {
  *bits_collected = 0;
  if (len < 1 || bit_count == 0) return 0;
  const int threshold = (T + T2) >> 1;
  int i = 0;
  while (i < len && *bits_collected < bit_count) {
    const int duration = buf[i];
    // A lone short duration at the end is half a bit cell.
    if (i == len - 1 && i % 2 == 0 && duration < threshold) return i;
    ++*bits_collected;
    const uint32_t last = *bits & 1;
    if (duration > threshold) {
      *bits = *bits << 1 | (last ^ 1);
      i += 1;
    } else {
      *bits = *bits << 1 | last;
      i += 2;
    }
  }
  return i;
}
