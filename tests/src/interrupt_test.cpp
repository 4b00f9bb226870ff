// SPDX-License-Identifier: GPL-3.0-or-later
// Ctrl-C in every state of the program, once and again while it ends: the text, a closed device,
// status 1, and soon. The simulated device plays most of it on virtual time.
#include <sys/stat.h>

#include <csignal>

#include "tests/support/program_test.h"

namespace {

constexpr const char* kText = "\nCleaning up....\n";

class Interrupt : public DeviceProgramTest {
 protected:
  Interrupt() : DeviceProgramTest(VANTREL_PROGRAM, FAKE_LIBRARY_DIR) {}

  /// Plays a scene that ends with Ctrl-C; the run has printed `out` then. `again` is what adds one
  /// more while the program ends.
  void expect_ends(const char* where, std::string scene, const words& arguments,
                   const std::string& out, std::string_view input = {},
                   const std::string& again = "\nsigint close") {
    constexpr int kMostTimes = 3;
    for (int times = 1; times <= kMostTimes; times++, scene += again) {
      SCOPED_TRACE(where + std::string(" ") + std::to_string(times));
      const process_result result = run(scene, arguments, input);
      EXPECT_EQ(result.status, 1) << result.err;
      EXPECT_EQ(result.out, out + kText);
      EXPECT_EQ(count("open /dev/fake0"), count("close"));
      for (const char* message : {"timeout", "hidapi", "recv packet", "Interrupted"}) {
        EXPECT_EQ(result.err.find(message), std::string::npos) << result.err;
      }
    }
  }

