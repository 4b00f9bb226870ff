// SPDX-License-Identifier: GPL-3.0-or-later
// Denon and Sharp: one code, told apart by the last two bits.
//
// Modulation  pulse distance, 38 kHz
// Timings     mark 264 µs; space 792 = 0, 1848 = 1; stop mark 264
// Data        15 bits, least significant bit first
//
//               ddddd cccccccc vv
//
//               d  device
//               c  command, complemented in the second half of a key press
//               v  00 and 11 Denon, 01 and 10 Sharp
// Check       the number of bits
// Scancode    device in bits 8-12, command in 0-7; a hash of the frame stands beside it
// Sample      device 0x0C, command 0x0F, bits 00: "DENON{1}", scancode 0x0000180F
#include "lib/ir/ir_hash.h"
#include "lib/ir/protocols.h"
#include "lib/ir/result.h"
#include "lib/ir/startup.h"
#include "lib/liblog/logging.h"

namespace {

constexpr uint8_t kFrameEntries = 31;
constexpr uint32_t kBits = 15;
constexpr uint16_t kShortestOneUs = 1585;
constexpr uint16_t kLongestOneUs = 2111;

struct variant {
  std::string_view name;
  rc_proto protocol;
  bool complemented;
};

// By the last two bits.
constexpr variant kVariants[] = {
    {"DENON{1}", RC_PROTO_DENON, false},
    {"SHARP{1}", RC_PROTO_SHARP, true},
    {"SHARP{2}", RC_PROTO_SHARP, false},
    {"DENON{2}", RC_PROTO_DENON, true},
};

uint32_t gather_bits(const ir_t& event) {
  uint32_t bits = 0;
  for (unsigned i = 1; i < kFrameEntries; i += 2) {
    const uint16_t space = event.buf[i];
    bits = bits << 1 | static_cast<uint32_t>(space >= kShortestOneUs && space <= kLongestOneUs);
  }
  return bits;
}

void report(std::string_view name, uint32_t scancode, uint32_t hash) {
  result_room room;
  text_writer line = begin_result_line(room, kOwnFamily, name);
  line.add(" scancode: 0x").add_hex(scancode, 8).add(" : 0x").add_hex(hash, 8).add('\n');
  report_result({kOwnFamily, name, scancode, kBits, line.text()});
}

int ir_denon_decode(ir_t* event, ir_prot* p) {
  if (event->count != kFrameEntries) {
    _log(1, "[E] %s(%d): invalid bit count, expect 31 != %d\n", __func__, __LINE__, event->count);
    p->scancode = 0;
    return 0;
  }
  const uint32_t bits = gather_bits(*event);
  const variant& found = kVariants[bits & 3];
  const uint32_t command = reverse8(bits >> 2);
  // The device's 5 bits are reversed in a byte of which only 7 bits are filled, so they end up one
  // place too high and lose the highest; kept, because codes in use were learned that way.
  const uint32_t device = reverse8(bits >> 8) & 0x1FU;
  p->protocol = found.protocol;
  p->scancode = device << 8 | (found.complemented ? ~command & 0xFF : command);
  report(found.name, p->scancode, ir_hash(event->buf, event->count, kHashMaxEdgeUs));
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_SHARP) | claims(RC_PROTO_DENON),
    .decode = ir_denon_decode,
    .carrier = 38000,
};

constinit protocol registration = {{}, "irprotocol", "DENON", &handler};

[[gnu::constructor(startup::kProtocolDenon)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
