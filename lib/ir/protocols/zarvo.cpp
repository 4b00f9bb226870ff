// SPDX-License-Identifier: GPL-3.0-or-later
// The device's own protocol.
//
// Modulation  pulse distance, then bi-phase, 36 kHz
// Timings     lead 4900 µs; mark 840, space 840 = 1, 1680 = 0; a second lead mark of 4480; then
//             half bits of 840
// Data        7 bits, one told by the space that follows them, 11 bi-phase bits; most significant
//             bit first
//
//               iiiiiii 0 p ppp cccccccc
//
//               i  the remote's id; shown as a byte, the 0 with it
//               p  device profile; its first bit is 1 when the space before the second lead is
//                  longer than 4900
//               c  command
// Check       none
// Scancode    the 20 bits
// Sample      id 0x54, profile 1 (Plex), command 0x35: scancode 0x00054135
#include <array>

#include "lib/ir/protocols.h"
#include "lib/ir/result.h"
#include "lib/ir/startup.h"

namespace {

constexpr int kHalfBitUs = 840;
constexpr int kBitUs = 2 * kHalfBitUs;
constexpr uint16_t kShortestZeroUs = 1260;
constexpr unsigned kFirstIdSpace = 3;
constexpr unsigned kLastIdSpace = 15;
constexpr unsigned kSecondLeadSpace = 17;
constexpr uint16_t kLongestSpaceUs = 4900;
constexpr uint32_t kBiphaseBits = 11;

constexpr std::array<std::string_view, 8> kProfiles = {"Kodi",    "Plex", "FireTV", "NVIDIA",
                                                       "PS3/PS4", "WMCE", "XBOX",   "MadVR"};

// Profiles that were never given a name show an empty one.
std::string_view profile_name(uint32_t profile) {
  return profile < kProfiles.size() ? kProfiles[profile] : "";
}

uint32_t gather_id(const ir_t& event) {
  uint32_t bits = 0;
  for (unsigned i = kFirstIdSpace; i <= kLastIdSpace; i += 2) {
    bits = bits << 1 | static_cast<uint32_t>(event.buf[i] < kShortestZeroUs);
  }
  return bits << 2;
}

void report(uint32_t scancode, uint32_t bits) {
  const uint32_t profile = scancode >> 8 & 0xF;
  std::array<char, 32> name_room;
  text_writer name(name_room);
  name.add("ZARVO-").add(profile_name(profile));
  result_room room;
  text_writer line = begin_result_line(room, kOwnFamily, name.text());
  line.add(" scancode: 0x")
      .add_hex(scancode, 8)
      .add(" :: {ID: 0x")
      .add_hex(scancode >> 12 & 0xFF, 2);
  line.add("  Device: 0x").add_hex(profile, 2).add("  Command: 0x").add_hex(scancode & 0xFF, 2);
  line.add("}\n");
  report_result({kOwnFamily, name.text(), scancode, bits, line.text()});
}

int zarvo_decode(ir_t* event, ir_prot* p) {
  uint32_t value = gather_id(*event);
  unsigned start = kSecondLeadSpace + 2;
  if (event->buf[kSecondLeadSpace] > kLongestSpaceUs) {
    value += 1;
    start = kSecondLeadSpace + 1;
  }
  // The full count is passed from a later start: the number of bits ends the run well inside the
  // event's buffer.
  manchester_decode(event->buf + start, event->count, kBiphaseBits, &value, &p->bits, kBitUs,
                    kHalfBitUs);
  p->protocol = RC_PROTO_ZARVO;
  p->scancode = value;
  report(p->scancode, p->bits);
  return static_cast<int>(p->scancode);
}

constinit IR_PROTOCOL_HANDLER handler = {
    .protocols = claims(RC_PROTO_ZARVO),
    .decode = zarvo_decode,
    .carrier = 36000,
    .min_timeout = 25000,
};

constinit protocol registration = {{}, "irprotocol", "ZARVO", &handler};

[[gnu::constructor(startup::kProtocolZarvo)]] void REGFUNC__irprotocol() {
  _register_protocol_irprotocol(&registration);
}

}  // namespace
