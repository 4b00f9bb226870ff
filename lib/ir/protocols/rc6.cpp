// SPDX-License-Identifier: GPL-3.0-or-later
// RC6 mode 6A as media-centre remotes send it.
//
// Modulation  bi-phase, 36 kHz
// Timings     half bit 444 µs; lead 2666/888; the trailer bit has double length
// Data        start bit, three mode bits 110, a double-length trailer bit, then 32 bits, most
//             significant bit first
//
//               oooooooo oooooooo tddddddd ffffffff
//
//               o  maker (0x800F)
//               t  toggle, changes with every key press
//               d  device
//               f  function
// Check       none: whoever wins the vote is reported with the bits found
// Scancode    the 32 bits
// Sample      maker 0x800F, toggle 0, device 4, function 0x0D: scancode 0x800F040D
#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"
#include "lib/liblog/logging.h"

namespace {

constexpr int kHalfBitUs = 444;
constexpr int kBitUs = 2 * kHalfBitUs;
constexpr int kModeIndex = 3;     // behind the lead and the start bit's first half
constexpr int kTrailerShift = 5;  // from the end of the mode bits to behind the trailer
constexpr uint32_t kModeBits = 3;
constexpr uint32_t kStartBit = 1;
constexpr uint32_t kDataBits = 32;

int rc6_decode(ir_t* event, ir_prot* p) {
  // The full count is passed from later starts, as bits past the end read zeroes; both runs end
  // by their number of bits well inside the event's buffer.
  static_assert(kModeIndex + 2 * kModeBits + kTrailerShift + 2 * kDataBits <
                sizeof(ir_t::buf) / sizeof(uint16_t));
  uint32_t mode = kStartBit;
  uint32_t mode_bits = 0;
  const int after_mode = manchester_decode(event->buf + kModeIndex, event->count, kModeBits, &mode,
                                           &mode_bits, kBitUs, kHalfBitUs);
  uint32_t value = 0;
  manchester_decode(event->buf + after_mode + kTrailerShift, event->count, kDataBits, &value,
                    &p->bits, kBitUs, kHalfBitUs);
  p->scancode = value;
  _log(3,
       "[I] MCE:   OEM1: 0x%02X   S: 0x%02X   D: 0x%02X   F: 0x%02X   scancode: 0x0%08X  T= %d\n",
       value >> 24, value >> 16, value >> 8 & 0x7F, value & 0xFF, value,
       static_cast<int>(value >> 15 & 1));
  report_scancode("MCE", p->scancode, p->bits);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_RC6_MCE),
    .decode = rc6_decode,
    .carrier = 36000,
    .min_timeout = 1554,
};

constinit protocol registration = {{}, "irprotocol", "RC6", &handler};

[[gnu::constructor(startup::kProtocolRc6)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
