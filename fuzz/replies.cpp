// SPDX-License-Identifier: GPL-3.0-or-later
// Replies of any bytes to commands of any length: a failed exchange leaves the data alone.
#include "fuzz/input.h"
#include "lib/liblog/logging.h"
#include "src/common.h"
#include "tests/support/fake_usb.h"
#include "tests/support/fake_world.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  set_loglevel(0);
  fake_usb::reset();
  fake_usb::play("device\non rbget noreply");
  appdata_priv session{};
  zarvo_init(&session);
  fake_usb::the_world().devices.front()->input.emplace_back(data + 1, data + size);

  const uint32_t len = data[0] % 140;
  const auto buffer = std::make_unique<uint8_t[]>(len);
  if (dev_send_cmd(session.dev, "rbget", buffer.get(), len) < 0) {
    for (uint32_t i = 0; i < len; i++) require(buffer[i] == 0);
  } else {
    require(len == 32 || len == 64);
  }
  zarvo_deinit(&session);
  return 0;
}
