// SPDX-License-Identifier: GPL-3.0-or-later
// The commands that use the device: what they print, and what they send.
#include "lib/libcmds/cmds.h"
#include "src/cmds/ir_transmit.h"
#include "src/common.h"
#include "tests/support/device_test.h"

namespace {

constexpr const char* kFound = "[E] zv_version_compare(#): Zarvo tessarin found version: ";

class DeviceCommands : public DeviceTest {
 protected:
  struct run_result {
    int status;
    std::string out;
    std::string err;  // without the line that tells the version found
  };

  run_result run(const std::string& line) {
    run_result result{};
    const printed text = capture([&] { result.status = run_cmd_line(line.c_str(), &session); });
    result.out = text.out;
    std::istringstream lines(text.err);
    for (std::string message; std::getline(lines, message);) {
      if (!message.starts_with(kFound)) result.err += message + "\n";
    }
    return result;
  }
};

TEST_F(DeviceCommands, VersionShowsTheFirmware) {
  const struct {
    const char* script;
    const char* out;  // behind the first line
  } cases[] = {
      {"", ""},
      {"device version=3.2.1",
       " FW Version: v3.2.1\n    Git Hash: 0x00ABCDEF\n    Config:   test\n"},
      {"device\non getversion noreply", ""},
      {"device\non usb_if status 1", ""},  // closed at the start: no device
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    capture([&] { begin(c.script); });
    const run_result result = run("version");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out.substr(result.out.find('\n') + 1), c.out);
  }
}

TEST_F(DeviceCommands, NeedFirmwareThatIsNewEnough) {
  const struct {
    const char* script;
    const char* line;
    const char* err;
  } cases[] = {
      {"", "listen", "[E] listen(#): Error: version >= 4.6.x required\n"},
      {"device version=4.5.9", "listen", "[E] listen(#): Error: version >= 4.6.x required\n"},
      {"", "decode --listen", "[E] decode(#): Error: version >= 4.7.x required\n"},
      {"device version=4.6.9", "decode -l", "[E] decode(#): Error: version >= 4.7.x required\n"},
      {"", "sendir --raw=1", "[E] sendir(#): Error: version >= 4.7.x required\n"},
      {"device version=4.6.9", "sendir --raw=1",
       "[E] sendir(#): Error: version >= 4.7.x required\n"},
      {"device version=4.7.9", "sendir -k", "[E] sendir(#): Error: version >= 4.8.x required\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    begin(c.script);
    const run_result result = run(c.line);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, c.err);
    EXPECT_EQ(result.out, "");
  }
}

// Every listener ends, for the sake of the test, when the device comes back with old firmware.
constexpr const char* kReturnsTooOld = "\nat 5000 unplug\nat 6000 plug version=4.5.0\n";
constexpr const char* kEnd =
    "error, disconnecting\n"
    "Zarvo tessarin found version: 4.5.0 0xABCDEF [test]\n"
    "Error: version required to listen >= 4.6.x\n";

TEST_F(DeviceCommands, ListenPrintsInTheChosenFormat) {
  const struct {
    const char* line;
    const char* out;
  } cases[] = {
      {"listen", "+9000 -4500 +560 \n"},
      {"listen -c", "9000,4500,560\n"},
      {"listen -r -c", "+9000 -4500 +560 \n"},
      {"listen -d", "+9000 -4500 +560 \n"},
      {"listen -a", "0,9000, 4500, 560\n"},
      {"listen -e --raw", "+40000\n+9000 -4500 +560 \n"},
      {"listen -e -a", ":e:40\n0,9000, 4500, 560\n"},
      {"listen -e -c", "40 ms\n9000,4500,560\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    set_elapsed_flag(0);
    begin(std::string("device\nat 1000 signal 9000 4500 560") + kReturnsTooOld);
    const run_result result = run(c.line);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, std::string(c.out) + kEnd);
    EXPECT_EQ(result.err,
              "[E] zv_ir_packet_poll(#): Wrong response length = -1\n"
              "[E] zv_ir_packet_poll(#): Device Closed, Watiing...\n");
  }
  set_elapsed_flag(0);
  begin(std::string("device\nat 1000 signal 9000 4500 560") + kReturnsTooOld);
  EXPECT_NE(run("listen -p").out.find("0000 006D 0002 0000 015A 00AD 0015 0602\n"),
            std::string::npos);
}

