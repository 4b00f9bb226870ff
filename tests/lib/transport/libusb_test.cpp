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
  expect("device mfr=", false, error + "manufacturer string mismatch\n");
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
  const std::pair<const char*, int> cases[] = {
      {"", -1},
      {"device mfr=Other", -1},
      {"device refuses=1", -1},
      {"device\nfail libusb_get_device_list -11", -11},
      {"device\nfail libusb_get_device_descriptor -9", -1}};
  for (const auto& [script, result] : cases) {
    SCOPED_TRACE(script);
    plug(script);
    transport::libusb_priv wanted{0x1209, 0x0001, 1, 0, "Vantrel", 0};
    transport::dev_t dev{};
    int opened = 0;
    std::vector<std::string> calls;
    capture([&] { calls = calls_of([&] { opened = transport::libusb_dev_open(&dev, &wanted); }); });
    EXPECT_EQ(opened, result);
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
  fake_usb::play("device");
  handle owner;
  const printed opening = capture([&] { owner = open_raw(); });
  EXPECT_EQ(opening.err,
            "[I] Matched VID:0x1209 PID: 0x0001\n[I] opening device\n[I] device opened\n");
  EXPECT_EQ(fake_usb::calls(),
            (std::vector<std::string>{
                "libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor",
                "libusb_open /dev/fake0", "libusb_claim_interface 1",
                "libusb_get_string_descriptor_ascii 256", "libusb_free_device_list 1"}));
  transport::dev_t* const dev = owner.get();
  ASSERT_NE(dev, nullptr);
  transport::libusb_msg control{0x21, 9, 0x0305, 2, {}, 8, 500};
  EXPECT_EQ(dev_send_cmd(dev, "control", reinterpret_cast<uint8_t*>(&control), 0), 8);
  EXPECT_EQ(fake_usb::calls().back(), "libusb_control_transfer 33 9 773 2 8 500");
  control.wLength = 256;
  EXPECT_EQ(dev_send_cmd(dev, nullptr, reinterpret_cast<uint8_t*>(&control), 0), 256);
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
  transport::dev_t closed{};
  for (transport::dev_t* const none : {&closed, static_cast<transport::dev_t*>(nullptr)}) {
    const printed refusal = capture([&] { EXPECT_EQ(transport::libusb_dev_close(none), -1); });
    EXPECT_EQ(refusal.err, "[E] libusb_dev_close(#): device is null\n");
  }
  EXPECT_EQ(transport::libusb_send_packet(nullptr, 0, nullptr, 0), 0);
  EXPECT_EQ(transport::libusb_recv_packet(nullptr, 0, nullptr, 0), 0);
  EXPECT_EQ(transport::libusb_flush(nullptr), 0);
}

}  // namespace
