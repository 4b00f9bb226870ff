// SPDX-License-Identifier: GPL-3.0-or-later
// Nokia, in frames of 12, 24 and 32 bits.
//
// Modulation  pulse distance with four symbols, 38 kHz
// Timings     lead 412/276 µs; mark 164, space 276, 445, 614 or 783 for the bits 00, 01, 10, 11
//             (mark and space together are read: 272 + 169 * symbol, rounded down)
// Data        most significant bit first
//
//               dddd cccccccc                         12 bits
//               dddddddd ssssssss cccccccc            24 bits
//               dddddddd ssssssss t xxxxxxx cccccccc  32 bits
//
//               d  device
//               s  subdevice
//               c  command
//               t  toggle, left out of the scancode
//               x  free
// Check       the number of bits; other frames are reported with a hash as "NOKIA-??"
// Scancode    the bits as gathered
// Sample      12 bits 0xA53: a frame of 15 durations, scancode 0x00000A53
#include "lib/ir/ir_hash.h"
#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"

namespace {

constexpr uint8_t kFewestEntries = 4;
constexpr unsigned kFirstSymbolSpace = 3;
constexpr int kZeroUs = 272;
constexpr int kStepUs = 169;
constexpr uint32_t kSymbolMask = 3;
constexpr uint32_t kSymbolBits = 2;
constexpr uint32_t kToggleBit = 1U << 15;

// A symbol outside its range wraps. The last one is not moved up when it has its place before a
// stop mark; a frame that ends in a space moves all of them up by one symbol.
uint32_t gather_symbols(const ir_t& event) {
  uint32_t bits = 0;
  for (unsigned space = kFirstSymbolSpace; space < event.count; space += 2) {
    const int symbol = (event.buf[space] + event.buf[space - 1] - kZeroUs) / kStepUs;
    bits |= static_cast<uint32_t>(symbol) & kSymbolMask;
    if (space + 2 != event.count) bits <<= kSymbolBits;
  }
  return bits;
}

void report_hash(ir_t* event, ir_prot* p) {
  event->hash = ir_hash(event->buf, event->count, kHashMaxEdgeUs);
  p->scancode = event->hash;
  p->protocol = RC_PROTO_UNKNOWN;
  report_scancode("NOKIA-??", p->scancode, 0);
}

// The result's protocol is left alone except by the hash.
int ir_nokia_decode(ir_t* event, ir_prot* p) {
  p->bits = 0;
  if (event->count >= kFewestEntries) {
    p->bits = ((event->count - uint32_t{kFewestEntries}) | 1) + 1;
    p->scancode = gather_symbols(*event);
  }
  switch (p->bits) {
    case 12:
      report_scancode("NOKIA12", p->scancode, p->bits);
      break;
    case 24:
      report_scancode("NOKIA", p->scancode, p->bits);
      break;
    case 32:
      p->scancode &= ~kToggleBit;
      report_scancode("NOKIA32", p->scancode, p->bits);
      break;
    default:
      report_hash(event, p);
      break;
  }
  return RC_PROTO_NOKIA;
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_NOKIA),
    .decode = ir_nokia_decode,
    .carrier = 38000,
};

constinit protocol registration = {{}, "irprotocol", "NOKIA", &handler};

[[gnu::constructor(startup::kProtocolNokia)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