  /// The same with a device and Ctrl-C at a time in ms, and how long the end may take.
  void expect_ends_at(const char* where, int ms, const std::string& scene, const words& arguments,
                      const std::string& out, std::string_view input = {}) {
    constexpr int kDrainsMs = 300;
    constexpr int kMostMs = 150;
    const auto at = [](int time) { return "\nat " + std::to_string(time); };
    const std::string deadline = at(ms + kDrainsMs + kMostMs) + " deadline";
    expect_ends(where, "device\n" + scene + at(ms) + " sigint" + deadline, arguments, out, input,
                at(ms + kDrainsMs / 2) + " sigint");
  }
};

const std::string kDisconnecting = "error, disconnecting\n";
const std::string kReturned = "Zarvo tessarin found version: 4.8.0 0xABCDEF [test]\n";
const std::string kSending = "Transmitting IR Pattern...\n";

TEST_F(Interrupt, BeforeTheCommands) {
  expect_ends("before the first hook does anything", "device\nsigint init", {"version"}, "");
  expect_ends("in the search for an absent device", "sigint enumerate", {"version"}, "");
  expect_ends("in the open", "device\nsigint open", {"version"}, "");
  expect_ends("in an open that is refused", "device refuses=1\nsigint open", {"help"}, "");
  expect_ends_at("in the drain of the open", 150, "", {"version"}, "");
  expect_ends("in the first write", "device\nsigint write", {"version"}, "");
  expect_ends_at("in a write that is stuck", 1000, "on usb_if stuck", {"version"}, "");
  expect_ends_at("in the wait for the first reply", 1000, "on usb_if noreply", {"version"}, "");
  expect_ends("with the first reply", "device\nsigint read 4", {"version"}, "");
}

TEST_F(Interrupt, InACommand) {
  const std::string half_a_signal = "at 1000 report 07 00 00 00 00" + repeated(" 01", 60);
  expect_ends_at("waiting for a signal", 2000, "at 1000 signal 9000 4500 560", {"listen"},
                 "+9000 -4500 +560 \n");
  expect_ends_at("in the middle of a signal", 1000, half_a_signal, {"listen"}, "");
  expect_ends_at("in a flood", 2000, "flood 1500", {"listen", "-c"}, "9000,4500,560\n");
  expect_ends_at("waiting for the device", 2000, "at 1000 unplug", {"listen"}, kDisconnecting);
  expect_ends("finding it again", "device\nat 1000 unplug\nat 2000 plug\nsigint open 2", {"listen"},
              kDisconnecting);
  expect_ends_at("draining it again", 2150, "at 1000 unplug\nat 2000 plug", {"listen"},
                 kDisconnecting);
  expect_ends_at("listening to it again", 6000, "at 1000 unplug\nat 2000 plug",
                 {"decode", "--listen"}, kDisconnecting + kReturned);
  expect_ends_at("waiting for a reply", 3000, "on getversion noreply", {"sendir", "-k"}, "");
  expect_ends_at("in a write that is stuck", 3000, "on irtransraw stuck", {"sendir", "--raw=1"},
                 kSending + "+1 \n-50\n");
  expect_ends_at("draining after a transmission", 450, "", {"sendir", "--raw=1"},
                 kSending + "+1 \n-50\n");
  expect_ends_at("in the gap behind a frame", 800, "",
                 {"sendir", "--pronto=0000 006D 0001 0000 0156 2710"},
                 kSending + "+8892 \n-65535\n");
}

TEST_F(Interrupt, InANestedCommand) {
  const std::string inner = file("inner", "# a script\nlisten -c\nversion\n");
  const std::string outer = file("outer", "script " + inner + "\nversion\n");
  const std::string signal = "at 1000 signal 9000 4500 560";
  const std::string out = "9000,4500,560\n";
  expect_ends_at("a script", 2000, signal, {"script", inner, "version"}, out);
  expect_ends_at("a script of a script", 2000, signal, {"script", outer}, out);
  expect_ends_at("a script of a shell", 2000, signal, {"shell"},
                 "vantrel $ script " + inner + "\n" + out, "script " + inner + "\nversion\n");
}

TEST_F(Interrupt, AfterTheCommands) {
  const std::string version = run("", {"version"}).out;
  const std::string firmware = run("device", {"version"}).out;
  expect_ends_at("in the drain of the close", 450, "", {"version"}, firmware);
  expect_ends("in the close", "device\nsigint close", {"version"}, firmware);
  expect_ends("at the end of the last hook", "device\nsigint exit", {"version"}, firmware);
  expect_ends("after a command that failed", "device\nsigint write 2", {"sendir"}, "");
}

// The waits of the close last as long as ever, whatever comes.
TEST_F(Interrupt, DrainsTheDeviceAsEver) {
  run("device\nat 1000 sigint\nat 1050 sigint\nat 1150 sigint", {"listen"});
  EXPECT_TRUE(ended_with({"read 64 id 1 100 -> 0", "read 64 id 3 100 -> 0", "read 64 id 5 100 -> 0",
                          "close", "exit"}));
}

// From here on real pipes and terminals, and so real time.

TEST_F(Interrupt, OfCommandsFromAPipe) {
  for (const words& arguments : {words{"script", "-"}, words{"shell"}}) {
    SCOPED_TRACE(arguments.front());
    process waiting(options("device", arguments));
    waiting.send("help version\n");
    ASSERT_TRUE(waiting.wait_for("show the SCM branch\n"));
    for (int i = 0; i < 3; i++) waiting.signal(SIGINT);
    const process_result result = waiting.finish();
    EXPECT_TRUE(result.out.ends_with(kText)) << result.out;
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(closed_the_device());
  }
}

// Nothing here waits; a bad line tells how far the program is.
TEST_F(Interrupt, OfABigFile) {
  const std::string pattern = "9000,2250,560\n";
  const std::string patterns =
      file("patterns", pattern + "no pattern\n" + repeated(pattern, 1'000'000));
  process_options decode = options("device", {"decode", "--read=" + patterns});
  decode.stdout_file = folder_ / "out";
  process busy(decode);
  ASSERT_TRUE(busy.wait_for("not a single comma\n"));
  busy.signal(SIGINT);
  EXPECT_EQ(busy.finish().status, 1);
  std::ifstream out(decode.stdout_file);
  const std::string text{std::istreambuf_iterator<char>(out), {}};
  EXPECT_TRUE(text.ends_with(std::string("\n") + kText)) << "the last line is whole";
  EXPECT_TRUE(closed_the_device());
}

TEST_F(Interrupt, OfAFileWithoutAnEnd) {
  process skipping(options("device", {"decode", "--read=/dev/zero"}));
  ASSERT_TRUE(skipping.wait_for("longer than"));
  skipping.signal(SIGINT);
  EXPECT_EQ(skipping.finish().out, kText);
  EXPECT_TRUE(closed_the_device());
}

TEST_F(Interrupt, OfAFileThatNobodyWrites) {
  const std::string fifo = folder_ / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  process opening(options("device", {"version", "script", fifo}));
  ASSERT_TRUE(opening.wait_for("test\n"));
  opening.signal(SIGINT);
  EXPECT_EQ(opening.finish().status, 1);
}

// Nobody reads on: the text cannot be said, but the device is closed.
TEST_F(Interrupt, OfAProgramWithAFullPipe) {
  const std::string helps = repeated("help\n", 5000);
  const std::string script = file("helps", helps);
  const std::string patterns = file("patterns", repeated("9000,2250,560\n", 5000));
  const std::pair<words, std::string> cases[] = {{{"script", script}, ""},
                                                 {{"shell"}, helps},
                                                 {{"decode", "--read=" + patterns}, ""},
                                                 {{"script", "-"}, "script " + script + "\n#"}};
  for (const auto& [arguments, input] : cases) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    process stuck(options("device", arguments));
    stuck.send(input);
    stuck.wait_until_full();
    for (int i = 0; i < 3; i++) stuck.signal(SIGINT);
    const process_result result = stuck.finish(false);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(closed_the_device());
  }
}

TEST_F(Interrupt, OfTheShellLeavesTheTerminalAsItWas) {
  for (const int times : {1, 3}) {
    process_options shell = options("device", {"shell"});
    shell.terminal = true;
    shell.env.emplace_back("TERM=xterm");
    process program(shell);
    ASSERT_TRUE(program.wait_for("vantrel $ "));
    EXPECT_FALSE(program.terminal_echoes());
    for (int i = 0; i < times; i++) program.signal(SIGINT);
    ASSERT_TRUE(program.wait_for("Cleaning up....\r\n"));
    EXPECT_TRUE(program.terminal_echoes());
    EXPECT_EQ(program.finish().status, 1);
    EXPECT_TRUE(closed_the_device());
  }
}

}  // namespace
