// SPDX-License-Identifier: GPL-3.0-or-later
// Linked twice, with the objects in one order and in the other.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/libcmds/cmds.h"

namespace {

TEST(Order, CommandsAreSortedByName) {
  std::vector<std::string> names;
  for (list_head* node = registered_cmds.next; node != &registered_cmds; node = node->next) {
    names.emplace_back(list_record<cmd_mgr>(node)->cmd->name);
  }
  const std::vector<std::string> expected = {"decode", "help",  "listen", "script",
                                             "sendir", "shell", "version"};
  EXPECT_EQ(names, expected);
}

}  // namespace
