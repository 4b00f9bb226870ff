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
  const struct {
    words arguments;
    std::string scene = "device";
    std::string input = {};
  } cases[] = {
      {{"version", "--pretty", "-b"}},
      {{"help"}},
      {{"help", "decode"}},
      {{}},
      {{"decode", "--elapsed", "--time=" + nec()}},
      {{"decode", "--raw=+9000 -4500 +560"}},
      {{"decode", "--pronto=0000 006D 0002 0000 0156 00AB 0016 0689"}},
      {{"decode", "--read=" + patterns}},
      {{"decode", "--listen"}, kListening},
      {{"listen", "--pronto"}, kListening},
      {{"script", script}},
      {{"script", "-"}, "device", "version\nhelp nothing\n"},
      {{"shell"}, "device", "version -p\nnothing\n"},
      {{"sendir", "--raw=+9000 -4500 +560", "--repeat=2", "sendir", "--kill"}},
      {{"sendir", "--csv=9000,4500,560"}},
      {{"sendir", "--pronto=0000 006D 0002 0002 0156 00AB 0016 0689 0156 0055 0016 0E3C"}},
  };
  for (const auto& c : cases)
    expect_failed_allocations_reported(with(c.arguments, c.scene), c.input);
}

TEST_F(Faults, OutputThatGoesNowhereEndsTheProgram) {
  std::string endless;
  for (int i = 0; i < 20000; i++) endless += "9000,2250,560\n";
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
