// SPDX-License-Identifier: GPL-3.0-or-later
// The commands that use the device: what they print, and what they send.
#include "src/cmds/ir_transmit.h"
#include "src/common.h"
#include "tests/support/device_test.h"

namespace {

class DeviceCommands : public DeviceTest {};

TEST_F(DeviceCommands, NeedFirmwareThatIsNewEnough) {
  const auto refuse = [&](const char* script, const std::string& line, const char* minimum,
                          const char* sent = "") {
    const std::string command = line.substr(0, line.find(' '));
    expect_run(script, line,
               {1, "", "[E] " + command + "(#): Error: version >= " + minimum + ".x required\n"},
               sent);
  };
  refuse("", "listen", "4.6");
  refuse("device version=4.5.9", "listen", "4.6");
  refuse("", "decode --listen", "4.7");
  refuse("device version=4.6.9", "decode -l", "4.7");
  refuse("", "sendir --raw=1", "4.7");
  refuse("device version=4.6.9", "sendir --raw=1", "4.7");
  refuse("device version=4.7.9", "sendir -k", "4.8", "*2");
}

// Every listener ends, for the sake of the test, when the device comes back with old firmware.
constexpr const char* kReturnsTooOld = "\nat 5000 unplug\nat 6000 plug version=4.5.0\n";
constexpr const char* kEnd =
    "error, disconnecting\n"
    "Zarvo tessarin found version: 4.5.0 0xABCDEF [test]\n"
    "Error: version required to listen >= 4.6.x\n";

TEST_F(DeviceCommands, ListenPrintsInTheChosenFormat) {
  const std::pair<const char*, const char*> cases[] = {
      {"listen", "+9000 -4500 +560 \n"},
      {"listen -r -c", "+9000 -4500 +560 \n"},
      {"listen -d", "+9000 -4500 +560 \n"},
      {"listen -e --raw", "+40000\n+9000 -4500 +560 \n"},
      {"listen -e -a", ":e:40\n0,9000, 4500, 560\n"},
      {"listen -e -c", "40 ms\n9000,4500,560\n"},
      {"listen -p", "NEC Repeat\n0000 006D 0002 0000 015A 00AD 0015 0602\n"},
  };
  for (const auto& [line, out] : cases) {
    set_elapsed_flag(0);
    begin(std::string("device version=4.6.0\nat 1000 signal 9000 4500 560") + kReturnsTooOld);
    const run_result result = run(line);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, std::string(out) + kEnd) << line;
    EXPECT_EQ(result.err,
              "[E] zv_ir_packet_poll(#): Wrong response length = -1\n"
              "[E] zv_ir_packet_poll(#): Device Closed, Watiing...\n");
  }
}

