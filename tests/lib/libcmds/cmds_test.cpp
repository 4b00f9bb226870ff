// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libcmds/cmds.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lib/liblog/logging.h"
#include "tests/support/capture.h"
#include "tests/support/failing_alloc.h"

namespace {

const cmd_opt probe_opts[] = {
    {"both", "short and long", 'b', "both"},
    {"short", "short only", 's', nullptr},
    {"long", "long only\n                       in two lines", 0, "long"},
    {"bare", "neither", 0, nullptr},
    {"shadowed", "never found", 'b', "both"},
    {nullptr, nullptr, 0, nullptr},
};

std::string text_of(const dictionary* opts) {
  std::string text;
  for (const cmd_opt* opt = probe_opts; opt->name != nullptr; opt++) {
    size_t size = 0;
    const auto* value = static_cast<const char*>(dict_value_for_key(opts, opt->name, &size));
    if (value == nullptr) continue;
    text += std::string(" ") + opt->name;
    if (size > 0) text += "=" + std::string(value, size - 1);
  }
  return text;
}

std::string calls;

/// Writes down its words and options; takes as many words as the first one says, or fails.
int probe(int argc, const char** argv, const cmd* cmd, void* appdata, dictionary* opts) {
  calls += cmd->name;
  for (int i = 0; i < argc; i++) calls += std::string(" [") + argv[i] + "]";
  calls += text_of(opts) + (appdata == &calls ? "\n" : " without its data\n");
  if (argc == 0) return 0;
  return std::strcmp(argv[0], "fail") == 0 ? -1 : std::atoi(argv[0]);
}

int run_itself(int /*argc*/, const char** /*argv*/, const cmd* cmd, void* appdata,
               dictionary* /*opts*/) {
  return run_cmd_line(cmd->name, appdata) != 0 ? -1 : 0;
}

const cmd_opt no_rows[] = {{nullptr, nullptr, 0, nullptr}};
const cmd shadowed_cmd = {"probe", nullptr, "never found", "", nullptr, nullptr};
const cmd probe_cmd = {"probe", probe, "writes down", "usage: probe\n  n", nullptr, probe_opts};
const cmd long_named_cmd = {"probe-fifteen-c", probe, "long name", "usage", nullptr, no_rows};
const cmd endless_cmd = {"endless", run_itself, "runs itself", "usage", nullptr, nullptr};

const std::string kErr = "[E] lib/libcmds/cmds ";
const std::string kWarn = "[W] lib/libcmds/cmds ";

class Commands : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static cmd_mgr managers[4];
    if (managers[0].cmd != nullptr) return;
    cmd_mgr* manager = managers;
    for (const cmd* record : {&shadowed_cmd, &long_named_cmd, &endless_cmd, &probe_cmd}) {
      manager->cmd = record;
      _register_cmd(manager++);
    }
  }
  void SetUp() override { set_loglevel(2); }
  void TearDown() override { set_loglevel(1); }
};

struct expectation {
  int result;
  std::string calls;
  std::string messages = {};
};

void expect_words(std::vector<const char*> words, const expectation& expected) {
  calls.clear();
  const printed text = capture([&] {
    EXPECT_EQ(run_cmds(static_cast<int>(words.size()), words.data(), &calls), expected.result);
  });
  EXPECT_EQ(calls, expected.calls);
  EXPECT_EQ(text.err, expected.messages);
}

