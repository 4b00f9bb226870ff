// SPDX-License-Identifier: GPL-3.0-or-later
// Linked lists through links that are members of the records they chain: the
// registries are filled before main without allocating, and a record moves between lists for free.
#pragma once

#include <type_traits>

/// A link of a record, or the head of a list: an empty list's head points at itself, and the
/// walk `for (n = head.next; n != &head; n = n->next)` visits the records in order.
struct list_head {
  list_head* next;
  list_head* prev;
};

/// Links `node` in front of `position`; in front of the head is at the tail.
inline void list_insert(list_head* node, list_head* position) {
  node->next = position;
  node->prev = position->prev;
  position->prev->next = node;
  position->prev = node;
}

/// Takes a linked node out of the list that it is in.
inline void list_remove(list_head* node) {
  node->prev->next = node->next;
  node->next->prev = node->prev;
}

/// The record of which `node` is the first member.
template <class Record>
Record* list_record(list_head* node) {
  static_assert(std::is_standard_layout_v<Record>);
  return reinterpret_cast<Record*>(node);
}

/// A link of a record in a chain, which it leaves without knowing the chain's head.
struct hlist_node {
  hlist_node* next;
  hlist_node** pprev;  // the link that points here: the chain's head or the previous node's next
};

/// The head of a chain, null when empty.
struct hlist_head {
  hlist_node* first;
};

inline void hlist_add_head(hlist_node* node, hlist_head* head) {
  node->next = head->first;
  node->pprev = &head->first;
  if (head->first != nullptr) head->first->pprev = &node->next;
  head->first = node;
}

inline void hlist_del(hlist_node* node) {
  *node->pprev = node->next;
  if (node->next != nullptr) node->next->pprev = node->pprev;
}
