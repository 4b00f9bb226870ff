// SPDX-License-Identifier: GPL-3.0-or-later
// The command exchange over the HID backend: bytes, time limits, messages, and every way in which
// a device can disappoint.
#include "lib/transport/transport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>

#include "lib/liblog/logging.h"
#include "lib/transport/hid.h"
#include "tests/support/capture.h"
#include "tests/support/fake_usb.h"

namespace {

using transport::dev_t;
using buffer = std::array<uint8_t, 64>;

struct closer {
  void operator()(dev_t* dev) const { EXPECT_EQ(transport::dev_close(dev), 1); }
};
using handle = std::unique_ptr<dev_t, closer>;

handle open_hid() {
  transport::libhid_priv wanted{0x1209, 0x0001, 2};
  return handle(transport::dev_open(transport::kHid, &wanted));
}

buffer counting_up() {
  buffer data{};
  std::iota(data.begin(), data.end(), uint8_t{1});
  return data;
}

class Transport : public testing::Test {
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
};

TEST_F(Transport, OpensTheFirstMatchThatLetsItself) {
  const struct {
    const char* what;
    const char* script;
    const char* path;  // "" for none
    const char* err;
  } cases[] = {
      {"nothing plugged in", "", "", "[I] error, device list couldn't enumerate\n"},
      {"the device", "device", "/dev/fake0", ""},
      {"other interfaces", "device iface=0\ndevice iface=1\ndevice iface=2", "/dev/fake2", ""},
      {"another interface only", "device iface=1", "", ""},
      {"another vendor", "device vid=1234", "", ""},
      {"another product", "device pid=0002", "", ""},
      {"the first refuses", "device refuses=1\ndevice", "/dev/fake1", ""},
      {"all refuse", "device refuses=1\ndevice refuses=1", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    fake_usb::reset();
    fake_usb::play(c.script);
    handle dev;
    const printed text = capture([&] { dev = open_hid(); });
    EXPECT_EQ(dev != nullptr, *c.path != '\0');
    EXPECT_EQ(text.err, c.err);
    EXPECT_EQ(text.out, "");
    if (dev != nullptr) {
      const std::string opened = std::string("open ") + c.path;
      EXPECT_EQ(std::count(fake_usb::calls().begin(), fake_usb::calls().end(), opened), 1);
    }
  }
}

TEST_F(Transport, DrainsEveryReplyIdAtOpenFlushAndClose) {
  fake_usb::play("device\nqueued 01 aa\nqueued 05 bb\nqueued 07 cc");
  handle dev = open_hid();
  const std::vector<std::string> opening(fake_usb::calls().begin() + 3, fake_usb::calls().end());
  const std::vector<std::string> quiet = {"read 64 id 1 100 -> 0", "read 64 id 3 100 -> 0",
                                          "read 64 id 5 100 -> 0"};
  std::vector<std::string> expected(3, "read 64 id 1 100 -> 2");  // whatever id comes
  expected.insert(expected.end(), quiet.begin(), quiet.end());
  EXPECT_EQ(opening, expected);

  const auto calls_of = [](auto code) {
    const auto before = static_cast<std::ptrdiff_t>(fake_usb::calls().size());
    code();
    return std::vector<std::string>(fake_usb::calls().begin() + before, fake_usb::calls().end());
  };
  EXPECT_EQ(calls_of([&] { EXPECT_EQ(dev_flush(dev.get()), 0); }), quiet);
  expected = quiet;
  expected.insert(expected.end(), {"close", "exit"});
  EXPECT_EQ(calls_of([&] { dev.reset(); }), expected);
}

TEST_F(Transport, EndsTheDrainOfADeviceThatIsNeverQuiet) {
  fake_usb::play("device\nflood 50");
  const handle dev = open_hid();
  ASSERT_NE(dev, nullptr);
  EXPECT_LE(fake_usb::calls().size(), 3U * 256 + 3);
  EXPECT_GE(fake_usb::calls().size(), 3U * 63);  // what the kernel may have queued
}

TEST_F(Transport, SendsWholeReportsFilledWithFF) {
  fake_usb::play("device");
  const handle dev = open_hid();
  const std::string name = "67 65 74 76 65 72 73 69 6f 6e 00";  // getversion
  const auto run = [](int from, int to) {
    std::string text;
    for (int i = from; i <= to; i++) {
      std::array<char, 4> digits{};
      std::snprintf(digits.data(), digits.size(), " %02x", i);
      text += digits.data();
    }
    return text;
  };
  buffer data = counting_up();
  EXPECT_EQ(dev_send_cmd(dev.get(), "getversion", data.data(), 32), 0);
  data = counting_up();
  EXPECT_EQ(dev_send_cmd(dev.get(), "getversion", data.data(), 64), 0);
  data = counting_up();
  EXPECT_EQ(transport::dev_send_data(dev.get(), data.data(), 2), 0);
  const std::vector<std::string> sent = fake_usb::writes();
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_EQ(sent[0], "02 " + name + " 00" + run(1, 20));
  EXPECT_EQ(sent[1], "06 " + name + " 00" + run(1, 52));
  std::string fill = "04 01 02";
  for (int i = 0; i < 62; i++) fill += " ff";
  EXPECT_EQ(sent[2], fill);
}

TEST_F(Transport, GivesTheResultAndZerosForItsLastTwelveBytes) {
  fake_usb::play("device");
  const handle dev = open_hid();
  for (const uint32_t len : {32U, 64U}) {
    buffer data = counting_up();
    ASSERT_EQ(dev_send_cmd(dev.get(), "rbget", data.data(), len), 0);
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
  const struct {
    const char* cmd;
    uint32_t len;
    const char* err;
  } cases[] = {
      {"rbget", 131, "[E] _dev_send_cmd(#): size 131 is greater than max command length: 130\n"},
      {"rbget", 130, "[E] hid_send_packet(#): invalid cmd length\n"},
      {"rbget", 4, "[E] hid_send_packet(#): invalid cmd length\n"},
      {nullptr, 32, "[E] _dev_send_cmd(#): invalid command\n"},
      {"elevenchars", 32, "[E] _dev_send_cmd(#): command string to long: 11 > 11\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.err);
    std::array<uint8_t, 131> data{};
    int result = 0;
    const printed text =
        capture([&] { result = dev_send_cmd(dev.get(), c.cmd, data.data(), c.len); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(text.err, c.err);
  }
  EXPECT_TRUE(fake_usb::writes().empty());
}

TEST_F(Transport, ReportsEveryFaultOfAnExchangeAndKeepsTheData) {
  const std::string success = "[E] hid_recv_packet(#): hidapi: Success\n";
  const std::string gone = "hidapi: No such device\n";
  const std::string recv =
      "[E] _recv_packet(#): _recv_packet: recv packet error = -1\n"
      "[E] _dev_send_cmd(#): recv timeout\n";
  const auto length = [&](const std::string& count) {
    return "[E] hid_recv_packet(#): Wrong response length = " + count + "\n" + success + recv;
  };
  const std::string wrong_id =
      "[E] hid_recv_packet(#): hid_recv_packet: wrong report id\n" + success + recv;
  const std::string timing = "on rbget report 07 00 00 28 00" + [] {
    std::string zeros;
    for (int i = 0; i < 60; i++) zeros += " 00";
    return zeros;
  }();
  const struct {
    std::string fault;
    uint32_t len;
    std::string err;
  } cases[] = {
      {"on rbget noreply", 32, length("0")},
      {"on rbget noreply", 64, length("0")},
      {"on rbget late 10001", 32, length("0")},
      {"on rbget short", 32, length("16")},
      {"on rbget short", 64, length("32")},
      {"on rbget id 05", 32, wrong_id},
      {"on rbget id 07", 64, wrong_id},
      {timing, 32, wrong_id},
      {timing, 64, wrong_id},
      {"on rbget name rbset", 32, "[E] _dev_send_cmd(#): Wrong response: 'rbset'\n"},
      {"on rbget status 3", 64, "[E] _dev_send_cmd(#): Command error: 3\n"},
      {"on rbget writeerror", 32, "[E] hid_send_packet(#): " + gone},
      {"on rbget unplug", 32,
       "[E] hid_recv_packet(#): ---timeout---\n[E] hid_recv_packet(#): " + gone +
           "[E] hid_recv_packet(#): Wrong response length = -1\n[E] hid_recv_packet(#): " + gone +
           recv},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault + " " + std::to_string(c.len));
    fake_usb::reset();
    fake_usb::play("device\n" + c.fault);
    const handle dev = open_hid();
    buffer data = counting_up();
    int result = 0;
    const printed text =
        capture([&] { result = dev_send_cmd(dev.get(), "rbget", data.data(), c.len); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(text.err, c.err);
    EXPECT_EQ(text.out, "");
    EXPECT_EQ(data, counting_up());
    // Nothing is drained after a failure, and nothing tried again.
    EXPECT_EQ(fake_usb::writes().size(), 1U);
    EXPECT_EQ(fake_usb::calls().back().starts_with("read 64"), false);
  }
}

TEST_F(Transport, WaitsTenSecondsForAReply) {
  fake_usb::play("device\non rbget 1 late 9999");
  const handle dev = open_hid();
  buffer data{};
  EXPECT_EQ(dev_send_cmd(dev.get(), "rbget", data.data(), 32), 0);
  EXPECT_EQ(fake_usb::calls().back(), "read 33 id 1 10000 -> 33");
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
int answer = transport::PKTYPE_DATA;
uint8_t acknowledgement = 0;

TEST_F(Transport, ReportsDataPacketsThatAreNotAcknowledged) {
  dev_t dev{};
  dev.recv_pkv = [](dev_t*, uint8_t, uint8_t* buf, uint32_t) {
    *buf = acknowledgement;
    return answer;
  };
  const struct {
    int sent;
    int answer;
    uint8_t acknowledgement;
    int result;
    const char* out;
  } cases[] = {
      {-7, 3, 0, -7, "dev_send_data: send packet error\n"},
      {1, -1, 0, -1, "dev_send_data:  recv timeout\n"},
      {1, 2, 0, -1, "Wrong packet type: 0x00 \n"},
      {1, 3, 9, -1, "Data error\n"},
      {1, 3, 0, 0, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.out);
    if (c.sent < 0) {
      dev.send_pkv = [](dev_t*, uint8_t, uint8_t*, uint32_t) { return -7; };
    } else {
      dev.send_pkv = [](dev_t*, uint8_t, uint8_t*, uint32_t) { return 1; };
    }
    answer = c.answer;
    acknowledgement = c.acknowledgement;
    buffer data = counting_up();
    const printed text =
        capture([&] { EXPECT_EQ(transport::dev_send_data(&dev, data.data(), 64), c.result); });
    EXPECT_EQ(text.out, c.out);
    EXPECT_EQ(data, c.result == 0 ? buffer{} : counting_up());
  }
}

}  // namespace
