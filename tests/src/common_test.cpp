// SPDX-License-Identifier: GPL-3.0-or-later
// The session and the operations of the device.
#include "src/common.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>

#include "tests/support/device_test.h"

namespace {

class Session : public DeviceTest {};

TEST_F(Session, OpensTheDeviceAndSwitchesItsReportsOn) {
  const auto expect = [&](const char* script, bool opens, const char* err) {
    SCOPED_TRACE(script);
    const printed text = capture([&] { begin(script); });
    EXPECT_EQ(session.dev != nullptr, opens);
    EXPECT_EQ(fake_usb::open_devices(), opens ? 1 : 0);
    EXPECT_EQ(text.err, err);
  };
  set_loglevel(3);
  expect("device", true, "");
  expect("", false, "[I] error, device list couldn't enumerate\n[I] device not found\n");
  expect("device\non usb_if status 2", false,
         "[E] _dev_send_cmd(#): Command error: 2\n[E] zarvo_init(#): could not set iface\n");
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
  const auto expect = [&](const char* script, const char* version, int result) {
    begin(script);
    const printed text = capture([&] { EXPECT_EQ(zv_version_compare(session.dev, 4, 6), result); });
    EXPECT_TRUE(text.err.ends_with(
        std::string("[E] zv_version_compare(#): Zarvo tessarin found version: ") + version + "\n"));
  };
  expect("device version=4.6.0", "4.6.0 0xABCDEF [test]", 0);
  expect("device version=5.6.0", "5.6.0 0xABCDEF [test]", -1);
  expect("device version=3.9.0", "3.9.0 0xABCDEF [test]", 0);
  expect("device\non getversion status 1", "0.0.0 0x0 []", 0);
  EXPECT_EQ(zv_version_compare(nullptr, 4, 6), -1);
}

TEST_F(Session, UploadsInChunksOf26Entries) {
  std::array<uint16_t, 300> entries{};
  std::iota(entries.begin(), entries.end(), uint16_t{0x0101});
  const std::pair<uint16_t, const char*> cases[] = {{0, "irtranset"},
                                                    {26, "irtranset irtransraw"},
                                                    {27, "irtranset irtransraw*2"},
                                                    {300, "irtranset irtransraw*12"}};
  for (const auto& [count, expected] : cases) {
    begin("device");
    EXPECT_EQ(zv_transmit_raw(session.dev, entries.data(), count, 0x1234, 3), 0);
    EXPECT_EQ(commands(), expected);
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
  const std::array<uint16_t, 100> entries{};
  const auto expect = [&](const std::string& fault, const char* sent, const char* err) {
    SCOPED_TRACE(fault);
    begin("device\n" + fault);
    const printed text =
        capture([&] { EXPECT_EQ(zv_transmit_raw(session.dev, entries.data(), 100, 0, 1), -1); });
    EXPECT_EQ(commands(), sent);
    EXPECT_TRUE(text.err.ends_with(err)) << text.err;
  };
  expect("on irtransraw 2 status 1", "irtranset irtransraw*2",
         "Command error: 1\n[E] zv_transmit_raw(#): error sending data, ceck device log\n");
  expect("on irtransraw 1 writeerror", "irtranset irtransraw", "ceck device log\n");
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

TEST_F(Session, AssemblesSignalsFromReports) {
  // Entries heard, the polls that it takes, entries in the packet: their count wraps.
  const std::tuple<int, int, int> cases[] = {{1, 1, 1},           {29, 1, 29}, {30, 2, 30},
                                             {45, 2, 45},         {61, 3, 61}, {255, 9, 255},
                                             {300, 10, 300 - 256}};
  for (const auto& [entries, polls, length] : cases) {
    SCOPED_TRACE(entries);
    std::string signal = " 0";  // a leading zero is kept
    for (int i = 2; i <= entries; i++) signal += " " + std::to_string(i);
    begin("device\nat 1000 signal" + signal);
    ir_packet packet{};
    for (int i = 1; i < polls; i++) EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), 0);
    EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), 1);
    EXPECT_EQ(packet.len, length);
    EXPECT_EQ(packet.elapsed, 40);
    EXPECT_EQ(packet.buf[0], entries > 256 ? 257 : 0);
    EXPECT_EQ(packet.buf[packet.len - 1], entries > 1 ? entries : 0);
    EXPECT_EQ(fake_usb::calls().back(), "read 65 id 7 10000 -> 65");
  }
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
  const std::pair<std::string, std::string> cases[] = {
      {"report 07 00 00", length(3)},
      {"report 05" + zeros(64), wrong_id},
      {"report 01 00", length(2) + wrong_id},
  };
  for (const auto& [event, err] : cases) {
    begin("device\nat 1000 " + event);
    ir_packet packet{};
    const printed text = capture([&] { EXPECT_EQ(zv_ir_packet_poll(session.dev, &packet), -1); });
    EXPECT_EQ(text.err, err + closed) << event;
  }
}

TEST_F(Session, WaitsForTheDeviceToComeBack) {
  const auto expect = [&](const std::string& script, int result, const std::string& version) {
    SCOPED_TRACE(script);
    begin("device\nat 400 unplug\nat 3000 " + script);
    end();
    const printed text = capture([&] { EXPECT_EQ(wait_for_device(&session.dev), result); });
    EXPECT_EQ(text.out,
              "Zarvo tessarin found version: " + version +
                  (result == 0 ? "\n" : "\nError: version required to listen >= 4.6.x\n"));
    EXPECT_EQ(commands(), result == 0 ? "getversion usb_if" : "getversion");
    EXPECT_NE(session.dev, nullptr);  // open in either case
    const auto tries =
        std::count_if(fake_usb::calls().begin(), fake_usb::calls().end(),
                      [](const std::string& call) { return call.starts_with("enumerate"); });
    EXPECT_LE(std::abs(tries - 520), 10);       // it sleeps for 5 ms in between
    EXPECT_LT(fake_usb::now_us(), 3'400'000U);  // and notices at once
  };
  expect("plug version=4.6.0 refuses=3", 0, "4.6.0 0xABCDEF [test]");
  expect("plug version=5.0.9", -1, "5.0.9 0xABCDEF [test]");
  expect("plug version=4.5.9", -1, "4.5.9 0xABCDEF [test]");
  expect("plug\non getversion unplug", -1, "0.0.0 0x0 []");
}

}  // namespace
