// SPDX-License-Identifier: GPL-3.0-or-later
// The session and the operations of the device.
#include "src/session.h"

#include <array>
#include <numeric>

#include "tests/support/device_test.h"

namespace {

class Session : public DeviceTest {};

std::string zeros(int count) {
  std::string text;
  for (int i = 0; i < count; i++) text += " 00";
  return text;
}

TEST_F(Session, OpensTheDeviceAndSwitchesItsReportsOn) {
  const struct {
    const char* script;
    bool opens;
    const char* err;
  } cases[] = {
      {"device", true, ""},
      {"", false, "[I] error, device list couldn't enumerate\n[I] device not found\n"},
      {"device iface=1", false, "[I] device not found\n"},
      {"device refuses=1", false, "[I] device not found\n"},
      {"device\non usb_if status 2", false,
       "[E] _dev_send_cmd(#): Command error: 2\n[E] zarvo_init(#): could not set iface\n"},
  };
  set_loglevel(3);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    const printed text = capture([&] { begin(c.script); });
    EXPECT_EQ(session.dev != nullptr, c.opens);
    EXPECT_EQ(fake_usb::open_devices(), c.opens ? 1 : 0);
    EXPECT_EQ(text.err, c.err);
  }
  begin("device");
  EXPECT_EQ(fake_usb::writes().front(),
            "02 75 73 62 5f 69 66" + zeros(6) + " 01 00 00 00 01" + zeros(15));
  EXPECT_EQ(tessarin_iface_en(session.dev, 0), 0);
  EXPECT_EQ(fake_usb::writes().back(), "02 75 73 62 5f 69 66" + zeros(6) + " 01" + zeros(19));
}

TEST_F(Session, ReadsTheVersion) {
  begin("device version=4.8.1\non getversion 2 noreply");
  std::array<uint8_t, kVersionReplySize> reply{};
  EXPECT_EQ(zv_get_version(session.dev, reply.data(), 0), 0);
  const version_t version = parse_version(reply.data());
  EXPECT_EQ(version.major_version, 4);
  EXPECT_EQ(version.minor_version, 8);
  EXPECT_EQ(version.patch_version, 1);
  EXPECT_EQ(version.scm_hash, 0x00ABCDEFU);
  EXPECT_STREQ(version.type, "test");
  const printed text = capture([&] {
    EXPECT_EQ(zv_get_version(session.dev, reply.data(), 0), 1);
    EXPECT_EQ(zv_get_version(nullptr, reply.data(), 0), -1);
    EXPECT_EQ(zv_get_version(session.dev, nullptr, 0), -1);
  });
  EXPECT_TRUE(text.err.ends_with("[E] zv_get_version(#): invalid buffer\n"));

  reply.fill('x');  // a type without an end
  EXPECT_EQ(std::string(parse_version(reply.data()).type), "xxxxxxxx");
}

TEST_F(Session, ComparesVersionsTheOddWayRound) {
  const struct {
    const char* version;
    int result;
  } cases[] = {{"4.6.0", 0}, {"4.9.1", 0}, {"4.5.9", -1}, {"5.0.0", -1}, {"3.9.0", 0}};
  for (const auto& c : cases) {
    begin(std::string("device version=") + c.version);
    const printed text =
        capture([&] { EXPECT_EQ(zv_version_compare(session.dev, 4, 6), c.result); });
    EXPECT_EQ(text.err, std::string("[E] zv_version_compare(#): Zarvo tessarin found version: ") +
                            c.version + " 0xABCDEF [test]\n");
  }
  begin("device\non getversion status 1");
  const printed text = capture([&] { EXPECT_EQ(zv_version_compare(session.dev, 4, 6), 0); });
  EXPECT_TRUE(text.err.ends_with("found version: 0.0.0 0x0 []\n"));
  EXPECT_EQ(zv_version_compare(nullptr, 4, 6), -1);
}

