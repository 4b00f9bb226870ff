// SPDX-License-Identifier: GPL-3.0-or-later
// The signal analysis of one captured packet, as the program calls it.
#include "lib/ir/DecodeIR/wrapper.h"

#include <algorithm>
#include <array>

#include "lib/ir/DecodeIR/DecodeIR.h"
#include "lib/ir/ir_packet.h"
#include "lib/ir/result.h"

using namespace analysis;

void DecodeIR(struct ir_packet* packet, size_t count) {
  std::array<int, std::size(ir_packet{}.buf) + 1> bursts;
  count = std::min(count, std::size(packet->buf));
  std::copy_n(packet->buf, count, bursts.begin());
  bursts[count] = kFinalSpaceUs;

  std::array<unsigned int, 2> context{};
  std::array<char, kTextSize> protocol{};
  std::array<char, kTextSize> misc{};
  std::array<char, kTextSize> error{};
  std::array<int, 4> hex = {-1, -1, -1, -1};
  int device = -1;
  int subDevice = -1;
  int obc = -1;
  // One call: the first interpretation is the one shown.
  _DecodeIR(context.data(), bursts.data(), kCarrierHz, static_cast<int>((count + 1) / 2), 0,
            protocol.data(), &device, &subDevice, &obc, hex.data(), misc.data(), error.data());

  const bool found = protocol[0] != '\0';
  const char* const name = found ? protocol.data() : "UNKNOWN";
  const auto scancode = static_cast<unsigned>(hex[0]);
  result_room room;
  text_writer line = begin_result_line(room, "DECODEIR", name);
  if (found) {
    line.add(" scancode: 0x").add_hex(scancode, 4);
    line.add("  D:0x").add_hex(static_cast<unsigned>(device), 4);
    line.add("  S:0x").add_hex(static_cast<unsigned>(subDevice), 4);
  }
  line.add('\n');
  report_result({.family = "DECODEIR",
                 .name = name,
                 .scancode = found ? scancode : 0,
                 .bits = 0,
                 .line = line.text()});
}
