// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/decode_families.h"

#include "lib/ir/DecodeIR/DecodeIR.h"
#include "lib/ir/arduino/arduino.h"
#include "lib/ir/ir.h"

void decode_families(ir_packet* packet) {
  DecodeIR(packet, packet->len);
  ir_t event = ir_event_of(*packet);
  ir_decode_packet(&event);
  arduino_decode(packet, packet->len);
}
