// SPDX-License-Identifier: GPL-3.0-or-later
// Reports of any bytes: a packet never holds more than it says, and polling never fails in between.
#include "fuzz/input.h"
#include "lib/liblog/logging.h"
#include "src/common.h"
#include "tests/support/fake_usb.h"
#include "tests/support/fake_world.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kReportSize = 65;
  set_loglevel(0);
  fake_usb::reset();
  fake_usb::play("device");
  appdata_priv session{};
  zarvo_init(&session);
  auto& input = fake_usb::the_world().devices.front()->input;
  for (size_t at = 0; at < size; at += kReportSize) {
    input.emplace_back(data + at, data + std::min(size, at + kReportSize));
  }
  ir_packet packet{};
  while (!input.empty()) {
    const bool is_timing = input.front().size() == kReportSize && input.front()[0] == 7;
    const int result = zv_ir_packet_poll(session.dev, &packet);
    require((result >= 0) == is_timing);
    require(result != 1 || packet.len > 0);
  }
  zarvo_deinit(&session);
  return 0;
}
