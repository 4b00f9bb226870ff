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
