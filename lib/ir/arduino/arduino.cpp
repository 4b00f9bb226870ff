// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/arduino.h"

#include <algorithm>

#include "lib/ir/arduino/matchers.h"
#include "lib/ir/result.h"
#include "lib/liblog/logging.h"

namespace {

using arduino::frame;

bool match_any(const frame& f, arduino_result& result) {
  return std::ranges::any_of(arduino::kMatchers, [&](auto match) { return match(f, result); });
}

bool match_first_copy(const frame& f, arduino_result& result) {
  const std::optional<frame> copy = arduino::first_copy(f);
  return copy && match_any(*copy, result);
}

}  // namespace

bool IRrecv::decode(std::span<const uint16_t> durations, arduino_result& result) {
  result = {};
  if (durations.size() > kBufferLength) {
    result.overflow = uint32_t(durations.size() - kBufferLength);
    return false;
  }
  if (durations.empty()) return false;
  const frame whole = arduino::frame_of(durations);
  const frame f = arduino::without_stray_marks(whole);
  if (match_any(f, result) || match_first_copy(f, result)) return true;
  return arduino::match_hash(whole, result);
}

void arduino_decode(struct ir_packet* packet, size_t len) {
  const size_t length = std::min(len, std::size(packet->buf));
  arduino_result result;
  if (!IRrecv::decode({packet->buf, length}, result)) {
    if (result.overflow > 0) {
      _log(1, "[E] %s(%d): IR code too long. length: %d, overflow: %d\n", __func__, __LINE__,
           int(length), int(result.overflow));
    }
    return;
  }
  result_room room;
  text_writer line = begin_result_line(room, "ARDUINO", result.type);
  line.add(" scancode: 0x").add_hex(result.value, 8).add(" {").add_decimal(result.bits).add("}\n");
  report_result({"ARDUINO", result.type, result.value, result.bits, line.text()});
}
