// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/transport/libusb.h"

#include <gtest/gtest.h>

#include "lib/liblog/logging.h"
#include "tests/support/capture.h"
#include "tests/support/fake_usb.h"

namespace {

transport::dev_t* open_raw() {
  transport::libusb_priv wanted{0x1209, 0x0001, 1, 0, "Vantrel", 0};
  return transport::dev_open(transport::kRawUsb, &wanted);
}

class RawUsb : public testing::Test {
 protected:
  void SetUp() override {
    fake_usb::reset();
    set_loglevel(2);
  }
  void TearDown() override {
    set_loglevel(1);
    fake_usb::reset();
  }
};

TEST_F(RawUsb, OpensTheDeviceOfTheManufacturer) {
  const struct {
    const char* script;
    bool opens;
    const char* err;
  } cases[] = {
      {"", false, ""},
      {"device", true, ""},
      {"device pid=2", false, ""},
      {"device mfr=Other", false, "[E] libusb_dev_open(#): manufacturer string mismatch\n"},
      {"device mfr=Vantrel2\ndevice", true,
       "[E] libusb_dev_open(#): manufacturer string mismatch\n"},
      {"device refuses=1\ndevice", true, "[W] libusb_dev_open(#): can't open usb device\n"},
      {"device\nfail libusb_get_string_descriptor_ascii -9", false,
       "[E] libusb_dev_open(#): Cannot query device, is the GUI open?\n"},
      {"device\nfail libusb_init -99", false,
       "[E] libusb_dev_open(#): can not initialize libusb\n"},
      {"device\nfail libusb_get_device_list -11", false,
       "[E] libusb_dev_open(#): libusb cnt < 0\n"},
      {"device\nfail libusb_get_device_descriptor -1", false,
       "[E] libusb_dev_open(#): failed to get device descriptor"},
      {"device\nfail libusb_claim_interface -6", true, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    fake_usb::reset();
    fake_usb::play(c.script);
    transport::dev_t* dev = nullptr;
    const printed text = capture([&] { dev = open_raw(); });
    EXPECT_EQ(dev != nullptr, c.opens);
    EXPECT_EQ(text.err, c.err);
    if (dev != nullptr) {
      EXPECT_EQ(transport::dev_close(dev), 1);
    }
  }
}

TEST_F(RawUsb, PassesTransfersThrough) {
  fake_usb::play("device");
  transport::dev_t* dev = open_raw();
  ASSERT_NE(dev, nullptr);
  transport::libusb_msg control{0x21, 9, 0x0305, 2, {}, 8, 500};
  EXPECT_EQ(dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0), 8);
  EXPECT_EQ(fake_usb::calls().back(), "libusb_control_transfer 33 9 773 2 8 500");
  control.wLength = 1000;  // more than there is room for
  EXPECT_EQ(dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0), 256);

  int transferred = 0;
  transport::libusb_interrupt interrupt{0x81, control.buf, 64, &transferred, 100};
  EXPECT_EQ(dev_send_cmd(dev, "libusb_interrupt", reinterpret_cast<uint8_t*>(&interrupt), 0), 0);
  EXPECT_EQ(fake_usb::calls().back(), "libusb_interrupt_transfer 129 64 100");
  EXPECT_EQ(transferred, 64);
  fake_usb::play("fail libusb_interrupt_transfer -7");
  EXPECT_EQ(dev_send_cmd(dev, "libusb_interrupt", reinterpret_cast<uint8_t*>(&interrupt), 0), -7);

  const printed text = capture([&] { EXPECT_EQ(dev_send_cmd(dev, "control", nullptr, 0), -1); });
  EXPECT_EQ(text.err, "[E] libusb_dev_send_cmd(#): data pointer invlaid\n");

  const size_t before = fake_usb::calls().size();
  EXPECT_EQ(transport::dev_close(dev), 1);
  const std::vector<std::string> closing(
      fake_usb::calls().begin() + static_cast<std::ptrdiff_t>(before), fake_usb::calls().end());
  EXPECT_EQ(closing, (std::vector<std::string>{"libusb_reset_device", "libusb_release_interface 1",
                                               "libusb_close", "libusb_exit"}));
  EXPECT_EQ(transport::libusb_dev_send_cmd(nullptr, "control", nullptr, 0), -19);
  capture([&] { EXPECT_EQ(transport::libusb_dev_close(nullptr), -1); });
}

}  // namespace