void expect_line(const std::string& line, const expectation& expected) {
  calls.clear();
  const printed text =
      capture([&] { EXPECT_EQ(run_cmd_line(line.c_str(), &calls), expected.result) << line; });
  EXPECT_EQ(calls, expected.calls) << line;
  EXPECT_EQ(text.err, expected.messages) << line;
}

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
  expect_words({"nothing", "probe"},
               {-38, "", kErr + "run_cmds(#): could not find command 'nothing'\n"});
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
  const struct {
    std::vector<const char*> words;
    unsigned cursor;
    std::string options;
    std::string messages = {};
  } cases[] = {
      {{}, 0, ""},
      {{"word", "-b"}, 0, ""},
      {{"-bs", "--long=4", "x"}, 2, " both short long=4"},
      {{"--both=", "-s"}, 2, " both= short"},
      {{"--both=1", "-b", "--both=a=b"}, 3, " both=a=b"},
      {{"--both=1", "--both"}, 2, " both"},
      {{"-", "-b"}, 0, ""},
      {{"-s", "-"}, 1, " short"},
      {{"--", "-s"}, 2, " short", no_long + "--' option\n"},
      {{"--Both=3", "--bot"}, 2, "", no_long + "--Both' option\n" + no_long + "--bot' option\n"},
      {{"--bare", "--short"}, 2, "", no_long + "--bare' option\n" + no_long + "--short' option\n"},
      {{"-zs-"}, 1, " short", no_short + "-z' option\n" + no_short + "--' option\n"},
  };
  for (const auto& c : cases) {
    std::vector<const char*> words = c.words;
    unsigned cursor = 0;
    const printed text = capture([&] {
      dictionary* const opts =
          cmd_getopt(&probe_cmd, static_cast<int>(words.size()), words.data(), &cursor);
      EXPECT_EQ(text_of(opts), c.options);
      delete_dict(opts);
    });
    EXPECT_EQ(cursor, c.cursor);
    EXPECT_EQ(text.err, c.messages);
  }
}

TEST_F(Commands, LinesAreSplitIntoWords) {
  const std::string warning = kWarn + "tokenize_cmd_string(#): invalid escape character: ";
  const struct {
    const char* line;
    const char* call;
    std::string messages = {};
  } cases[] = {
      {"probe a b", "probe [a] [b]"},
      {"\t probe \ta  b\t", "probe [a] [b]"},
      {R"(probe --long=+100\ -200 a)", "probe [a] long=+100 -200"},
      {R"(probe a\\b \\ \  c\)", R"(probe [a\b] [\] [ ] [c\])"},
      {"probe a\\\tb\\\\\\ c", "probe [a\tb\\ c]"},
      {R"(probe \\\\ \\\ x)", R"(probe [\\] [\ x])"},
      {R"(probe a\xb "c d")", R"(probe [a\xb] ["c] [d"])", warning + "x\n"},
      {R"(probe \a\'\ )", R"(probe [\a\' ])", warning + "a\n" + warning + "'\n"},
  };
  for (const auto& c : cases) expect_line(c.line, {0, c.call + std::string("\n"), c.messages});
}

TEST_F(Commands, TheLastPossibleWordIsTheRestOfTheLine) {
  std::string line = R"(probe a\ b)";
  std::string call = "probe [a b]";
  for (int i = 0; i < 60; i++) {
    line += " c";
    call += " [c]";
  }
  expect_line(line + R"( \\  64 \x  65 )", {0, call + R"( [\\  64 \x  65 ])" + "\n"});
  expect_line(line + R"( x\ y)", {0, call + R"( [x\ y])" + "\n"});
}

TEST_F(Commands, LinesFail) {
  expect_line("", {-22, "", kErr + "run_cmd_line(#): command line empty\n"});
  expect_line(" \t ", {-22, "", kErr + "run_cmd_line(#): command line empty\n"});
  expect_line("nothing probe", {-38, "", kErr + "run_cmd(#): could not find command 'nothing'\n"});
  expect_line("probe fail", {1, "probe [fail]\n"});
  expect_line("endless", {1, "", kErr + "run_cmd_line(#): command lines nested too deeply\n"});
  expect_line("probe", {0, "probe\n"});
}

TEST_F(Commands, SurviveEveryFailedAllocation) {
  const std::string no_memory = std::strerror(ENOMEM);
  const std::string no_dict =
      "[E] lib/libdict/dict new_dict(#): could not allocate new dictionary : " + no_memory + "\n";
  // In the order of the allocations: the line, the words, the dictionary, an option's name.
  const expectation cases[] = {
      {-12, "", kErr + "run_cmd_line(#): could not allocate command line buffer"},
      {-12, "", kErr + "run_cmd_line(#): could not allocate argv"},
      {-12, "", no_dict + kErr + "run_cmd(#): could not create option dictionary\n"},
      {-12, "",
       kErr + "handle_longopt(#): " + no_memory + "\n" + kErr +
           "run_cmd(#): could not create option dictionary\n"},
  };
  for (int i = 0; i < 4; i++) {
    fail_allocation_after(i);
    expect_line("probe --both -s", cases[i]);
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
  expect_words({"help", "nothing"},
               {1, "", kErr + "help(#): help: command `nothing' not found.\n"});
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