TEST_F(Session, UploadsInChunksOf26Entries) {
  std::array<uint16_t, 300> entries{};
  std::iota(entries.begin(), entries.end(), uint16_t{0x0101});
  const struct {
    uint16_t count;
    const char* commands;
  } cases[] = {
      {0, "irtranset"},
      {1, "irtranset irtransraw"},
      {26, "irtranset irtransraw"},
      {27, "irtranset irtransraw*2"},
      {300, "irtranset irtransraw*12"},
  };
  for (const auto& c : cases) {
    begin("device");
    EXPECT_EQ(zv_transmit_raw(session.dev, entries.data(), c.count, 0x1234, 3), 0);
    EXPECT_EQ(commands(), c.commands);
  }
  const std::vector<std::string> sent = fake_usb::writes();
  EXPECT_EQ(sent[1], "06 69 72 74 72 61 6e 73 65 74 00 00 00 2c 01 34 12 03" + zeros(47));
  EXPECT_EQ(sent[2].substr(0, 50), "06 69 72 74 72 61 6e 73 72 61 77 00 00 01 01 02 01");
  EXPECT_EQ(sent[3].substr(36, 14), "00 1b 01 1c 01");

  begin("device");
  EXPECT_EQ(zv_rb_wake_sig(session.dev, entries.data(), 127), 0);
  EXPECT_EQ(commands(), "rbsetlen rbwakesig*5");
  begin("device");
  EXPECT_EQ(zv_rb_wake_sig(session.dev, entries.data(), 128), 0);  // 256 bytes count as none
  EXPECT_EQ(commands(), "rbsetlen");
}

TEST_F(Session, StopsAnUploadThatFails) {
  const struct {
    const char* fault;
    const char* commands;
    const char* err;
  } cases[] = {
      {"on irtranset status 1", "irtranset", "Command error: 1\n"},
      {"on irtransraw 2 status 1", "irtranset irtransraw*2",
       "Command error: 1\n[E] zv_transmit_raw(#): error sending data, ceck device log\n"},
      {"on irtransraw 2 unplug", "irtranset irtransraw*2", "ceck device log\n"},
      {"on irtransraw 1 writeerror", "irtranset irtransraw", "ceck device log\n"},
  };
  const std::array<uint16_t, 100> entries{};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    begin(std::string("device\n") + c.fault);
    const printed text =
        capture([&] { EXPECT_EQ(zv_transmit_raw(session.dev, entries.data(), 100, 0, 1), -1); });
    EXPECT_EQ(commands(), c.commands);
    EXPECT_TRUE(text.err.ends_with(c.err)) << text.err;
  }
}

TEST_F(Session, ReadsAndWritesTheWakeSettings) {
  begin("device\non rbget 2 status 1\non rbset 2 status 1\non irtranskil 2 status 1");
  uint32_t enable = 0;
  uint8_t high = 0;
  uint8_t low = 0;
  EXPECT_EQ(zv_rb_settings_get(session.dev, &enable, &high, &low), 0);
  EXPECT_EQ(enable, 0x100F0E0DU);  // the simulated device counts its result up
  EXPECT_EQ(high, 0x1D);
  EXPECT_EQ(low, 0x1E);
  EXPECT_EQ(zv_rb_settings_set(session.dev, 0x01020304, 0xAA, 0xBB), 0);
  EXPECT_EQ(fake_usb::writes().back(),
            "06 72 62 73 65 74" + zeros(7) + " 04 03 02 01" + zeros(12) + " aa bb" + zeros(34));
  EXPECT_EQ(zv_transmit_kill(session.dev), 0);
  capture([&] {
    EXPECT_EQ(zv_rb_settings_get(session.dev, &enable, &high, &low), -1);
    EXPECT_EQ(zv_rb_settings_set(session.dev, 1, 2, 3), -1);
    EXPECT_EQ(zv_transmit_kill(session.dev), -1);
  });
}

/// A signal of `count` entries: 1, 2, 3, …
std::string signal(int count) {
  std::string text = "signal";
  for (int i = 1; i <= count; i++) text += " " + std::to_string(i);
  return text;
}

