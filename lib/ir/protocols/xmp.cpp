// SPDX-License-Identifier: GPL-3.0-or-later
// XMP: two halves of eight nibbles, each nibble the length of one space.
//
// Modulation  pulse distance with 16 symbols, 38 kHz
// Timings     mark 210 µs, mark and space together 835 + 136 * nibble; the halves 13.8 ms apart
// Data        the halves, their nibbles in wire order
//
//               s k s 1 m m d d   s k t s f f f f     one letter per nibble, most significant first
//
//               s  subaddress
//               k  check
//               1  always 15
//               m  maker
//               d  device
//               t  toggle
//               f  function
// Check       the nibbles of each half add up to 0 modulo 16; the subaddress of both halves is
//             the same; the maker is 0x44. A frame that fails is reported all the same.
// Scancode    d d s s f f f f
// Sample      subaddress 0x1F, device 0x15, function 0x1200: scancode 0x151F1200
#include <array>

#include "lib/ir/protocols.h"
#include "lib/ir/startup.h"
#include "lib/liblog/logging.h"

namespace {

constexpr uint16_t kShortestGapUs = 11000;
constexpr int kZeroUs = 835;
constexpr int kStepUs = 136;
constexpr uint32_t kNibbleMask = 0xF;
constexpr uint32_t kNibbleBits = 4;
constexpr size_t kNibblesPerHalf = 8;
constexpr uint32_t kGoodSum = 15;
constexpr uint32_t kMaker = 0x44;

// Those that the frame lacks are 0.
using nibbles = std::array<uint32_t, 2 * kNibblesPerHalf>;

// A symbol outside its range wraps. Returns the number of nibbles, of which the first are kept.
uint32_t gather_nibbles(const ir_t& event, nibbles& n) {
  uint32_t count = 0;
  for (unsigned space = 1; space < event.count; space += 2) {
    if (event.buf[space] >= kShortestGapUs) continue;
    const int symbol = (event.buf[space - 1] + event.buf[space] - kZeroUs) / kStepUs;
    if (count < n.size()) n[count] = static_cast<uint32_t>(symbol) & kNibbleMask;
    ++count;
  }
  return count;
}

uint32_t half_sum(const nibbles& n, size_t first) {
  uint32_t sum = kGoodSum;
  for (size_t i = first; i < first + kNibblesPerHalf; ++i) sum += n[i];
  return sum & kNibbleMask;
}

int ir_xmp_decode(ir_t* event, ir_prot* p) {
  nibbles n = {};
  const uint32_t count = gather_nibbles(*event, n);
  const auto byte = [&n](size_t high, size_t low) { return n[high] << kNibbleBits | n[low]; };

  const uint32_t sum1 = half_sum(n, 0);
  const uint32_t sum2 = half_sum(n, kNibblesPerHalf);
  if (sum1 != kGoodSum || sum2 != kGoodSum) {
    _log(1, "[E] %s(%d): checksum errors sum1=0x%X sum2=0x%X\n", __func__, __LINE__, sum1, sum2);
  }
  p->scancode = byte(6, 7) << 24 | byte(0, 2) << 16 | byte(12, 13) << 8 | byte(14, 15);
  if (byte(0, 2) != byte(8, 11)) {
    _log(2, "[W] %s(%d): subaddress nibbles mismatch 0x%02X != 0x%02X\n", __func__, __LINE__,
         byte(0, 2), byte(8, 11));
  }
  if (byte(4, 5) != kMaker) {
    _log(2, "[W] %s(%d): Warning: OEM nibbles 0x%02X. Expected 0x44\n", __func__, __LINE__,
         byte(4, 5));
  }
  p->protocol = RC_PROTO_XMP;
  report_scancode("XMP", p->scancode, count * kNibbleBits);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_XMP),
    .decode = ir_xmp_decode,
    .carrier = 38000,
    .min_timeout = 20000,
};

constinit protocol registration = {{}, "irprotocol", "XMP", &handler};

[[gnu::constructor(startup::kProtocolXmp)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
