// SPDX-License-Identifier: GPL-3.0-or-later
// The program as its user sees it, with a simulated device in place of the libraries.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "tests/support/capture.h"
#include "tests/support/process.h"

namespace {

/// One run on a simulated bus, and the library calls that it made.
class DeviceProgram : public testing::Test {
 protected:
  void TearDown() override { std::remove(trace_.c_str()); }

  process_options options(const std::string& script, std::vector<std::string> arguments) {
    std::remove(trace_.c_str());
    process_options result{.argv = {"vantrel"}, .file = VANTREL_PROGRAM};
    result.argv.insert(result.argv.end(), arguments.begin(), arguments.end());
    result.env = {std::string("LD_LIBRARY_PATH=") + FAKE_LIBRARY_DIR, "FAKE_USB=" + script,
                  "FAKE_USB_TRACE=" + trace_};
    return result;
  }

  process_result run(const std::string& script, std::vector<std::string> arguments,
                     std::string_view input = {}) {
    process_result result = run_process(options(script, std::move(arguments)), input);
    result.err = without_line_numbers(result.err);
    return result;
  }

  [[nodiscard]] std::vector<std::string> calls() const {
    std::vector<std::string> result;
    std::ifstream file(trace_);
    for (std::string line; std::getline(file, line);) result.push_back(line);
    return result;
  }

  [[nodiscard]] bool closed_the_device() const {
    const std::vector<std::string> all = calls();
    return all.size() > 2 && all[all.size() - 2] == "close" && all.back() == "exit";
  }

 private:
  std::string trace_ = testing::TempDir() + "vantrel_calls_" + std::to_string(getpid());
};

std::string repeated(const char* text, int count) {
  std::string result;
  for (int i = 0; i < count; i++) result += text;
  return result;
}

constexpr const char* kCleaningUp = "\nCleaning up....\n";

TEST_F(DeviceProgram, ShowsTheFirmwareAndClosesTheDevice) {
  const process_result result = run("device version=4.8.2", {"version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.substr(result.out.find('\n')),
            "\n FW Version: v4.8.2\n    Git Hash: 0x00ABCDEF\n    Config:   test\n");
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(closed_the_device());
}

TEST_F(DeviceProgram, RunsASessionOnOneOpenDevice) {
  const process_result result =
      run("device", {"script", "-"}, "sendir --csv=9000,4500,560\n# and\nsendir --kill\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "Transmitting IR Pattern...\nDone!\nKilling IR transmitter....\nDone!\n");
  const std::vector<std::string> all = calls();
  EXPECT_EQ(std::count(all.begin(), all.end(), "open /dev/fake0"), 1);
  EXPECT_TRUE(closed_the_device());
}

TEST_F(DeviceProgram, LeavesTheDeviceOpenWhenACommandFails) {
  const process_result result = run("device", {"sendir", "--raw="});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.err.ends_with("[E] sendir(#): must specify a pattern\n")) << result.err;
  EXPECT_FALSE(closed_the_device());
}

TEST_F(DeviceProgram, EndsOnAnInterruptInEveryWait) {
  const struct {
    const char* what;
    std::string script;
    std::vector<std::string> arguments;
    std::string out;
    bool closes;  // false where no device is open
  } cases[] = {
      {"for a signal",
       "device\nat 1000 signal 9000 4500 560\nat 2000 sigint",
       {"listen"},
       "+9000 -4500 +560 \n",
       true},
      {"in the middle of a signal",
       "device\nat 1000 report 07" + repeated(" 00", 4) + repeated(" 01", 60) + "\nat 1000 sigint",
       {"listen"},
       "",
       true},
      {"for the device",
       "device\nat 1000 unplug\nat 2000 sigint",
       {"listen"},
       "error, disconnecting\n",
       false},
      {"for the device's return, and after it",
       "device\nat 1000 unplug\nat 2000 plug\nat 6000 sigint",
       {"decode", "--listen"},
       "error, disconnecting\nZarvo tessarin found version: 4.8.0 0xABCDEF [test]\n",
       true},
      {"for a reply", "device\non getversion noreply\nat 3000 sigint", {"sendir", "-k"}, "", true},
      {"for the end of a gap",
       "device\nat 800 sigint",
       {"sendir", "--pronto=0000 006D 0001 0000 0156 2710"},
       "Transmitting IR Pattern...\n+8892 \n-65535\n",
       true},
      {"for quiet at the open", "device\nat 150 sigint", {"listen"}, "", true},
      {"for quiet after a transmission",
       "device\nat 450 sigint",
       {"sendir", "--raw=1"},
       "Transmitting IR Pattern...\n+1 \n-50\n",
       true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const process_result result = run(c.script, c.arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, c.out + kCleaningUp);
    const std::vector<std::string> all = calls();
    const auto opened = std::count(all.begin(), all.end(), "open /dev/fake0");
    const auto closed = std::count(all.begin(), all.end(), "close");
    EXPECT_EQ(opened, closed);
    EXPECT_EQ(closed_the_device(), c.closes);
  }
}

TEST_F(DeviceProgram, EndsOnAnInterruptOfTheShell) {
  process_options shell = options("device", {"shell"});
  shell.terminal = true;
  process program(shell);
  ASSERT_TRUE(program.wait_for("vantrel $ "));
  program.signal(SIGINT);
  const process_result result = program.finish();
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.out.find("Cleaning up...."), std::string::npos);
  EXPECT_TRUE(closed_the_device());
}

TEST_F(DeviceProgram, PrintsEverySignalAtOnceIntoAPipe) {
  process program(options("device\nat 1000 signal 9000 4500 560\nat 2000 hang", {"listen", "-c"}));
  EXPECT_TRUE(program.wait_for("9000,4500,560\n"));
  program.signal(SIGINT);
  const process_result result = program.finish();
  EXPECT_EQ(result.out, std::string("9000,4500,560\n") + kCleaningUp);
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(closed_the_device());
}

}  // namespace
