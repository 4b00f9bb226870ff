// SPDX-License-Identifier: GPL-3.0-or-later
// TDC, as set-top boxes of one operator use it.
//
// Modulation  bi-phase, 36 kHz
// Timings     half bit 315 µs; the first mark is the second half of a start bit 0
// Data        17 bits, most significant bit first
//
//               ccccc sssss fffffff
//
//               c  command
//               s  subdevice
//               f  function
// Check       the number of bits
// Scancode    the value shifted up by one
// Sample      value 0x0A35B: scancode 0x000146B6
//
// The decoder is listed as "ZARVO" and its results carry that protocol: the device's own remotes
// are sold with these boxes, and what reads the results knows one name for both.
#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"
#include "lib/liblog/logging.h"

namespace {

constexpr int kHalfBitUs = 315;
constexpr int kBitUs = 2 * kHalfBitUs;
constexpr uint32_t kBits = 17;

int tdc_decode(ir_t* event, ir_prot* p) {
  uint32_t value = 0;
  uint32_t bits = 0;
  manchester_decode(event->buf, event->count, kBits, &value, &bits, kBitUs, kHalfBitUs);
  if (bits != kBits) {
    _log(1, "[E] %s(%d): invalid number of bits expected: %d != %d\n", __func__, __LINE__,
         static_cast<int>(kBits), static_cast<int>(bits));
    p->scancode = 0;
    return 0;
  }
  p->protocol = RC_PROTO_ZARVO;
  p->scancode = value << 1;
  _log(3, "[I] F: 0x%02X  SDevice: 0x%02X  Command: 0x%02X\n", p->scancode & 0x7F,
       p->scancode >> 8 & 0x1F, p->scancode >> 13 & 0x1F);
  report_scancode("TDC", p->scancode, bits);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_TDC),
    .decode = tdc_decode,
    .carrier = 36000,
    .min_timeout = 89000,
};

constinit protocol registration = {{}, "irprotocol", "ZARVO", &handler};

[[gnu::constructor(startup::kProtocolTdc)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
