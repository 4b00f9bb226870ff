// SPDX-License-Identifier: GPL-3.0-or-later
// The command exchange over the HID backend: bytes, time limits, messages, and every way in which
// a device can disappoint.
#include "tests/support/transport_test.h"

#include <algorithm>

namespace {

using transport::dev_t;

class Transport : public TransportTest {};

TEST_F(Transport, OpensTheFirstMatchThatLetsItself) {
  // What is plugged in, and which of it opens.
  const std::pair<const char*, std::string> cases[] = {
      {"", ""},
      {"device", "/dev/fake0"},
      {"device iface=0\ndevice iface=1\ndevice iface=2", "/dev/fake2"},
      {"device iface=1", ""},
      {"device vid=1234", ""},
      {"device pid=0002", ""},
      {"device refuses=1\ndevice", "/dev/fake1"},
      {"device refuses=1\ndevice refuses=1", ""},
  };
  for (const auto& [script, path] : cases) {
    SCOPED_TRACE(script);
    plug(script);
    handle dev;
    const printed text = capture([&dev] { dev = open_hid(); });
    EXPECT_EQ(dev != nullptr, !path.empty());
    EXPECT_EQ(text.err, *script == '\0' ? "[I] error, device list couldn't enumerate\n" : "");
    EXPECT_EQ(text.out, "");
    if (dev != nullptr) {
      const auto& calls = fake_usb::calls();
      EXPECT_EQ(std::count(calls.begin(), calls.end(), "open " + path), 1);
    }
  }
}

TEST_F(Transport, DrainsEveryReplyIdAtOpenFlushAndClose) {
  fake_usb::play("device\nqueued 01 aa\nqueued 05\nqueued 07 cc");
  handle dev = open_hid();
  const std::vector<std::string> quiet = {"read 64 id 1 100 -> 0", "read 64 id 3 100 -> 0",
                                          "read 64 id 5 100 -> 0"};
  std::vector<std::string> expected = {"init",
                                       "enumerate 0 0",
                                       "open /dev/fake0",
                                       "free",
                                       "name 255",
                                       "name 255",
                                       "name 255",
                                       "read 64 id 1 100 -> 2",  // whatever id comes
                                       "read 64 id 1 100 -> 1",
                                       "read 64 id 1 100 -> 2"};
  expected.insert(expected.end(), quiet.begin(), quiet.end());
  EXPECT_EQ(fake_usb::calls(), expected);

  EXPECT_EQ(calls_of([&] { EXPECT_EQ(dev_flush(dev.get()), 0); }), quiet);
  expected = quiet;
  expected.insert(expected.end(), {"close", "exit"});
  EXPECT_EQ(calls_of([&] {
              EXPECT_EQ(transport::hid_dev_close(dev.get()), 0);
              EXPECT_EQ(transport::hid_dev_close(dev.get()), 0) << "closed already";
              dev.reset();
            }),
            expected);
}

TEST_F(Transport, EndsTheDrainOfADeviceThatIsNeverQuiet) {
  fake_usb::play("device\nflood 50");
  const handle dev = open_hid();
  ASSERT_NE(dev, nullptr);
  EXPECT_EQ(fake_usb::calls().size(), 7 + 3U * 256);  // the kernel may have queued 63
}

TEST_F(Transport, SendsWholeReportsFilledWithFF) {
  fake_usb::play("device");
  const handle dev = open_hid();
  const std::string name = "67 65 74 76 65 72 73 69 6f 6e 00";  // getversion
  const std::string short_run = " 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14";
  const std::string long_run =
      " 15 16 17 18 19 1a 1b 1c 1d 1e 1f 20 21 22 23 24"
      " 25 26 27 28 29 2a 2b 2c 2d 2e 2f 30 31 32 33 34";
  buffer data = counting_up();
  EXPECT_EQ(dev_send_cmd(dev.get(), "getversion", data.data(), 32), 0);
  data = counting_up();
  EXPECT_EQ(dev_send_cmd(dev.get(), "getversion", data.data(), 64), 0);
  data = counting_up();
  EXPECT_EQ(transport::dev_send_data(dev.get(), data.data(), 2), 0);
  const std::vector<std::string> sent = fake_usb::writes();
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_EQ(sent[0], "02 " + name + " 00" + short_run);
  EXPECT_EQ(sent[1], "06 " + name + " 00" + short_run + long_run);
  EXPECT_EQ(sent[2], "04 01 02" + repeated(" ff", 62));
}

// A reply may take ten seconds.
TEST_F(Transport, GivesTheResultAndZerosForItsLastTwelveBytes) {
  fake_usb::play("device\non rbget 1 late 9999");
  const handle dev = open_hid();
  for (const uint32_t len : {32U, 64U}) {
    buffer data = counting_up();
    ASSERT_EQ(dev_send_cmd(dev.get(), "rbget", data.data(), len), 0);
    EXPECT_EQ(fake_usb::calls().back(),
              len == 32 ? "read 33 id 1 10000 -> 33" : "read 65 id 5 10000 -> 65");
    buffer expected = counting_up();
    for (size_t i = 0; i < len; i++) {
      expected[i] = i < len - 12 ? static_cast<uint8_t>(13 + i) : uint8_t{0};
    }
    EXPECT_EQ(data, expected);
  }
}

TEST_F(Transport, RefusesCommandsThatFitNoPacket) {
  fake_usb::play("device");
  const handle dev = open_hid();
  const auto refuses = [&](const char* cmd, uint32_t len, const char* err) {
    std::array<uint8_t, 131> data{};
    const printed text =
        capture([&] { EXPECT_EQ(dev_send_cmd(dev.get(), cmd, data.data(), len), -1); });
    EXPECT_EQ(text.err, err);
  };
  refuses("rbget", 131, "[E] _dev_send_cmd(#): size 131 is greater than max command length: 130\n");
  refuses("rbget", 130, "[E] hid_send_packet(#): invalid cmd length\n");
  refuses("rbget", 4, "[E] hid_send_packet(#): invalid cmd length\n");
  refuses(nullptr, 32, "[E] _dev_send_cmd(#): invalid command\n");
  refuses("elevenchars", 32, "[E] _dev_send_cmd(#): command string to long: 11 > 11\n");
  EXPECT_TRUE(fake_usb::writes().empty());
}

TEST_F(Transport, RefusesPacketsOfNoKind) {
  fake_usb::play("device");
  const handle dev = open_hid();
  uint8_t byte = 0;
  const auto refuses = [&](auto transfer, uint8_t type, uint32_t len, const std::string& err) {
    const printed text = capture([&] { EXPECT_EQ(transfer(dev.get(), type, &byte, len), -1); });
    EXPECT_EQ(text.err, err);
  };
  const std::string got = "[E] hid_recv_packet(#): ";
  refuses(transport::hid_send_packet, transport::PKTYPE_RESET, 32, "");
  refuses(transport::hid_recv_packet, transport::PKTYPE_CMD, 4, got + "invalid cmd length: 4\n");
  refuses(transport::hid_recv_packet, transport::PKTYPE_DATA, 0,
          got + "length mismatch, report_len :1 request: 0\n");
  refuses(transport::hid_recv_packet, transport::PKTYPE_RESET, 1,
          got + "hid_recv_packet: invalid packet type\n" + got + "hidapi: Success\n");
  EXPECT_DEATH(transport::hid_dev_open(nullptr, nullptr), "invalid device handle");

  transport::libhid_priv other{0x1209, 0x0002, 2};
  dev_t none{};
  EXPECT_EQ(transport::hid_dev_open(&none, &other), -1);
  constexpr uint8_t kNoBackend = 1;
  const handle idle(transport::dev_open(kNoBackend, nullptr));
  ASSERT_NE(idle, nullptr);
  EXPECT_EQ(idle->send_cmd, nullptr);
}

// A backend that takes whatever length a command has.
int taken = 0;
std::string seen;

TEST_F(Transport, GivesZerosForWhatAReplyDoesNotHold) {
  fake_usb::play("device");
  const handle dev = open_hid();
  dev->send_pkv = [](dev_t*, uint8_t, uint8_t* buf, uint32_t len) {
    seen.assign(buf, buf + len);
    return 0;
  };
  dev->recv_pkv = [](dev_t*, uint8_t, uint8_t* buf, uint32_t) {
    std::copy(seen.begin(), seen.end(), buf);
    return taken;
  };
  std::string data(130, 'x');
  const auto send = [&] {
    return dev_send_cmd(dev.get(), "rbget", reinterpret_cast<uint8_t*>(data.data()), 130);
  };
  taken = 0;  // no type, though no failure either
  const printed text = capture([&] { EXPECT_EQ(send(), -1); });
  EXPECT_EQ(text.err, "[E] _dev_send_cmd(#): Wrong packet type: 0x00 \n");
  taken = transport::PKTYPE_CMD;
  EXPECT_EQ(send(), 0);
  EXPECT_EQ(seen.size(), 128U);
  EXPECT_EQ(data, std::string(52, 'x') + std::string(78, '\0'));
}

TEST_F(Transport, KeepsItsNumbers) {
  using namespace transport;
  const int numbers[] = {PKTYPE_NONE,    PKTYPE_RESET, PKTYPE_CMD, PKTYPE_DATA,
                         PKTYPE_INVALID, kRawUsb,      kHid};
  EXPECT_EQ(testing::PrintToString(numbers), "{ 0, 1, 2, 3, 255, 0, 2 }");
}

TEST_F(Transport, ReportsEveryFaultOfAnExchangeAndKeepsTheData) {
  const std::string sent = "[E] hid_send_packet(#): ";
  const std::string got = "[E] hid_recv_packet(#): ";
  const std::string gone = "hidapi: No such device\n";
  const std::string recv =
      "[E] _recv_packet(#): _recv_packet: recv packet error = -1\n"
      "[E] _dev_send_cmd(#): recv timeout\n";
  const std::string length = got + "Wrong response length = ";
  const std::string success = "\n" + got + "hidapi: Success\n" + recv;
  const std::string wrong_id = got + "hid_recv_packet: wrong report id" + success;
  const std::string timing = "report 07 00 00 28 00" + repeated(" 00", 60);
  const auto expect = [](const std::string& fault, uint32_t len, const std::string& err) {
    SCOPED_TRACE(fault + " " + std::to_string(len));
    plug("device\non rbget " + fault);
    const handle dev = open_hid();
    buffer data = counting_up();
    const printed text =
        capture([&] { EXPECT_EQ(dev_send_cmd(dev.get(), "rbget", data.data(), len), -1); });
    EXPECT_EQ(text.err, err);
    EXPECT_EQ(text.out, "");
    EXPECT_EQ(data, counting_up());
    // Nothing is drained after a failure, and nothing tried again.
    EXPECT_EQ(fake_usb::writes().size(), 1U);
    EXPECT_FALSE(fake_usb::calls().back().starts_with("read 64"));
  };
  expect("noreply", 32, length + "0" + success);
  expect("noreply", 64, length + "0" + success);
  expect("late 10001", 32, length + "0" + success);
  expect("short", 32, length + "16" + success);
  expect("short", 64, length + "32" + success);
  expect("id 05", 32, wrong_id);
  expect("id 07", 64, wrong_id);
  expect(timing, 32, wrong_id);
  expect("name rbset", 32, "[E] _dev_send_cmd(#): Wrong response: 'rbset'\n");
  expect("status 3", 64, "[E] _dev_send_cmd(#): Command error: 3\n");
  expect("writeerror", 32, sent + gone);
  expect("unplug", 32, got + "---timeout---\n" + got + gone + length + "-1\n" + got + gone + recv);
}

TEST_F(Transport, NeedsADevice) {
  uint8_t byte = 0;
  const printed text = capture([&] {
    EXPECT_EQ(transport::dev_close(nullptr), -6);
    EXPECT_EQ(transport::dev_flush(nullptr), -6);
    EXPECT_EQ(transport::dev_read(nullptr, &byte, 1), -6);
    EXPECT_EQ(transport::dev_write(nullptr, &byte, 1), -6);
    EXPECT_EQ(transport::dev_send_cmd(nullptr, "rbget", &byte, 1), -6);
  });
  EXPECT_EQ(text.err,
            "[E] dev_close(#): no device found\n[E] dev_flush(#): no device found\n"
            "[E] dev_read(#): no device found\n[E] dev_write(#): no device found\n"
            "[E] dev_send_cmd(#): no device found\n");
}

// What a backend answers to a data packet, for the failures that the HID backend cannot produce.
int accepted = 0;
int answer = 0;
uint8_t acknowledgement = 0;

TEST_F(Transport, ReportsDataPacketsThatAreNotAcknowledged) {
  dev_t dev{};
  dev.send_pkv = [](dev_t*, uint8_t, uint8_t*, uint32_t) { return accepted; };
  dev.recv_pkv = [](dev_t*, uint8_t, uint8_t* buf, uint32_t) {
    *buf = acknowledgement;
    return answer;
  };
  const auto expect = [&](int result, const char* out) {
    buffer data = counting_up();
    const printed text =
        capture([&] { EXPECT_EQ(transport::dev_send_data(&dev, data.data(), 64), result); });
    EXPECT_EQ(text.out, out);
    EXPECT_EQ(text.err.empty(), answer >= 0 || accepted < 0) << text.err;
    EXPECT_EQ(data, result == 0 ? buffer{} : counting_up());
  };
  acknowledgement = 0;
  accepted = -7;
  expect(-7, "dev_send_data: send packet error\n");
  accepted = 0;
  answer = -1;
  expect(-1, "dev_send_data:  recv timeout\n");
  for (answer = 0; answer <= transport::PKTYPE_CMD; answer++) {
    expect(-1, "Wrong packet type: 0x00 \n");
  }
  answer = transport::PKTYPE_DATA;
  expect(0, "");
  acknowledgement = 9;
  expect(-1, "Data error\n");
}

}  // namespace
