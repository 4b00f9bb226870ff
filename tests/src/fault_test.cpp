// SPDX-License-Identifier: GPL-3.0-or-later
// The program on a machine that fails it: without memory, without room for its output, without
// anybody who reads it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

#include "tests/support/capture.h"
#include "tests/support/process.h"

namespace {

using words = std::vector<std::string>;

constexpr const char* kNec =
    "9000,4500,560,560,560,560,560,1690,560,560,560,1690,560,560,560,560,560,560,560,560,560,1690,"
    "560,560,560,560,560,1690,560,1690,560,560,560,1690,560,560,560,1690,560,560,560,1690,560,1690,"
    "560,1690,560,560,560,1690,560,560,560,1690,560,560,560,560,560,560,560,1690,560,560,560,1690,"
    "560";
// A signal, a device that comes back and Ctrl-C at the end.
constexpr const char* kListening =
    "device\nat 1000 signal 9000 4500 560\nat 2000 unplug\nat 3000 plug\n"
    "at 4000 signal 9000 2250 560\nat 5000 sigint";
// The same without an end of its own.
constexpr const char* kHearing = "device\nflood 200";

class Faults : public testing::Test {
 protected:
  Faults() {
    std::ofstream(patterns_) << kNec << "\n# and\n9000,2250,560\n";
    std::ofstream(script_) << "version\nhelp version\ndecode --time=9000,2250,560\n";
  }
  ~Faults() override {
    std::remove(patterns_.c_str());
    std::remove(script_.c_str());
  }

  static process_options with(words arguments, const std::string& scene) {
    arguments.insert(arguments.begin(), "vantrel");
    return {.argv = std::move(arguments), .file = FAULTY_PROGRAM, .env = {"FAKE_USB=" + scene}};
  }

  const std::string patterns_ = testing::TempDir() + "vantrel_patterns" + std::to_string(getpid());
  const std::string script_ = testing::TempDir() + "vantrel_script" + std::to_string(getpid());
};

TEST_F(Faults, EveryFailedAllocationIsReported) {
  const struct {
    words arguments;
    std::string scene = "device";
    std::string input = {};
  } cases[] = {
      {{"version", "--pretty", "-b"}},
      {{"help"}},
      {{"help", "decode"}},
      {{}},
      {{"decode", "--elapsed", std::string("--time=") + kNec}},
      {{"decode", "--raw=+9000 -4500 +560"}},
      {{"decode", "--pronto=0000 006D 0002 0000 0156 00AB 0016 0689"}},
      {{"decode", "--read=" + patterns_}},
      {{"decode", "--listen"}, kListening},
      {{"listen", "--pronto"}, kListening},
      {{"script", script_}},
      {{"script", "-"}, "device", "version\nhelp nothing\n"},
      {{"shell"}, "device", "version -p\nnothing\n"},
      {{"sendir", "--raw=+9000 -4500 +560", "--repeat=2", "sendir", "--kill"}},
      {{"sendir", "--csv=9000,4500,560"}},
      {{"sendir", "--pronto=0000 006D 0002 0002 0156 00AB 0016 0689 0156 0055 0016 0E3C"}},
  };
  // A missing device, or a file that cannot be read by `decode`, is a message and no failure.
  const words no_failures = {"can't allocate memory\n",
                             "could not open script file: ", "could not allocate line buffer: "};
  constexpr int kMostAllocations = 300;
  for (const auto& c : cases) {
    process_options options = with(c.arguments, c.scene);
    const process_result good = run_process(options, c.input);
    options.env.emplace_back();
    int number = 0;
    for (; number < kMostAllocations; number++) {
      options.env.back() = "FAIL_ALLOCATION=" + std::to_string(number);
      SCOPED_TRACE(testing::PrintToString(c.arguments) + " " + options.env.back());
      const process_result result = run_process(options, c.input);
      if (result.err == good.err) {  // not so many allocations
        EXPECT_EQ(result.out, good.out);
        EXPECT_EQ(result.status, good.status);
        break;
      }
      const bool may_succeed =
          c.arguments == words{"shell"} || c.arguments.empty() ||
          std::any_of(no_failures.begin(), no_failures.end(), [&](const std::string& message) {
            return result.err.find(message) != std::string::npos;
          });
      EXPECT_EQ(result.status, may_succeed && result.status == 0 ? 0 : 1) << result.err;
      EXPECT_EQ(result.err.find("Sanitizer"), std::string::npos) << result.err;
      if (HasFailure()) return;
    }
    EXPECT_GT(number, 0);
    EXPECT_LT(number, kMostAllocations);
  }
}

TEST_F(Faults, OutputThatGoesNowhereEndsTheProgram) {
  std::string endless;
  for (int i = 0; i < 20000; i++) endless += "9000,2250,560\n";
  const struct {
    words arguments;
    std::string scene = {};
    std::string input = {};
    std::string before = {};  // what it says first
  } cases[] = {
      {{"version"}},
      {{}},
      {{"version", "help", "nothing"}},
      {{"decode", "--time=9000,2250,560"}},
      {{"decode", "--read=/dev/stdin"}, {}, endless},
      {{"script", "-"},
       {},
       "help\nhelp\n",
       "[E] script_handler(#): script: an error occured with line #1\n"},
      {{"shell"}, {}, "help\nhelp\n"},
      {{"listen"}, kHearing},
      {{"decode", "--listen"}, kHearing},
      {{"listen"}, "device\nat 1000 unplug"},
      {{"sendir", "--pronto=0000 006D 0001 0000 0156 2710"}, "device"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.arguments));
    const auto expect_end = [&](const process_result& result, const std::string& cause) {
      // What the line editor could not print shows as a broken stream only.
      const std::string shown = c.arguments == words{"shell"} ? "Input/output error" : cause;
      const std::string message = "[E] close_stdout(#): could not write to standard output: ";
      const std::string err = without_line_numbers(result.err);
      EXPECT_TRUE(err.ends_with(c.before + message + shown + "\n") ||
                  err.ends_with(c.before + message + cause + "\n"))
          << err;
      EXPECT_EQ(result.status, 1);
    };
    process_options options = with(c.arguments, c.scene);
    options.stdout_file = "/dev/full";
    expect_end(run_process(options, c.input), "No space left on device");
    options.stdout_file.clear();
    process unread(options);
    unread.close_output();
    unread.send(c.input);
    expect_end(unread.finish(), "Broken pipe");
    options.closed = {STDOUT_FILENO};
    expect_end(run_process(options, c.input), "Bad file descriptor");
  }
  process_options closed = with({"version"}, "");
  closed.closed = {0, 1, 2};
  EXPECT_EQ(run_process(closed).status, 1);
}

}  // namespace
