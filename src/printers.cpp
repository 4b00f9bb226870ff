// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "lib/ir/ir.h"
#include "src/common.h"

namespace {

constexpr unsigned kUsPerMs = 1000;

// Pronto hex: a fixed carrier of 38 kHz and what ends the frame of the NEC family, that is the
// final space and a repeat frame of two pairs.
constexpr unsigned kPeriodUs = 26;
constexpr std::string_view kLearnedCode = "0000 ";
constexpr std::string_view kFrequencyWord = "006D ";
constexpr std::string_view kNecRepeatPairs = "0002 ";
constexpr std::string_view kNoRepeatPairs = "0000 ";
constexpr std::string_view kNecTail = "05F1 0156 0056 0015 0E4A";

int elapsed_flag = 0;

// One line of output, put together without printf: the printers run once or twice per pattern.
class Line {
 public:
  Line& text(std::string_view s) {
    end_ = std::copy(s.begin(), s.end(), end_);
    return *this;
  }

  Line& decimal(unsigned value) {
    end_ = std::to_chars(end_, buffer_.data() + buffer_.size(), value).ptr;
    return *this;
  }

  // Upper case, at least four digits.
  Line& hex(unsigned value) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    int shift = 12;
    while (value >> shift > 0xF) shift += 4;
    for (; shift >= 0; shift -= 4) *end_++ = kDigits[value >> shift & 0xF];
    return *this;
  }

  void print() {
    text("\n");
    std::fwrite(buffer_.data(), 1, static_cast<size_t>(end_ - buffer_.data()), stdout);
    end_ = buffer_.data();
  }

 private:
  // Room for every entry of a packet with sign and separator, and for the words around them.
  static constexpr size_t kMostPerEntry = std::string_view("65535, ").size();
  static constexpr size_t kAround = 128;
  std::array<char, std::size(ir_packet{}.buf) * kMostPerEntry + kAround> buffer_;
  char* end_ = buffer_.data();
};

void print_separated(Line& line, const ir_packet& packet, std::string_view separator) {
  line.decimal(packet.buf[0]);
  for (unsigned i = 1; i < packet.len; ++i) line.text(separator).decimal(packet.buf[i]);
  line.print();
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
  Line line;
  if (elapsed_flag != 0) line.text("+").decimal(p->elapsed * kUsPerMs).print();
  for (unsigned i = 0; i < p->len; ++i) {
    line.text(i % 2 == 0 ? "+" : "-").decimal(p->buf[i]).text(" ");
  }
  line.print();
}

void print_comma_delim(ir_packet* p) {
  Line line;
  if (elapsed_flag != 0) line.decimal(p->elapsed).text(" ms").print();
  print_separated(line, *p, ",");
}

void print_analysir(ir_packet* p) {
  Line line;
  if (elapsed_flag != 0) line.text(":e:").decimal(p->elapsed).print();
  line.text("0,");
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

  Line line;
  line.text(kLearnedCode).text(kFrequencyWord).hex(p->len / 2U + 1).text(" ");
  line.text(nec ? kNecRepeatPairs : kNoRepeatPairs);
  for (unsigned i = 0; i < p->len; ++i) line.hex(p->buf[i] / kPeriodUs).text(" ");
  if (nec) {
    line.text(kNecTail);
  } else {
    line.hex(p->elapsed * kUsPerMs / kPeriodUs);
  }
  line.print();
}