TEST_F(DeviceCommands, ListenGoesOnAfterTheDeviceWasAway) {
  begin(std::string("device\n"
                    // The rest of this signal never comes.
                    "at 1000 report 07 00 00 28 00 28 23 94 11 30 02 94 11 30 02 94 11 30 02 94 11 "
                    "30 02 94 11 30 02 94 11 30 02 94 11 30 02 94 11 30 02 94 11 30 02 94 11 30 02 "
                    "94 11 30 02 94 11 30 02 94 11 30 02 94 11\n"
                    "at 1100 unplug\nat 2000 plug refuses=2\n"
                    "at 3000 signal 889 889\n"
                    "at 3001 signal 9000 4500 560") +
        kReturnsTooOld);
  const run_result result = run("listen");
  EXPECT_EQ(result.out,
            "error, disconnecting\n"
            "Zarvo tessarin found version: 4.8.0 0xABCDEF [test]\n"
            "+889 -889 \n"
            "+9000 -4500 +560 \n" +
                std::string(kEnd));
  EXPECT_EQ(commands(), "getversion usb_if getversion usb_if getversion");
}

TEST_F(DeviceCommands, ListenKeepsUpWithAFlood) {
  begin(std::string("device\nat 4000 signal 100 200 300") + kReturnsTooOld);
  fake_usb::play("flood 10");
  const run_result result = run("listen -c");
  EXPECT_NE(result.out.find("100,200,300\n"), std::string::npos);
  EXPECT_TRUE(result.out.ends_with(kEnd));
}

TEST_F(DeviceCommands, DecodesWhatTheDeviceHears) {
  begin(std::string("device\nat 1000 signal 9000 4500 560") + kReturnsTooOld);
  const run_result live = run("decode --listen");
  EXPECT_NE(session.dev, nullptr) << "the stop hook closes what came back";
  EXPECT_EQ(live.status, 1);
  EXPECT_TRUE(live.out.starts_with("RAW:    +9000 -4500 +560 \nPRONTO: ")) << live.out;
  EXPECT_TRUE(live.out.ends_with(std::string("++++\n\n") + kEnd)) << live.out;
}

