// SPDX-License-Identifier: GPL-3.0-or-later
// RC5, its extended form with 20 bits, and the streaming-box form.
//
// Modulation  bi-phase, 36 kHz
// Timings     half bit 889 µs; the first start bit begins with its mark
// Data        most significant bit first; the decoder seeds the two start bits
//
//               1 1 t aaaaa cccccc           RC5
//               1 1 t aaaaa ccccccc          RC5-SZ
//               1 1 t aaaaa cccccc dddddd    RC5X
//
//               t  toggle, changes with every key press
//               a  address
//               c  command
//               d  data
// Check       the number of bits
// Scancode    RC5: address in bits 8-12, command in 0-5
//             RC5-SZ: the bits as gathered, the second start bit on top, without the toggle
//             RC5X: address in bits 16-20, command in 8-13, data in 0-5
// Sample      address 5, command 53: scancode 0x00000535
#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"

namespace {

constexpr int kHalfBitUs = 889;
constexpr int kBitUs = 2 * kHalfBitUs;
constexpr int kStartEntries = 2;
constexpr uint32_t kStartBits = 3;
constexpr uint32_t kMostBits = 18;

constexpr uint32_t kAddressMask = 0x1F;
constexpr uint32_t kCommandMask = 0x3F;

int rc5_decode(ir_t* event, ir_prot* p) {
  uint32_t value = kStartBits;
  manchester_decode(event->buf + kStartEntries, event->count - kStartEntries, kMostBits, &value,
                    &p->bits, kBitUs, kHalfBitUs);
  std::string_view name;
  switch (p->bits) {
    case 11:
    case 12:
      name = "RC5";
      p->protocol = RC_PROTO_RC5;
      p->scancode = (value >> 6 & kAddressMask) << 8 | (value & kCommandMask);
      break;
    case 13:
      name = "RC5-SZ";
      p->protocol = RC_PROTO_RC5_SZ;
      p->scancode = value & 0x2FFF;
      break;
    case 18:
      name = "RC5X";
      p->protocol = RC_PROTO_RC5X_20;
      p->scancode = (value >> 12 & kAddressMask) << 16 | (value >> 6 & kCommandMask) << 8 |
                    (value & kCommandMask);
      break;
    default:
      return static_cast<int>(p->scancode);
  }
  report_scancode(name, p->scancode, p->bits);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_RC5),
    .decode = rc5_decode,
    .carrier = 36000,
};

constinit protocol registration = {{}, "irprotocol", "RC5", &handler};

[[gnu::constructor(startup::kProtocolRc5)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
