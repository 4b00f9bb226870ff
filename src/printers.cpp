// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "lib/ir/ir.h"
#include "lib/libutil/output.h"
#include "lib/libutil/text_writer.h"
#include "src/common.h"

namespace {

constexpr unsigned kUsPerMs = 1000;

// Pronto hex: a fixed carrier of 38 kHz and what ends the frame of the NEC family, that is the
// final space and a repeat frame of two pairs.
constexpr unsigned kPeriodUs = 26;
constexpr int kWordDigits = 4;
constexpr std::string_view kLearnedCode = "0000 ";
constexpr std::string_view kFrequencyWord = "006D ";
constexpr std::string_view kNecRepeatPairs = "0002 ";
constexpr std::string_view kNoRepeatPairs = "0000 ";
constexpr std::string_view kNecTail = "05F1 0156 0056 0015 0E4A";

int elapsed_flag = 0;

// Room for every entry of a packet with sign and separator, and for the words around them.
constexpr size_t kMostPerEntry = std::string_view("65535, ").size();
constexpr size_t kAround = 128;
using line_room = std::array<char, std::size(ir_packet{}.buf) * kMostPerEntry + kAround>;

void print(text_writer& line) {
  output::print(line.add('\n').text());
  line.clear();
}

void print_separated(text_writer& line, const ir_packet& packet, std::string_view separator) {
  line.add_decimal(packet.buf[0]);
  for (unsigned i = 1; i < packet.len; ++i) line.add(separator).add_decimal(packet.buf[i]);
  print(line);
}

bool is_nec_family(rc_proto protocol) {
  return protocol == RC_PROTO_NEC || protocol == RC_PROTO_NECX || protocol == RC_PROTO_NEC32;
}

}  // namespace

void set_elapsed_flag(int show) {
  elapsed_flag = show;
}

bool is_valid_packet(const ir_packet& packet) {
  return std::all_of(packet.buf, packet.buf + packet.len,
                     [](uint16_t duration) { return duration <= kLongestDurationUs; });
}

void print_raw(ir_packet* p) {
  line_room room;
  text_writer line(room);
  if (elapsed_flag != 0) print(line.add('+').add_decimal(p->elapsed * kUsPerMs));
  for (unsigned i = 0; i < p->len; ++i) {
    line.add(i % 2 == 0 ? '+' : '-').add_decimal(p->buf[i]).add(' ');
  }
  print(line);
}

void print_comma_delim(ir_packet* p) {
  line_room room;
  text_writer line(room);
  if (elapsed_flag != 0) print(line.add_decimal(p->elapsed).add(" ms"));
  print_separated(line, *p, ",");
}

void print_analysir(ir_packet* p) {
  line_room room;
  text_writer line(room);
  if (elapsed_flag != 0) print(line.add(":e:").add_decimal(p->elapsed));
  line.add("0,");
  print_separated(line, *p, ", ");
}

void print_pronto(ir_packet* p) {
  if (!is_valid_packet(*p)) {
    std::puts("error: invalid packet");
    return;
  }
  ir_t event = ir_event_of(*p);
  ir_decode_packet(&event);
  const bool nec = is_nec_family(event.p.protocol);

  line_room room;
  text_writer line(room);
  line.add(kLearnedCode).add(kFrequencyWord).add_hex(p->len / 2U + 1, kWordDigits).add(' ');
  line.add(nec ? kNecRepeatPairs : kNoRepeatPairs);
  for (unsigned i = 0; i < p->len; ++i) line.add_hex(p->buf[i] / kPeriodUs, kWordDigits).add(' ');
  if (nec) {
    line.add(kNecTail);
  } else {
    line.add_hex(p->elapsed * kUsPerMs / kPeriodUs, kWordDigits);
  }
  print(line);
}