TEST_F(DeviceCommands, SendsPatterns) {
  const std::string transmitting = "Transmitting IR Pattern...\n";
  const std::string killing = "Killing IR transmitter....\n";
  const struct {
    const char* line;
    std::string out;
    const char* commands;  // behind the version query
    const char* header;    // of the last " irtranset": count, ik, repeat
  } cases[] = {
      {"sendir --raw=+9000,-4500,+560", transmitting + "+9000 -4500 +560 \n-50\nDone!\n",
       " irtranset irtransraw", "04 00 32 00 01"},
      {"sendir --ik=23000 --repeat=10 --raw=-9000,,4500",
       transmitting + "+9000 -4500 \n-23000\nDone!\n", " irtranset irtransraw", "03 00 d8 59 0a"},
      {"sendir --repeat=0 --raw=65535", transmitting + "+65535 \n-50\nDone!\n",
       " irtranset irtransraw", "02 00 32 00 00"},
      {"sendir --ik=1000 --csv=9000,4500,560", transmitting + "Done!\n", " irtranset irtransraw",
       "03 00 e8 03 01"},
      {"sendir --csv=0,4472,4472,572", transmitting + "Done!\n", " irtranset irtransraw",
       "04 00 32 00 01"},
      {"sendir --raw=1 --csv=9000,4500,560", transmitting + "+1 \n-50\nDone!\n",
       " irtranset irtransraw", "02 00 32 00 01"},
      {"sendir -k", killing + "Done!\n", "*2 irtranskil", ""},
      {"sendir -k --raw=7", killing + "Done!\n" + transmitting + "+7 \n-50\nDone!\n",
       " irtranskil irtranset irtransraw", "02 00 32 00 01"},
      {"sendir -k --csv=7,8,9", killing + "Done!\n" + transmitting + "Done!\n",
       " irtranskil irtranset irtransraw", "03 00 32 00 01"},
      // A once sequence of one pair, its gap 0x2710 * 26 us = 260 ms, which is too long to hand on.
      {"sendir --pronto=0000,006D,0001,0000,0156,2710 --repeat=1",
       transmitting + "+8892 \n-65535\n+8892 \n-65535\nDone!\n",
       " irtranset irtransraw irtranset irtransraw", "02 00 ff ff 01"},
      {"sendir --pronto=0100,006D,0001,0001,0156,0400,0010,0500 --repeat=2",
       transmitting + "+8892 \n-26000\n+416 \n-33000\n+416 \n-33000\nDone!\n",
       " irtranset irtransraw irtranset irtransraw irtranset irtransraw", "02 00 e8 80 01"},
      {"sendir --pronto=0000,006D,0000,0001,0010,0500", transmitting + "+416 \n-33000\nDone!\n",
       " irtranset irtransraw", "02 00 e8 80 01"},
      {"sendir --pronto=0000,006D,0000,0000", transmitting + "Done!\n", "", ""},
      {"sendir --pronto=5000,006D,0001,0000,0156,2710", transmitting + "Done!\n", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    begin("device");
    const run_result result = run(c.line);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, c.out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(commands(), std::string("getversion") + c.commands);
    constexpr size_t kHeaderAt = 39;
    std::string header;
    for (const std::string& report : fake_usb::writes()) {
      if (report.starts_with("06 69 72 74 72 61 6e 73 65 74"))
        header = report.substr(kHeaderAt, 14);
    }
    EXPECT_EQ(header, c.header);
  }
}

TEST_F(DeviceCommands, SendsEntriesAsTyped) {
  begin("device");
  run("sendir --csv=0,4472,4472,572");
  EXPECT_EQ(fake_usb::writes().back().substr(39, 23), "00 00 78 11 78 11 3c 02");
  begin("device");
  run("sendir --raw=+4472,-4472,+572");
  EXPECT_EQ(fake_usb::writes().back().substr(39, 23), "00 00 78 11 78 11 3c 02");
}

TEST_F(DeviceCommands, WaitsOutTheGapBetweenProntoFrames) {
  begin("device");
  const uint64_t before = fake_usb::now_us();
  run("sendir --pronto=0000,006D,0001,0000,0156,2710 --repeat=3");
  constexpr uint64_t kGapUs = 260'000;
  constexpr uint64_t kFlushUs = 300'000;
  EXPECT_EQ(fake_usb::now_us() - before, 4 * (kGapUs + kFlushUs));
}

TEST_F(DeviceCommands, RefuseBeforeAnythingIsSent) {
  const std::string ik =
      "[E] sendir(#): interkey delay must be: 15 - 1000 (ms) or 150000 - 65000 (us)\n";
  const std::string pattern = "[E] sendir(#): must specify a pattern\n";
  const auto range = [](const char* number) {
    return std::string("[E] to_durations(#): Error: duration out of range: ") + number + "\n";
  };
  const std::string transmitting = "Transmitting IR Pattern...\n";
  const struct {
    std::string options;
    std::string out;
    std::string err;
  } cases[] = {
      {"", "Error: must specify an option\n", ""},
      {"--ik --raw=1", "", ik},
      {"--ik= --raw=1", "", ik},
      {"--ik=9 --raw=1", "", ik},
      {"--ik=1001 --raw=1", "", ik},
      {"--ik=14999 --raw=1", "", ik},
      {"--ik=65001 --raw=1", "", ik},
      {"--repeat --raw=1", "", "[E] sendir(#): must specify a repeat count\n"},
      {"--repeat=11 --raw=1", "", "[E] sendir(#): must specify a repeat <= 10\n"},
      {"--repeat=-1 --raw=1", "", "[E] sendir(#): must specify a repeat <= 10\n"},
      {"--raw", "", pattern},
      {"--raw=", "", pattern},
      {"--csv", "", pattern},
      {"--pronto=", "", pattern},
      {"--raw=\\ \\ ", transmitting, "[E] decode_raw(#): invalid line buffer, len = 2\n"},
      {"--raw=+65536", "", range("65536")},
      {"--raw=-65536", "", range("65536")},
      {"--raw=-9223372036854775808", "", range("65536")},
      {"--csv=1,-2,3", "", range("-2")},
      {"--csv=1,2,65536", "", range("65536")},
      {"--csv=4472,4472,572,1664", "", "[E] sendir(#): Error: invalid length, must be odd\n"},
      {"--csv=0,4472,4472", "", "[E] sendir(#): Error: invalid length, must be even\n"},
      {"--csv=0,100", "", "[E] sendir(#): Error: buffer can't be less than 4\n"},
      {"--csv=100", "", "[E] sendir(#): Error: buffer can't be less than 4\n"},
      {"--csv=,", "", "[E] sendir(#): Error: buffer can't be less than 4\n"},
      {"--pronto=0000,006D,0001,0000,FFFF,0001", "", range("1703910")},
      {"--pronto=0000,006D,0001,0000,1FFFF,0001", "",
       "[E] decode_pronto(#): Error: Pronto Hex is invalid, word out of range\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.options);
    begin("device");
    const run_result result = run("sendir " + c.options);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, c.out);
    EXPECT_EQ(result.err, c.err);
    EXPECT_EQ(commands(), "getversion");
  }
  for (const char* line : {"sendir --pronto=0000,006D,0002,0000,0156,2710", "sendir --pronto=0000",
                           "sendir --pronto=0000,006D,0001,0000"}) {
    begin("device");
    const run_result result = run(line);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Transmitting IR Pattern...\nDone!\n");
    EXPECT_EQ(result.err, "[E] zarvo_send_pronto(#): Pronto Hex is invalid, invalid size\n");
    EXPECT_EQ(commands(), "getversion");
  }
}

TEST_F(DeviceCommands, SendAsManyEntriesAsTheDeviceCounts) {
  const auto list = [](const char* option, int count) {
    std::string text = std::string("sendir ") + option + "1";
    for (int i = 1; i < count; i++) text += ",1";
    return text;
  };
  begin("device");
  EXPECT_EQ(run(list("--raw=", 32766)).status, 0);
  EXPECT_EQ(commands(), "getversion irtranset irtransraw*1261");
  begin("device");
  EXPECT_EQ(run(list("--csv=", 32767)).status, 0);
  EXPECT_EQ(commands(), "getversion irtranset irtransraw*1261");
  for (const std::string& line : {list("--raw=", 32767), list("--csv=", 32769)}) {
    begin("device");
    const run_result result = run(line);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("Error: pattern too long"), std::string::npos);
    EXPECT_EQ(commands(), "getversion");
  }
}

