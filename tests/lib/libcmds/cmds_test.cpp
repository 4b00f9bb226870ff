// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/failing_alloc.h"
#include "tests/support/probe_commands.h"

namespace {

const std::string kErr = "[E] lib/libcmds/cmds ";
const std::string kWarn = "[W] lib/libcmds/cmds ";

TEST_F(Commands, RunOneAfterTheOtherOnTheWordsTheyTake) {
  expect_words({}, {0, ""});
  expect_words({"probe", "0"},
               {-38, "probe [0]\n", kErr + "run_cmds(#): could not find command '0'\n"});
  expect_words({"probe", "2", "x", "probe", "1"}, {0, "probe [2] [x] [probe] [1]\nprobe [1]\n"});
  expect_words({"probe", "-b", "probe", "-s", "1"},
               {0, "probe [probe] [-s] [1] both\nprobe [1] short\n"});
  expect_words({"probe", "2147483647", "probe"}, {0, "probe [2147483647] [probe]\n"});
}

TEST_F(Commands, AFailureStopsTheRest) {
  expect_words({"probe", "1", "Probe"}, {-38, "probe [1] [Probe]\n",
                                         kErr + "run_cmds(#): could not find command 'Probe'\n"});
  // The result is where the words of the failed command begin.
  expect_words({"probe", "fail", "probe"}, {1, "probe [fail] [probe]\n"});
  expect_words({"probe", "1", "probe", "--both", "fail"},
               {4, "probe [1] [probe] [--both] [fail]\nprobe [fail] both\n"});
}

TEST_F(Commands, OptionsStandBetweenCommandAndArguments) {
  const std::string no_long = kWarn + "handle_longopt(#): `probe' doesn not take '";
  const std::string no_short = kWarn + "handle_shortopt(#): `probe' doesn not take '";
  const std::string short_twice = no_short + "-z' option\n" + no_short + "--' option\n";
  expect_options({}, 0, "");
  expect_options({"word", "-b"}, 0, "");
  expect_options({"-bs", "--long=4", "x"}, 2, " both short long=4");
  expect_options({"--both=", "-s"}, 2, " both= short");
  expect_options({"--both=1", "-b", "--both=a=b"}, 3, " both=a=b");
  expect_options({"--both=1", "--both"}, 2, " both");
  expect_options({"-", "-b"}, 0, "");
  expect_options({"-s", "-"}, 1, " short");
  expect_options({"--", "-s"}, 2, " short", no_long + "--' option\n");
  expect_options({"--Both=3", "--bot"}, 2, "",
                 no_long + "--Both' option\n" + no_long + "--bot' option\n");
  expect_options({"--bare", "--short"}, 2, "",
                 no_long + "--bare' option\n" + no_long + "--short' option\n");
  expect_options({"-zs-"}, 1, " short", short_twice);
  // A command that takes none.
  expect_words({"help", "-x", "--long=1", "help"},
               {0, "",
                kWarn + "handle_shortopt(#): `help' doesn not take '-x' option\n" + kWarn +
                    "handle_longopt(#): `help' doesn not take '--long' option\n"});
}

TEST_F(Commands, LinesAreSplitIntoWords) {
  const std::string warning = kWarn + "tokenize_cmd_string(#): invalid escape character: ";
  const auto expect = [](const char* line, const std::string& call,
                         const std::string& messages = {}) {
    expect_line(line, {0, call + "\n", messages});
  };
  expect("probe a b", "probe [a] [b]");
  expect("\t probe \ta  b\t", "probe [a] [b]");
  expect(R"(probe --long=+100\ -200 a)", "probe [a] long=+100 -200");
  expect(R"(probe a\\b \\ \  c\)", R"(probe [a\b] [\] [ ] [c\])");
  expect("probe a\\\tb\\\\\\ c", "probe [a\tb\\ c]");
  expect(R"(probe \\\\ \\\ x)", R"(probe [\\] [\ x])");
  expect(R"(probe a\xb "c d")", R"(probe [a\xb] ["c] [d"])", warning + "x\n");
  expect(R"(probe \a\'\ )", R"(probe [\a\' ])", warning + "a\n" + warning + "'\n");
}

TEST_F(Commands, TheLastPossibleWordIsTheRestOfTheLine) {
  const std::string line = R"(probe a\ b)" + repeated(" c", 60);
  const std::string call = "probe [a b]" + repeated(" [c]", 60);
  expect_line(line + R"( \\  64 \x  65 )", {0, call + R"( [\\  64 \x  65 ])" + "\n"});
  expect_line(line + R"( x\ y)", {0, call + R"( [x\ y])" + "\n"});
}

TEST_F(Commands, LinesFail) {
  expect_line("", {-22, "", kErr + "run_cmd_line(#): command line empty\n"});
  expect_line(" \t ", {-22, "", kErr + "run_cmd_line(#): command line empty\n"});
  expect_line("nothing probe", {-38, "", kErr + "run_cmd(#): could not find command 'nothing'\n"});
  expect_line("probe fail", {1, "probe [fail]\n"});
  const expectation too_deep = {1, std::string(32, '.'),
                                kErr + "run_cmd_line(#): command lines nested too deeply\n"};
  expect_line("endless", too_deep);
  expect_line("endless", too_deep);  // it has come out again
  expect_line("probe", {0, "probe\n"});
}

TEST_F(Commands, SurviveEveryFailedAllocation) {
  const std::string no_memory = std::strerror(ENOMEM);
  const std::string dict = "[E] lib/libdict/dict ";
  const std::string no_dict =
      dict + "new_dict(#): could not allocate new dictionary : " + no_memory + "\n";
  const std::string no_pair = dict + "new_kvpair(#): could not allocate new key/value : ";
  const std::string no_node = dict + "new_kvpair_mgr(#): could not allocate new key/value mgr: ";
  // In the order of the allocations: the line, the words, the dictionary, then for each option its
  // name, its pair and its node. An option that cannot be stored is left out.
  const expectation cases[] = {
      {-12, "", kErr + "run_cmd_line(#): could not allocate command line buffer"},
      {-12, "", kErr + "run_cmd_line(#): could not allocate argv"},
      {-12, "", no_dict + kErr + "run_cmd(#): could not create option dictionary\n"},
      {0, "probe short\n", kErr + "handle_longopt(#): " + no_memory + "\n"},
      {0, "probe short\n", no_pair + no_memory + "\n"},
      {0, "probe short\n", no_node + no_memory + "\n"},
      {0, "probe both=1\n", no_pair + no_memory + "\n"},
      {0, "probe both=1\n", no_node + no_memory + "\n"},
  };
  for (size_t i = 0; i < std::size(cases); i++) {
    fail_allocation_after(static_cast<int>(i));
    expect_line("probe --both=1 -s", cases[i]);
    EXPECT_TRUE(stop_failing_allocations());
  }
  fail_allocation_after(0);
  expect_words({"probe"},
               {-12, "", no_dict + kErr + "run_cmds(#): could not create option dictionary\n"});
  stop_failing_allocations();
}

TEST_F(Commands, HelpShowsOneCommand) {
  EXPECT_EQ(capture([] { run_cmd_line("help probe help", nullptr); }).out,
            "Help for `probe' command:\n"
            "usage: probe\n"
            "  n\n"
            "OPTIONS:\n"
            "  -b, --both           short and long\n"
            "  -s                   short only\n"
            "  --long               long only\n"
            "                       in two lines\n"
            "    neither\n"
            "  -b, --both           never found\n");
  EXPECT_EQ(capture([] { run_cmd_line("help probe-fifteen-c", nullptr); }).out,
            "Help for `probe-fifteen-c' command:\nusage\nOPTIONS:\n");
  EXPECT_EQ(capture([] { run_cmd_line("help help", nullptr); }).out,
            "Help for `help' command:\n"
            "usage: help [command]\n"
            "  `help' with no arguments will show a list of all commands.\n"
            "  `help <command>' will show a detailed help for `command'\n");
  // It takes all the words, known or not.
  expect_words({"help", "probe", "nothing"}, {0, ""});
}

TEST_F(Commands, HelpListsCommandsByName) {
  const std::string list = capture([] { run_cmd_line("help", nullptr); }).out;
  EXPECT_EQ(list.substr(0, 10), "Commands:\n");
  EXPECT_NE(list.find("\n  probe          writes down\n"
                      "  probe          never found\n"
                      "  probe-fifteen-c long name\n"
                      "  script         run a command script\n"),
            std::string::npos)
      << list;
}

}  // namespace
