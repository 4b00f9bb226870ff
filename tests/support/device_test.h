// SPDX-License-Identifier: GPL-3.0-or-later
// The fixture of tests that run on a simulated device.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "lib/liblog/logging.h"
#include "src/session.h"
#include "tests/support/capture.h"
#include "tests/support/fake_usb.h"

class DeviceTest : public testing::Test {
 protected:
  void SetUp() override { fake_usb::reset(); }
  void TearDown() override {
    end();
    set_loglevel(1);
    fake_usb::reset();
  }

  /// A new bus with what the script says, and a session on it.
  void begin(const std::string& script) {
    end();
    fake_usb::reset();
    fake_usb::play(script);
    zarvo_init(&session);
  }

  void end() {
    zarvo_deinit(&session);
    EXPECT_EQ(fake_usb::open_devices(), 0);
  }

  /// What was written since the session began, but for its "usb_if".
  static std::string commands() {
    const std::string all = fake_usb::commands();
    constexpr std::string_view kStart = "usb_if";
    return all.starts_with(kStart) ? all.substr(std::min(all.size(), kStart.size() + 1)) : all;
  }

  appdata_priv session{};
};
