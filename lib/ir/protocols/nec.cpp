// SPDX-License-Identifier: GPL-3.0-or-later
// NEC and its relatives: the most common remote-control code.
//
// Modulation  pulse distance, 38 kHz
// Timings     lead 9024/4512 µs; mark 564, space 564 = 0, 1692 = 1; stop mark 564
//             a held key repeats 9024/2256/564
// Data        32 bits, the least significant bit of each byte first
//
//               aaaaaaaa ssssssss cccccccc tttttttt
//
//               a  address
//               s  its complement (NEC), the rest of a wide address (NECX), 0x87 (Apple)
//               c  command
//               t  its complement (NEC, NEC32), else free
// Check       none that refuses a frame: the complements only choose the name. The command's is
//             looked at first, so a plain frame with both complements right is named "NEC32".
// Scancode    t c s a, each byte in natural bit order
// Sample      address 0x00 0xFF, command 0x10 0xEF: "NEC32", scancode 0xEF10FF00
#include "lib/ir/protocols.h"
#include "lib/ir/result.h"
#include "lib/ir/startup.h"
#include "lib/liblog/logging.h"

namespace {

constexpr uint8_t kRepeatEntries = 3;
constexpr uint8_t kFrameEntries = 67;
constexpr unsigned kFirstBitSpace = 3;
constexpr unsigned kStopMark = kFrameEntries - 1;
constexpr uint16_t kLongestZeroUs = 1128;
constexpr uint32_t kBits = 32;
constexpr uint8_t kAppleByte = 0x87;
constexpr uint8_t kComplement = 0xFF;

struct variant {
  rc_proto protocol;
  std::string_view name;
};

uint32_t gather_bits(const ir_t& event) {
  uint32_t bits = 0;
  for (unsigned i = kFirstBitSpace; i < kStopMark; i += 2) {
    bits = bits << 1 | static_cast<uint32_t>(event.buf[i] > kLongestZeroUs);
  }
  return bits;
}

variant classify(const uint8_t (&bytes)[4]) {
  if (bytes[1] == kAppleByte) return {RC_PROTO_NEC32, "NEC32 {Apple}"};
  if ((bytes[2] ^ bytes[3]) == kComplement) return {RC_PROTO_NEC32, "NEC32"};
  if ((bytes[0] ^ bytes[1]) == kComplement) return {RC_PROTO_NEC, "NEC"};
  return {RC_PROTO_NECX, "NECX"};
}

int ir_nec_decode(ir_t* event, ir_prot* p) {
  if (event->count == kRepeatEntries) {
    report_result({kOwnFamily, "NEC Repeat", 0, 0, "NEC Repeat\n"});
    return 0;
  }
  if (event->count != kFrameEntries) {
    _log(1, "[E] %s(%d): length mismatch expected %d != %d\n", __func__, __LINE__, kFrameEntries,
         event->count);
    return 0;
  }
  const uint32_t bits = gather_bits(*event);
  const uint8_t bytes[4] = {reverse8(bits >> 24), reverse8(bits >> 16), reverse8(bits >> 8),
                            reverse8(bits)};
  p->scancode = uint32_t{bytes[3]} << 24 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[1]} << 8 |
                uint32_t{bytes[0]};
  const variant found = classify(bytes);
  p->protocol = found.protocol;
  report_scancode(found.name, p->scancode, kBits);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_NEC) | claims(RC_PROTO_NECX) | claims(RC_PROTO_NEC32),
    .decode = ir_nec_decode,
    .carrier = 38000,
};

constinit protocol registration = {{}, "irprotocol", "NEC", &handler};

[[gnu::constructor(startup::kProtocolNec)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