TEST_F(DeviceCommands, ListenGoesOnAfterTheDeviceWasAway) {
  // The rest of this signal never comes.
  begin("device\nat 1000 report 07" + repeated(" 01", 60) +
        "\nat 1100 unplug\nat 2000 plug refuses=2\nat 3000 signal 889 889\n"
        "at 3001 signal 9000 4500 560" +
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
  begin(std::string("device version=4.7.0\nat 1000 signal 9000 4500 560") + kReturnsTooOld);
  const run_result live = run("decode --listen");
  EXPECT_NE(session.dev, nullptr) << "the stop hook closes what came back";
  EXPECT_EQ(commands(), "getversion usb_if getversion");
  EXPECT_EQ(live.status, 1);
  EXPECT_TRUE(live.out.starts_with("RAW:    +9000 -4500 +560 \nPRONTO: ")) << live.out;
  EXPECT_TRUE(live.out.ends_with(std::string("++++\n\n") + kEnd)) << live.out;
}

TEST_F(DeviceCommands, SendsPatterns) {
  const std::string sending = "Transmitting IR Pattern...\n";
  const std::string killing = "Killing IR transmitter....\n";
  const std::string once = " irtranset irtransraw";
  const auto expect_sent = [&](const char* options, const std::string& out,
                               const std::string& commands, const std::string& header) {
    expect_run("device", std::string("sendir ") + options, {0, out + "Done!\n", ""}, commands);
    EXPECT_EQ(last_header(), header) << options;
  };
  // Options, output, commands, and of the last " irtranset" the count, ik and repeat.
  expect_sent("--raw=+9000,-4500,+560", sending + "+9000 -4500 +560 \n-50\n", once,
              "04 00 32 00 01");
  expect_sent("--ik=23000 --repeat=10 --raw=-9000,,4500", sending + "+9000 -4500 \n-23000\n", once,
              "03 00 d8 59 0a");
  expect_sent("--ik=10 --repeat=0 --raw=65535", sending + "+65535 \n-10\n", once, "02 00 0a 00 00");
  expect_sent("--ik=1000 --csv=9000,4500,560", sending, once, "03 00 e8 03 01");
  expect_sent("--ik=15000 --raw=1 --csv=9000,4500,560", sending + "+1 \n-15000\n", once,
              "02 00 98 3a 01");
  expect_sent("-k", killing, "*2 irtranskil", "");
  expect_sent("-k --ik=65000 --raw=7", killing + "Done!\n" + sending + "+7 \n-65000\n",
              " irtranskil" + once, "02 00 e8 fd 01");
  // A once sequence of one pair, its gap 0x2710 * 26 us = 260 ms, which is too long to hand on.
  expect_sent("--pronto=0000,006D,0001,0000,0156,2710 --repeat=1",
              sending + "+8892 \n-65535\n+8892 \n-65535\n", once + once, "02 00 ff ff 01");
  expect_sent("--pronto=0100,006D,0001,0001,0156,0400,0010,0500 --repeat=2",
              sending + "+8892 \n-26000\n+416 \n-33000\n+416 \n-33000\n", once + once + once,
              "02 00 e8 80 01");
  expect_sent("--pronto=0000,006D,0000,0001,0010,0500", sending + "+416 \n-33000\n", once,
              "02 00 e8 80 01");
  expect_sent("--pronto=0000,006D,0000,0000", sending, "", "");
  expect_sent("--pronto=0000,0003,0000,0001,0010,0500", sending + "+16 \n-1000\n", once,
              "02 00 e8 03 01");
  expect_sent("--pronto=5000,10000", sending, "", "");
  expect_sent("--pronto=5000,006D,0001,0000,0156,2710", sending, "", "");
  for (const char* line : {"sendir --csv=0,4472,4472,572", "sendir --raw=+4472,-4472,+572"}) {
    begin("device");
    run(line);
    EXPECT_EQ(fake_usb::writes().back().substr(39, 23), "00 00 78 11 78 11 3c 02");
  }
}

TEST_F(DeviceCommands, WaitsOutTheGapBetweenProntoFrames) {
  begin("device version=4.7.0");
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
  const std::string sendir = "[E] sendir(#): ";
  const std::pair<const char*, std::string> cases[] = {
      {"--ik --raw=1", ik},
      {"--ik= --raw=1", ik},
      {"--ik=9 --raw=1", ik},
      {"--ik=1001 --raw=1", ik},
      {"--ik=14999 --raw=1", ik},
      {"--ik=65001 --raw=1", ik},
      {"--repeat --raw=1", sendir + "must specify a repeat count\n"},
      {"--repeat=11 --raw=1", sendir + "must specify a repeat <= 10\n"},
      {"--repeat=-1 --raw=1", sendir + "must specify a repeat <= 10\n"},
      {"--raw", pattern},
      {"--csv", pattern},
      {"--pronto=", pattern},
      {"--raw=+65536", range("65536")},
      {"--raw=-9223372036854775808", range("65536")},
      {"--csv=1,-2,3", range("-2")},
      {"--csv=1,2,65536", range("65536")},
      {"--csv=4472,4472,572,1664", sendir + "Error: invalid length, must be odd\n"},
      {"--csv=0,4472,4472", sendir + "Error: invalid length, must be even\n"},
      {"--csv=0,100", sendir + "Error: buffer can't be less than 4\n"},
      {"--csv=100", sendir + "Error: buffer can't be less than 4\n"},
      {"--csv=,", sendir + "Error: buffer can't be less than 4\n"},
      {"--pronto=0000,006D,0001,0000,FFFF,0001", range("1703910")},
      {"--pronto=0000,006D,0001,0000,1FFFF,0001",
       "[E] decode_pronto(#): Error: Pronto Hex is invalid, word out of range\n"},
      {"--pronto=0000,0002,0001,0000,0156,0001",
       "[E] zarvo_send_pronto(#): Error: Pronto Hex is invalid, carrier period is 0: 0002\n"},
  };
  for (const auto& [options, err] : cases) {
    expect_run("device", std::string("sendir ") + options, {1, "", err});
  }
  expect_run("device", "sendir", {1, "Error: must specify an option\n", ""});
  expect_run(
      "device", R"(sendir --raw=\ \ )",
      {1, "Transmitting IR Pattern...\n", "[E] decode_raw(#): invalid line buffer, len = 2\n"});
  for (const char* words : {"0000", "0000,006D,0001,0000", "0000,006D,0002,0000,0156,2710"}) {
    expect_run("device", std::string("sendir --pronto=") + words,
               {0, "Transmitting IR Pattern...\nDone!\n",
                "[E] zarvo_send_pronto(#): Pronto Hex is invalid, invalid size\n"});
  }
}

// A piece that is no number must not take its neighbour's place in what is sent.
TEST_F(DeviceCommands, RefuseWhatIsNoNumber) {
  const std::pair<const char*, const char*> forms[] = {
      {"--raw=+9000 %s +560", "decode_raw"},
      {"--csv=9000,%s,560", "sendir"},
      {"--pronto=0000 006D 0001 0000 0156 %s", "decode_pronto"},
  };
  const char* const pieces[] = {"\t", "\n", "x", "+9000-4500", "4500us", "+", "--5", "12\t", "0x"};
  for (const auto& [form, function] : forms) {
    for (const char* piece : pieces) {
      std::string option = form;
      option.replace(option.find("%s"), 2, piece);
      SCOPED_TRACE(option);
      begin("device");
      const printed text = capture([&] {
        const char* argv[] = {option.c_str()};
        EXPECT_EQ(run_cmd("sendir", 1, argv, &session), 1);
      });
      EXPECT_EQ(text.out, "");
      EXPECT_TRUE(text.err.ends_with("[E] " + std::string(function) +
                                     "(#): Error: not a number: " + piece + "\n"))
          << text.err;
      EXPECT_EQ(commands(), "getversion");
    }
  }
}

TEST_F(DeviceCommands, SendAsManyEntriesAsTheDeviceCounts) {
  const auto list = [](const char* option, int count) {
    return std::string("sendir ") + option + "1" + repeated(",1", count - 1);
  };
  for (const std::string& line : {list("--raw=", 32766), list("--csv=", 32767)}) {
    begin("device");
    EXPECT_EQ(run(line).status, 0);
    EXPECT_EQ(commands(), "getversion irtranset irtransraw*1261");
  }
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
  const auto survive = [&](const char* fault, const char* options, const char* last_message,
                           const std::string& sent) {
    SCOPED_TRACE(fault);
    begin(std::string("device\non ") + fault);
    const run_result result = run(std::string("sendir ") + options);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("Transmitting IR Pattern...\n"));
    EXPECT_TRUE(result.out.ends_with("Done!\n"));
    EXPECT_TRUE(result.err.ends_with(last_message)) << result.err;
    EXPECT_EQ(commands(), "getversion irtranset" + sent);
  };
  survive("irtranset status 1", "--raw=1,2,3", "[E] sendir(#): Error sending pattern\n", "");
  survive("irtransraw unplug", "--csv=1,2,3", "[E] sendir(#): Error: could not transmit data\n",
          " irtransraw");
  survive("irtranset noreply", "--csv=1,2,3", "Error: could not transmit data\n", "");
  // The frames behind the one that failed are tried all the same.
  survive("irtransraw 1 unplug", "--pronto=0000,006D,0001,0000,0156,2710",
          "hidapi: No such device\n", " irtransraw irtranset");
}

TEST(Transmit, KnowsTheCarrier) {
  const std::pair<int, int> cases[] = {{0x006D, 38}, {0x0073, 36}, {0x0048, 58},
                                       {0, 0},       {-1, 0},      {0x10000, 0}};
  for (const auto& [word, khz] : cases) EXPECT_EQ(toFrequencyKHz(word), khz);
}

}  // namespace
