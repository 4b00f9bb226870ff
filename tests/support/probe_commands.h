// SPDX-License-Identifier: GPL-3.0-or-later
// Commands that write down how they are called, and the fixture that registers them.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "tests/support/capture.h"

inline const cmd_opt probe_opts[] = {
    {"both", "short and long", 'b', "both"},
    {"short", "short only", 's', nullptr},
    {"long", "long only\n                       in two lines", 0, "long"},
    {"bare", "neither", 0, nullptr},
    {"shadowed", "never found", 'b', "both"},
    {nullptr, nullptr, 0, nullptr},
};

/// The options that were given: " both=1 short".
inline std::string text_of(const dictionary* opts) {
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

inline std::string calls;  // what the commands wrote down

/// Writes down its words and options; takes as many words as the first one says, or fails.
inline int probe(int argc, const char** argv, const cmd* cmd, void* appdata, dictionary* opts) {
  calls += cmd->name;
  for (int i = 0; i < argc; i++) calls += std::string(" [") + argv[i] + "]";
  calls += text_of(opts) + (appdata == &calls ? "\n" : " without its data\n");
  if (argc == 0) return 0;
  return std::strcmp(argv[0], "fail") == 0 ? -1 : std::atoi(argv[0]);
}

inline int run_itself(int /*argc*/, const char** /*argv*/, const cmd* cmd, void* appdata,
                      dictionary* /*opts*/) {
  calls += '.';
  return run_cmd_line(cmd->name, appdata) != 0 ? -1 : 0;
}

inline const cmd_opt no_rows[] = {{nullptr, nullptr, 0, nullptr}};
inline const cmd shadowed_cmd = {"probe", nullptr, "never found", "", nullptr, nullptr};
inline const cmd probe_cmd = {"probe", probe,     "writes down", "usage: probe\n  n",
                              nullptr, probe_opts};
inline const cmd long_named_cmd = {"probe-fifteen-c", probe,   "long name",
                                   "usage",           nullptr, no_rows};
inline const cmd endless_cmd = {"endless", run_itself, "runs itself", "usage", nullptr, nullptr};

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

/// What comes of a run: the result, the calls of commands, the messages.
struct expectation {
  int result;
  std::string calls;
  std::string messages = {};
};

/// Shows warnings only where some are expected, so that an error must come as one.
inline void show_levels_of(const std::string& messages) {
  set_loglevel(messages.find("[W]") == std::string::npos ? 1 : 2);
}

inline void expect_words(std::vector<const char*> words, const expectation& expected) {
  SCOPED_TRACE(testing::PrintToString(words));
  show_levels_of(expected.messages);
  calls.clear();
  const printed text = capture([&] {
    EXPECT_EQ(run_cmds(static_cast<int>(words.size()), words.data(), &calls), expected.result);
  });
  EXPECT_EQ(calls, expected.calls);
  EXPECT_EQ(text.err, expected.messages);
}

inline void expect_line(const std::string& line, const expectation& expected) {
  show_levels_of(expected.messages);
  calls.clear();
  const printed text =
      capture([&] { EXPECT_EQ(run_cmd_line(line.c_str(), &calls), expected.result) << line; });
  EXPECT_EQ(calls, expected.calls) << line;
  EXPECT_EQ(text.err, expected.messages) << line;
}

/// Reads the options in front of `words`: how many words that takes, which options it gives.
inline void expect_options(std::vector<const char*> words, unsigned taken,
                           const std::string& options, const std::string& messages = {}) {
  SCOPED_TRACE(testing::PrintToString(words));
  unsigned cursor = 0;
  const printed text = capture([&] {
    dictionary* const opts =
        cmd_getopt(&probe_cmd, static_cast<int>(words.size()), words.data(), &cursor);
    EXPECT_EQ(text_of(opts), options);
    delete_dict(opts);
  });
  EXPECT_EQ(cursor, taken);
  EXPECT_EQ(text.err, messages);
}
