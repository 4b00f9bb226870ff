// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libutil/list.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct record {
  list_head node;
  char name;
};

/// The records from the head on, and from the tail back: "abc cba".
std::string text_of(list_head& head) {
  std::string text;
  for (list_head* n = head.next; n != &head; n = n->next) text += list_record<record>(n)->name;
  text += ' ';
  for (list_head* n = head.prev; n != &head; n = n->prev) text += list_record<record>(n)->name;
  return text;
}

TEST(List, IsLinkedBothWays) {
  list_head head = {&head, &head};
  EXPECT_EQ(text_of(head), " ");
  record a = {{}, 'a'}, b = {{}, 'b'}, c = {{}, 'c'};
  list_insert(&a.node, &head);
  list_insert(&c.node, &head);
  list_insert(&b.node, &c.node);
  EXPECT_EQ(text_of(head), "abc cba");
  list_remove(&b.node);
  EXPECT_EQ(text_of(head), "ac ca");
  list_remove(&a.node);
  EXPECT_EQ(text_of(head), "c c");
  list_remove(&c.node);
  EXPECT_EQ(text_of(head), " ");
}

/// The number of nodes, each of which must know the link that points at it.
int length_of(hlist_head& head) {
  int length = 0;
  for (hlist_node** link = &head.first; *link != nullptr; link = &(*link)->next) {
    EXPECT_EQ((*link)->pprev, link) << length;
    ++length;
  }
  return length;
}

TEST(Chain, EveryNodeKnowsTheLinkThatPointsAtIt) {
  hlist_head head = {nullptr};
  hlist_node nodes[4];
  for (hlist_node& node : nodes) hlist_add_head(&node, &head);
  EXPECT_EQ(head.first, &nodes[3]);
  EXPECT_EQ(length_of(head), 4);
  // From the middle, the end, the beginning, and the last one left.
  int left = 4;
  for (const int gone : {1, 0, 3, 2}) {
    hlist_del(&nodes[gone]);
    EXPECT_EQ(length_of(head), --left) << gone;
  }
}

}  // namespace