TEST_F(Session, AssemblesSignalsFromReports) {
  const struct {
    int entries;
    std::vector<int> polls;
    int length;
  } cases[] = {
      {1, {1}, 1},
      {29, {1}, 29},
      {30, {0, 1}, 30},  // the end mark comes in a report of its own
      {45, {0, 1}, 45},
      {61, {0, 0, 1}, 61},
      {255, {0, 0, 0, 0, 0, 0, 0, 0, 1}, 255},
      {300, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, 300 - 256},  // the count wraps
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.entries);
    begin("device\nat 1000 " + signal(c.entries));
    ir_packet packet{};
    for (const int expected : c.polls) EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), expected);
    EXPECT_EQ(packet.len, c.length);
    EXPECT_EQ(packet.elapsed, 40);
    EXPECT_EQ(packet.buf[0], c.entries > 256 ? 257 : 1);
    EXPECT_EQ(packet.buf[packet.len - 1], c.entries);
    EXPECT_EQ(fake_usb::calls().back(), "read 65 id 7 10000 -> 65");
  }
}

TEST_F(Session, KeepsALeadingZeroOfASignal) {
  begin("device\nat 1000 signal 0 9000 4500");
  ir_packet packet{};
  EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), 1);
  EXPECT_EQ(packet.len, 3);
  EXPECT_EQ(packet.buf[0], 0);
}

TEST_F(Session, LeavesThePacketAloneWhenNothingComes) {
  begin("device");
  ir_packet packet{{9000, 4500}, 2, 7};
  EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), 0);
  EXPECT_EQ(packet.len, 2);
  EXPECT_EQ(packet.elapsed, 7);
}

TEST_F(Session, ReportsWhatIsNoTimingReport) {
  const std::string closed = "[E] zv_ir_packet_poll(#): Device Closed, Watiing...\n";
  const std::string wrong_id = "[E] zv_ir_packet_poll(#): zv_ir_packet_poll: wrong report id\n";
  const auto length = [](int count) {
    return "[E] zv_ir_packet_poll(#): Wrong response length = " + std::to_string(count) + "\n";
  };
  const struct {
    std::string event;
    std::string err;
  } cases[] = {
      {"unplug", length(-1)},
      {"report 07 00 00", length(3)},
      {"report 05" + zeros(64), wrong_id},
      {"report 01 00", length(2) + wrong_id},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.event);
    begin("device\nat 1000 " + c.event);
    ir_packet packet{};
    const printed text = capture([&] { EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), -1); });
    EXPECT_EQ(text.err, c.err + closed);
  }
}

TEST_F(Session, WaitsForTheDeviceToComeBack) {
  const struct {
    const char* script;
    int result;
    const char* out;
    const char* commands;
  } cases[] = {
      {"plug", 0, "Zarvo tessarin found version: 4.8.0 0xABCDEF [test]\n", "getversion usb_if"},
      {"plug refuses=3", 0, "Zarvo tessarin found version: 4.8.0 0xABCDEF [test]\n",
       "getversion usb_if"},
      {"plug version=4.5.9", -1,
       "Zarvo tessarin found version: 4.5.9 0xABCDEF [test]\n"
       "Error: version required to listen >= 4.6.x\n",
       "getversion"},
      {"plug version=5.0.0", -1,
       "Zarvo tessarin found version: 5.0.0 0xABCDEF [test]\n"
       "Error: version required to listen >= 4.6.x\n",
       "getversion"},
      {"plug\non getversion unplug", -1,
       "Zarvo tessarin found version: 0.0.0 0x0 []\n"
       "Error: version required to listen >= 4.6.x\n",
       "getversion"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    begin(std::string("device\nat 400 unplug\nat 3000 ") + c.script);
    end();
    const printed text = capture([&] { EXPECT_EQ(wait_for_device(&session.dev), c.result); });
    EXPECT_EQ(text.out, c.out);
    EXPECT_EQ(commands(), c.commands);
    EXPECT_NE(session.dev, nullptr);  // open in either case
    const auto tries =
        std::count_if(fake_usb::calls().begin(), fake_usb::calls().end(),
                      [](const std::string& call) { return call.starts_with("enumerate"); });
    EXPECT_LT(tries, 1000);                     // it sleeps in between
    EXPECT_LT(fake_usb::now_us(), 3'400'000U);  // and notices at once
  }
}

}  // namespace
