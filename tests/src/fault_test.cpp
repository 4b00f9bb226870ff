// SPDX-License-Identifier: GPL-3.0-or-later
// The program on a machine that fails it: without memory, without room for its output, without
// anybody who reads it.
#include "tests/support/program_faults.h"

namespace {

// A signal, a device that comes back and Ctrl-C at the end.
constexpr const char* kListening =
    "device\nat 1000 signal 9000 4500 560\nat 2000 unplug\nat 3000 plug\n"
    "at 4000 signal 9000 2250 560\nat 5000 sigint";
// The same without an end of its own.
constexpr const char* kHearing = "device\nflood 200";

class Faults : public ProgramTest {
 protected:
  static process_options with(words arguments, const std::string& scene) {
    process_options result = ::with(FAULTY_PROGRAM, std::move(arguments));
    result.env = {"FAKE_USB=" + scene};
    return result;
  }
};

/// A frame of 32 bits.
std::string nec() {
  std::string text = "9000,4500,560";
  for (const char bit : std::string("00101000010110101010001001011101")) {
    text += bit == '1' ? ",1690,560" : ",560,560";
  }
  return text;
}

TEST_F(Faults, EveryFailedAllocationIsReported) {
  const std::string patterns = file("patterns", nec() + "\n# and\n9000,2250,560\n");
  const std::string script = file("script", "version\nhelp version\ndecode --time=9000,2250,560\n");
  const auto reported = [](const words& arguments, const std::string& scene = "device",
                           const std::string& input = {}) {
    expect_failed_allocations_reported(with(arguments, scene), input);
  };
  reported({"version", "--pretty", "-b"});
  reported({"help"});
  reported({"help", "decode"});
  reported({});
  reported({"decode", "--elapsed", "--time=" + nec()});
  reported({"decode", "--raw=+9000 -4500 +560"});
  reported({"decode", "--pronto=0000 006D 0002 0000 0156 00AB 0016 0689"});
  reported({"decode", "--read=" + patterns});
  reported({"decode", "--listen"}, kListening);
  reported({"listen", "--pronto"}, kListening);
  reported({"script", script});
  reported({"script", "-"}, "device", "version\nhelp nothing\n");
  reported({"shell"}, "device", "version -p\nnothing\n");
  reported({"sendir", "--raw=+9000 -4500 +560", "--repeat=2", "sendir", "--kill"});
  reported({"sendir", "--csv=9000,4500,560"});
  reported({"sendir", "--pronto=0000 006D 0002 0002 0156 00AB 0016 0689 0156 0055 0016 0E3C"});
}

TEST_F(Faults, OutputThatGoesNowhereEndsTheProgram) {
  const std::string endless = repeated("9000,2250,560\n", 20000);
  const auto expect_ends = [](const words& arguments, const std::string& scene = {},
                              const std::string& input = {}, const std::string& before = {}) {
    expect_lost_output_reported(with(arguments, scene), input, before);
  };
  expect_ends({"version"});
  expect_ends({});
  expect_ends({"version", "help", "nothing"});
  expect_ends({"decode", "--time=9000,2250,560"});
  expect_ends({"decode", "--read=/dev/stdin"}, {}, endless);
  expect_ends({"script", "-"}, {}, "help\nhelp\n",
              "[E] script_handler(#): script: an error occured with line #1\n");
  expect_ends({"shell"}, {}, "help\nhelp\n");
  expect_ends({"listen"}, kHearing);
  expect_ends({"decode", "--listen"}, kHearing);
  expect_ends({"listen"}, "device\nat 1000 unplug");
  expect_ends({"sendir", "--pronto=0000 006D 0001 0000 0156 2710"}, "device");
  process_options closed = with({"version"}, "");
  closed.closed = {0, 1, 2};
  EXPECT_EQ(run_process(closed).status, 1);
}

}  // namespace
