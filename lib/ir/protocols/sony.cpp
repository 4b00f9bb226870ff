// SPDX-License-Identifier: GPL-3.0-or-later
// Sony SIRC.
//
// Modulation  pulse width, 40 kHz
// Timings     lead 2400/600 µs; mark 600 = 0, 1200 = 1; space 600
// Data        12, 15 or 20 bits, least significant bit first
//
//               fffffff ddddd             12 bits
//               fffffff dddddddd          15 bits
//               fffffff ddddd ssssssss    20 bits
//
//               f  function
//               d  device
//               s  subdevice
// Check       the number of bits
// Scancode    device in bits 16-23, subdevice in 8-15, function in 0-7
// Sample      device 1, function 21 in 12 bits, with its final space: scancode 0x00010015
#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"
#include "lib/liblog/logging.h"

namespace {

constexpr unsigned kFirstBitMark = 2;
constexpr uint16_t kLongestZeroUs = 900;

// Without a final space the frame ends before its last bit is looked at, which then reads as 0;
// kept, because codes in use were learned that way.
uint32_t gather_bits(const ir_t& event) {
  uint32_t bits = 0;
  for (unsigned i = kFirstBitMark; i + 1 < event.count; i += 2) {
    bits |= static_cast<uint32_t>(event.buf[i] > kLongestZeroUs);
    if (i + 2 != event.count) bits <<= 1;
  }
  return bits;
}

struct fields {
  rc_proto protocol;
  uint32_t device, subdevice, function;
};

fields split_12(uint32_t bits) {
  return {RC_PROTO_SONY12, reverse8(bits << 3), 0, reverse8(bits >> 4 & 0xFE)};
}

fields split_15(uint32_t bits) {
  return {RC_PROTO_SONY15, reverse8(bits), 0, reverse8(bits >> 7 & 0xFE)};
}

fields split_20(uint32_t bits) {
  return {RC_PROTO_SONY20, reverse8(bits >> 5 & 0xF8), reverse8(bits), reverse8(bits >> 12 & 0xFE)};
}

int ir_sony_decode(ir_t* event, ir_prot* p) {
  const uint32_t bits = gather_bits(*event);
  const uint32_t bit_count = event->count > 0 ? (event->count - 1U) / 2 : 0;
  fields found = {};
  switch (bit_count) {
    case 12:
      found = split_12(bits);
      break;
    case 15:
      found = split_15(bits);
      break;
    case 20:
      found = split_20(bits);
      break;
    default:
      // The number of durations, although the text speaks of bits.
      _log(2, "[W] %s(%d): Sony invalid bitcount %u\n", __func__, __LINE__,
           static_cast<unsigned>(event->count));
      return 0;
  }
  p->protocol = found.protocol;
  p->scancode = found.device << 16 | found.subdevice << 8 | found.function;
  _log(3,
       "[I] Device: 0x%02X     SubDevice: 0x%02X   Function: 0x%02X  ~Command: 0x%02X  "
       "ScanCode: 0x%08X\n",
       found.device, found.subdevice, found.function, ~found.function & 0xFF, p->scancode);
  report_scancode("SONY", p->scancode, bit_count);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_SONY12) | claims(RC_PROTO_SONY15) | claims(RC_PROTO_SONY20),
    .decode = ir_sony_decode,
    .carrier = 38000,
};

constinit protocol registration = {{}, "irprotocol", "SONY", &handler};

[[gnu::constructor(startup::kProtocolSony)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
