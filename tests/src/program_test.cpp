// SPDX-License-Identifier: GPL-3.0-or-later
// The program itself: how it is started, what it prints where, and how it ends.
#include "tests/support/program_test.h"

#include <string>

#include "version_info.h"

namespace {

const std::string kVersionLine = std::string(kVersionText) + "\n";
const std::string kNotFound = "[E] lib/libcmds/cmds run_cmd(#): could not find command '";

class Program : public ProgramTest {
 protected:
  static process_options with(words arguments) { return ::with(VANTREL_PROGRAM, arguments); }

  static void expect(words arguments, const process_result& expected,
                     const std::string& input = {}) {
    expect_run(with(std::move(arguments)), expected, input);
  }
};

TEST_F(Program, RunsTheCommandsOfItsArguments) {
  const std::string help_version =
      "Help for `version' command:\n"
      "usage: version\n"
      "OPTIONS:\n"
      "  -p, --pretty         print version with context\n"
      "  -d, --date           print build date\n"
      "  -b, --branch         show the SCM branch\n";
  const std::string dated =
      std::string("Build Date: ") + kBuildDate + "\nVersion:    " + kVersionText;
  expect({"version"}, {kVersionLine, "", 0});
  expect({"version", "--pretty", "help", "version"},
         {"Version: " + kVersionLine + help_version, "", 0});
  expect({"version", "-dp", "version", "--branch", "--date"},
         {dated + "\n" + dated + " (" + kScmBranch + ")\n", "", 0});
  expect({"version", "-b", "nothing"},
         {std::string(kVersionText) + " (" + kScmBranch + ")\n",
          "[E] lib/libcmds/cmds run_cmds(#): could not find command 'nothing'\n", 1});
  expect({""}, {"", "[E] lib/libcmds/cmds run_cmds(#): could not find command ''\n", 1});
}

TEST_F(Program, IsTheCommandThatItsNameSays) {
  const auto started_as = [](const char* name, words arguments = {}) {
    return ::with(VANTREL_PROGRAM, std::move(arguments), name);
  };
  expect_run(started_as("/anywhere/version", {"--pretty", "nothing"}),
             {"Version: " + kVersionLine, "", 0});
  expect_run(started_as("version/", {}), {kVersionLine, "", 0});
  expect_run(started_as("help", {"nothing"}),
             {"", "[E] lib/libcmds/cmds help(#): help: command `nothing' not found.\n", 1});
  expect_run(started_as("Vantrel", {"version"}), {"", kNotFound + "Vantrel'\n", 1});
  expect_run(started_as(""), {"", kNotFound + ".'\n", 1});
}

TEST_F(Program, ABareStartShowsVersionAndCommands) {
  const process_result list = run_process(with({"help"}));
  EXPECT_EQ(list.out.substr(0, 10), "Commands:\n");
  expect({}, {"Version: " + kVersionLine + list.out, "", 0});
  expect_run({.argv = {"./dir/vantrel"}, .file = VANTREL_PROGRAM},
             {"Version: " + kVersionLine + list.out, "", 0});
}

TEST_F(Program, DebugChoosesTheMessages) {
  const std::string warning =
      "[W] lib/libcmds/cmds handle_shortopt(#): `version' doesn not take '-z' option\n";
  process_options options = with({"version", "-z"});
  expect_run(options, {kVersionLine, "", 0});
  for (const char* setting : {"DEBUG=", "DEBUG=1", "DEBUG=TRUE"}) {
    options.env = {setting};
    expect_run(options, {kVersionLine, warning, 0});
  }
  options.env = {"DEBUG=true"};
  const std::string everything = without_line_numbers(run_process(options).err);
  EXPECT_EQ(everything.substr(0, 4), "[I] ");  // the search for the device
  EXPECT_NE(everything.find("\n" + warning), std::string::npos) << everything;
}

TEST_F(Program, ScriptsRunLineByLine) {
  const std::string script_failed = "[E] script_handler(#): script: an error occured with line #";
  expect({"script"}, {"", "[E] script_handler(#): script: no file specified\n", 1});
  expect({"script", folder_ / "missing"},
         {"", "could not open script file: No such file or directory\n", 1});
  expect({"script", folder_, "version"}, {kVersionLine, "", 0});  // a folder reads as empty
  expect({"script", file("comments", "# version\n\n#\r\n\r\n"), "version"}, {kVersionLine, "", 0});
  expect({"script", file("third", "version\nversion -p\n nothing\nversion\n"), "version"},
         {kVersionLine + "Version: " + kVersionLine,
          kNotFound + "nothing'\n" + script_failed + "3\n", 1});
  expect({"script", file("blank", "\n #\n")}, {"", kNotFound + "#'\n" + script_failed + "2\n", 1});
  expect({"script", "-", "version"}, {kVersionLine + kVersionLine, "", 0}, "version");
  expect({"script", "-"}, {"", "", 0});
  expect({"script", "-"}, {kVersionLine, "", 0}, "script -\n\rversion\n");
}

TEST_F(Program, ScriptsSurviveAnyBytes) {
  const std::string line_1 = "[E] script_handler(#): script: an error occured with line #1\n";
  const std::string cut =
      "[E] script_handler(#): script: line #1 is longer than 1023 characters, the rest is a new "
      "line\n";
  expect({"script", "-"}, {"", cut + kNotFound + std::string(1023, 'x') + "'\n" + line_1, 1},
         std::string(10'000'000, 'x'));
  expect({"script", "-"}, {kVersionLine, "", 0}, std::string("version\0 -p\n", 12));
  expect({"script", "-"},
         {"", "[E] lib/libcmds/cmds run_cmd_line(#): command line empty\n" + line_1, 1},
         std::string("\0version\n", 9));
  expect({"script", "-"}, {kVersionLine + kVersionLine, "", 0},
         "\xEF\xBB\xBFversion\n#" + std::string(1022, 'x') + "\nversion\n");
  // A script that runs itself ends.
  const std::string self = file("self", "");
  file("self", "script " + self + "\n");
  const process_result result = run_process(with({"script", self}));
  EXPECT_EQ(without_line_numbers(result.err).substr(0, 73),
            "[E] lib/libcmds/cmds run_cmd_line(#): command lines nested too deeply\n[E]");
  EXPECT_EQ(result.status, 1);
}

TEST_F(Program, TheShellGoesOnAfterFailures) {
  expect({"shell", "version"},
         {"vantrel $ version\n" + kVersionLine +
              "vantrel $ nothing\nvantrel $ \nvantrel $  \nvantrel $ \n" + kVersionLine,
          kNotFound + "nothing'\n"
                      "[E] lib/libcmds/cmds run_cmd_line(#): command line empty\n",
          0},
         "version\nnothing\n\n \n");
}

}  // namespace
