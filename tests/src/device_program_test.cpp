// SPDX-License-Identifier: GPL-3.0-or-later
// The program as its user sees it, with a simulated device in place of the libraries.
#include <csignal>

#include "tests/support/program_test.h"

namespace {

class DeviceProgram : public DeviceProgramTest {
 protected:
  DeviceProgram() : DeviceProgramTest(VANTREL_PROGRAM, FAKE_LIBRARY_DIR) {}
};

TEST_F(DeviceProgram, ShowsTheFirmwareAndClosesTheDevice) {
  const process_result result = run("device version=4.8.2", {"version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.substr(result.out.find('\n')),
            "\n FW Version: v4.8.2\n    Git Hash: 0x00ABCDEF\n    Config:   test\n");
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(closed_the_device());
}

TEST_F(DeviceProgram, ShowsItsVersionWithoutADevice) {
  const std::pair<const char*, bool> cases[] = {{"", true},
                                                {"device refuses=1", true},
                                                {"device\non getversion noreply", false},
                                                {"device\non usb_if status 1", false}};
  for (const auto& [script, silent] : cases) {
    const process_result result = run(script, {"version"});
    EXPECT_EQ(result.status, 0) << script;
    EXPECT_EQ(result.err.empty(), silent) << result.err;
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1) << result.out;
  }
}

TEST_F(DeviceProgram, RunsASessionOnOneOpenDevice) {
  const process_result result =
      run("device", {"script", "-"}, "sendir --csv=9000,4500,560\n# and\nsendir --kill\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "Transmitting IR Pattern...\nDone!\nKilling IR transmitter....\nDone!\n");
  EXPECT_EQ(count("open /dev/fake0"), 1);
  EXPECT_TRUE(closed_the_device());
}

TEST_F(DeviceProgram, LeavesTheDeviceOpenWhenACommandFails) {
  const process_result result = run("device", {"sendir", "--raw="});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.err.ends_with("[E] sendir(#): must specify a pattern\n")) << result.err;
  EXPECT_FALSE(closed_the_device());
}

TEST_F(DeviceProgram, EndsOnAnInterruptInEveryWait) {
  const std::string half_a_signal = "at 1000 report 07 00 00 00 00" + repeated(" 01", 60);
  expect_interrupted("for a signal", "at 1000 signal 9000 4500 560\nat 2000", {"listen"},
                     "+9000 -4500 +560 \n");
  expect_interrupted("in the middle of a signal", half_a_signal + "\nat 1000", {"listen"}, "");
  expect_interrupted("for the device", "at 1000 unplug\nat 2000", {"listen"},
                     "error, disconnecting\n", false);
  expect_interrupted("for the device's return, and after it",
                     "at 1000 unplug\nat 2000 plug\nat 6000", {"decode", "--listen"},
                     "error, disconnecting\nZarvo tessarin found version: 4.8.0 0xABCDEF [test]\n");
  expect_interrupted("for a reply", "on getversion noreply\nat 3000", {"sendir", "-k"}, "");
  expect_interrupted("for the end of a gap", "at 800",
                     {"sendir", "--pronto=0000 006D 0001 0000 0156 2710"},
                     "Transmitting IR Pattern...\n+8892 \n-65535\n");
  expect_interrupted("for quiet at the open", "at 150", {"listen"}, "");
  expect_interrupted("for quiet after a transmission", "at 450", {"sendir", "--raw=1"},
                     "Transmitting IR Pattern...\n+1 \n-50\n");
}

TEST_F(DeviceProgram, AnInterruptOfTheShellLeavesTheTerminalAsItWas) {
  process_options shell = options("device", {"shell"});
  shell.terminal = true;
  shell.env.emplace_back("TERM=xterm");
  process program(shell);
  ASSERT_TRUE(program.wait_for("vantrel $ "));
  EXPECT_FALSE(program.terminal_echoes());
  program.signal(SIGINT);
  ASSERT_TRUE(program.wait_for("Cleaning up....\r\n"));
  EXPECT_TRUE(program.terminal_echoes());
  EXPECT_EQ(program.finish().status, 1);
  EXPECT_TRUE(closed_the_device());
}

TEST_F(DeviceProgram, PrintsEverySignalAtOnceIntoAPipe) {
  process program(options("device\nat 1000 signal 9000 4500 560\nat 2000 hang", {"listen", "-c"}));
  EXPECT_TRUE(program.wait_for("9000,4500,560\n"));
  program.signal(SIGINT);
  const process_result result = program.finish();
  EXPECT_EQ(result.out, "9000,4500,560\n\nCleaning up....\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(closed_the_device());
}

}  // namespace
