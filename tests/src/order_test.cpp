// SPDX-License-Identifier: GPL-3.0-or-later
// Linked twice, with the objects in one order and in the other.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/ir/analyzer.h"
#include "lib/libcmds/cmds.h"
#include "tests/support/capture.h"

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

TEST(Order, AnalyzersBreakTiesInThisOrder) {
  EXPECT_EQ(capture(print_all_analyzers).out,
            "Enabled Protocols\n-----------------\n"
            "nec\nrc5\nmce\nxmp\nortek\nsharp\nsony\ndenon\nzarvo\nnokia\ntdc\n");
}

TEST(Order, DecodersAreSearchedInThisOrder) {
  EXPECT_EQ(capture(print_all_protocols).out,
            "Enabled Protocols\n-----------------\n"
            "XMP\nSONY\nDENON\nNEC\nir_prot_none\nRC5\nRC6\nZARVO\nNOKIA\nZARVO\n");
}

}  // namespace
