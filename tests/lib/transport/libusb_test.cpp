// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "tests/support/transport_test.h"

namespace {

class RawUsb : public TransportTest {};

TEST_F(RawUsb, OpensTheDeviceOfTheManufacturer) {
  set_loglevel(2);
  const auto expect = [](const char* script, bool opens, const std::string& err = {}) {
    SCOPED_TRACE(script);
    plug(script);
    handle dev;
    const printed text = capture([&] { dev = open_raw(); });
    EXPECT_EQ(dev != nullptr, opens);
    EXPECT_EQ(text.err, err);
  };
  const std::string error = "[E] libusb_dev_open(#): ";
  expect("", false);
  expect("device", true);
  expect("device pid=2", false);
  expect("device mfr=Other", false, error + "manufacturer string mismatch\n");
  expect("device mfr=Vantrel2\ndevice", true, error + "manufacturer string mismatch\n");
  expect("device refuses=1\ndevice", true, "[W] libusb_dev_open(#): can't open usb device\n");
  expect("device\nfail libusb_get_string_descriptor_ascii -9", false,
         error + "Cannot query device, is the GUI open?\n");
  expect("device\nfail libusb_init -99", false, error + "can not initialize libusb\n");
  expect("device\nfail libusb_get_device_list -11", false, error + "libusb cnt < 0\n");
  expect("device\nfail libusb_get_device_descriptor -1", false,
         error + "failed to get device descriptor");
  expect("device\nfail libusb_claim_interface -6", true);
}

TEST_F(RawUsb, LeavesTheLibraryWhenAnOpenFails) {
  for (const char* script :
       {"", "device mfr=Other", "device refuses=1", "device\nfail libusb_get_device_list -11",
        "device\nfail libusb_get_device_descriptor -1"}) {
    SCOPED_TRACE(script);
    plug(script);
    std::vector<std::string> calls;
    capture([&] { calls = calls_of([] { EXPECT_EQ(open_raw(), nullptr); }); });
    EXPECT_EQ(calls.back(), "libusb_exit");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "libusb_close"),
              std::count(calls.begin(), calls.end(), "libusb_claim_interface 1"));
  }
}

TEST_F(RawUsb, AnotherOpenLeavesTheFirstDeviceAlone) {
  set_loglevel(1);
  const auto transfer = [](transport::dev_t* dev) {
    transport::libusb_msg control{0x21, 9, 0, 0, {}, 8, 500};
    return dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0);
  };
  plug("device");
  handle first = open_raw();
  transport::libusb_priv other{0x1209, 0x0001, 1, 0, "Other", 0};
  capture([&] { EXPECT_EQ(transport::dev_open(transport::kRawUsb, &other), nullptr); });
  EXPECT_EQ(transfer(first.get()), 8);

  handle second = open_raw();
  first.reset();
  EXPECT_EQ(transfer(second.get()), 8);
  second.reset();
  EXPECT_EQ(transport::libusb_dev_send_cmd(nullptr, "control", nullptr, 0), -19);
}

TEST_F(RawUsb, PassesTransfersThrough) {
  set_loglevel(2);
  fake_usb::play("device");
  handle owner = open_raw();
  transport::dev_t* const dev = owner.get();
  ASSERT_NE(dev, nullptr);
  transport::libusb_msg control{0x21, 9, 0x0305, 2, {}, 8, 500};
  EXPECT_EQ(dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0), 8);
  EXPECT_EQ(fake_usb::calls().back(), "libusb_control_transfer 33 9 773 2 8 500");
  control.wLength = 256;
  EXPECT_EQ(dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0), 256);
  control.wLength = 257;  // more than there is room for
  const auto refused = calls_of([&] {
    EXPECT_EQ(dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0), -2);
  });
  EXPECT_EQ(refused, std::vector<std::string>{});

  int transferred = 0;
  transport::libusb_interrupt interrupt{0x81, control.buf, 64, &transferred, 100};
  EXPECT_EQ(dev_send_cmd(dev, "libusb_interrupt", reinterpret_cast<uint8_t*>(&interrupt), 0), 0);
  EXPECT_EQ(fake_usb::calls().back(), "libusb_interrupt_transfer 129 64 100");
  EXPECT_EQ(transferred, 64);
  fake_usb::play("fail libusb_interrupt_transfer -7");
  EXPECT_EQ(dev_send_cmd(dev, "libusb_interrupt", reinterpret_cast<uint8_t*>(&interrupt), 0), -7);

  const printed text = capture([&] { EXPECT_EQ(dev_send_cmd(dev, "control", nullptr, 0), -1); });
  EXPECT_EQ(text.err, "[E] libusb_dev_send_cmd(#): data pointer invlaid\n");

  EXPECT_EQ(calls_of([&] { owner.reset(); }),
            (std::vector<std::string>{"libusb_reset_device", "libusb_release_interface 1",
                                      "libusb_close", "libusb_exit"}));
  EXPECT_EQ(transport::libusb_dev_send_cmd(nullptr, "control", nullptr, 0), -19);
  capture([&] { EXPECT_EQ(transport::libusb_dev_close(nullptr), -1); });
}

}  // namespace
