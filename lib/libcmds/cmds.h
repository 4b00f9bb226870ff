// SPDX-License-Identifier: GPL-3.0-or-later
// The registry of commands, their options, and the ways to run them.
//
// Failures have these numbers: -12 out of memory, -22 empty command line, -38 no such command,
// -40 command lines that run each other without end.
#pragma once

#include "lib/libdict/dict.h"
#include "lib/libutil/list.h"

/// One row of a command's option table; a row whose name is null ends the table.
struct cmd_opt {
  const char* name;         // the key in the option dictionary
  const char* description;  // shown by `help <command>`
  char shortopt;            // letter of the short form, 0 for none
  const char* longopt;      // the long form without its dashes, null for none
};

struct cmd;

/// Runs a command. `argv` holds the words after the options, `appdata` is what the program's
/// entry passed down, `opts` is never null. Returns the number of words consumed, negative for
/// failure.
using cmd_handler = int (*)(int argc, const char** argv, const cmd* cmd, void* appdata,
                            dictionary* opts);

struct cmd {
  const char* name;
  cmd_handler handler;
  const char* summary;     // one line in the command list
  const char* help;        // usage text, may hold newlines
  void* priv;              // unused, null
  const cmd_opt* options;  // null when the command takes none
};

/// A command's place in the registry: static and writable, owned by the command's module.
struct cmd_mgr {
  list_head node;
  const struct cmd* cmd;
};

/// The registry's sentinel.
extern list_head registered_cmds;

/// Links a command into the registry, sorted by name. Called by the command's constructor
/// function REGFUNC__<command> (priority startup::kCommand); the record lives for ever.
void _register_cmd(cmd_mgr* rcmd);

/// The first command of a name, null when there is none.
const cmd* find_cmd(const char* name);

/// Runs one command. 0, 1 when its handler failed (throwing std::bad_alloc, or finding standard
/// output broken, is failing too), -38 when there is no such command, -12 when
/// out of memory.
int run_cmd(const char* name, int argc, const char** argv, void* appdata);

/// Runs the commands of one word list, each taking the words it reports as consumed. 0, -38,
/// -12, or the index of the first word after the options of the command that failed.
int run_cmds(int argc, const char** argv, void* appdata);

/// Splits a line into words and runs it as one command. As run_cmd, or -22 for an empty line, or
/// -40 when called from within too many command lines.
int run_cmd_line(const char* cmd_line, void* appdata);

constexpr unsigned kMaxWords = 63;  // of a command line

/// Cuts a line into words in place and stores their addresses and a null in `argv`, which holds
/// kMaxWords + 1 pointers. Returns the number of words. The last possible word runs to the end
/// of the line as it stands.
///
/// Spaces and tabs part words; a backslash keeps the space, tab or backslash after it as a
/// character, and stays where it is, with a warning, before any other.
unsigned tokenize_cmd_string(char* line, const char** argv);

/// Reads the option words of a command from argv[*carg] on and moves *carg past them. The new
/// dictionary holds, under the options' names, the text of --name=text with its zero, and an
/// empty value for options without one. An option that cannot be stored is logged and left out.
/// Null when the dictionary cannot be created. The caller deletes it.
dictionary* cmd_getopt(const cmd* cmd_entry, int argc, const char** argv, unsigned int* carg);