TEST_F(DeviceCommands, KillsBeforeAnEmptyPatternIsRefused) {
  begin("device\non irtranskil status 1");
  const run_result result = run("sendir -k --raw=");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "Killing IR transmitter....\nError\nDone!\n");
  EXPECT_TRUE(result.err.ends_with("[E] sendir(#): must specify a pattern\n"));
  EXPECT_EQ(commands(), "getversion irtranskil");
}

TEST_F(DeviceCommands, SurviveADeviceThatFailsInATransmission) {
  const struct {
    const char* line;
    const char* fault;
    const char* err;  // the last message
    const char* commands;
  } cases[] = {
      {"--raw=1,2,3", "on irtranset status 1", "[E] sendir(#): Error sending pattern\n",
       "irtranset"},
      {"--csv=1,2,3", "on irtransraw unplug", "[E] sendir(#): Error: could not transmit data\n",
       "irtranset irtransraw"},
      {"--csv=1,2,3", "on irtranset noreply", "Error: could not transmit data\n", "irtranset"},
      // The frames behind the one that failed are tried all the same.
      {"--pronto=0000,006D,0001,0000,0156,2710", "on irtransraw 1 unplug",
       "hidapi: No such device\n", "irtranset irtransraw irtranset"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fault);
    begin(std::string("device\n") + c.fault);
    const run_result result = run(std::string("sendir ") + c.line);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("Transmitting IR Pattern...\n"));
    EXPECT_TRUE(result.out.ends_with("Done!\n"));
    EXPECT_TRUE(result.err.ends_with(c.err)) << result.err;
    EXPECT_EQ(commands(), std::string("getversion ") + c.commands);
  }
}

TEST(Transmit, KnowsTheCarrier) {
  EXPECT_EQ(toFrequencyKHz(0x006D), 38);
  EXPECT_EQ(toFrequencyKHz(0x0073), 36);
  EXPECT_EQ(toFrequencyKHz(0x0048), 58);
  EXPECT_EQ(toFrequencyKHz(0), 0);
}

}  // namespace
