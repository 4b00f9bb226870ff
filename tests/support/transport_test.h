// SPDX-License-Identifier: GPL-3.0-or-later
// The device handle on a simulated bus.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "lib/liblog/logging.h"
#include "lib/transport/hid.h"
#include "lib/transport/libusb.h"
#include "lib/transport/transport.h"
#include "tests/support/capture.h"
#include "tests/support/fake_usb.h"

/// A device that closes itself.
struct closer {
  void operator()(transport::dev_t* dev) const { EXPECT_EQ(transport::dev_close(dev), 1); }
};
using handle = std::unique_ptr<transport::dev_t, closer>;

inline handle open_hid() {
  transport::libhid_priv wanted{0x1209, 0x0001, 2};
  return handle(transport::dev_open(transport::kHid, &wanted));
}

inline handle open_raw() {
  transport::libusb_priv wanted{0x1209, 0x0001, 1, 0, "Vantrel", 0};
  return handle(transport::dev_open(transport::kRawUsb, &wanted));
}

/// The data of a command.
using buffer = std::array<uint8_t, 64>;

/// 1, 2, 3, ...
inline buffer counting_up() {
  buffer data{};
  std::iota(data.begin(), data.end(), uint8_t{1});
  return data;
}

/// The library calls that `code` makes.
template <typename Code>
std::vector<std::string> calls_of(Code code) {
  const auto before = static_cast<std::ptrdiff_t>(fake_usb::calls().size());
  code();
  return {fake_usb::calls().begin() + before, fake_usb::calls().end()};
}

/// Starts with an empty bus and shows all messages; no device may stay open.
class TransportTest : public testing::Test {
 protected:
  void SetUp() override {
    fake_usb::reset();
    set_loglevel(3);
  }
  void TearDown() override {
    EXPECT_EQ(fake_usb::open_devices(), 0);
    set_loglevel(1);
    fake_usb::reset();
  }

  /// A new bus with what the script says.
  static void plug(const std::string& script) {
    fake_usb::reset();
    fake_usb::play(script);
  }
};
