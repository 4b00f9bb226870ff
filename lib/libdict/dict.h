// SPDX-License-Identifier: GPL-3.0-or-later
// A small dictionary of byte-string values under text keys, with a flat serialised form.
//
// Serialised, the records stand one after another exactly as in memory, without a header, count,
// alignment or padding, numbers in host order:
//
//   offset       size               field
//   0            4                  kvsize
//   4            4                  voffset
//   8            voffset            key with its terminating zero
//   8 + voffset  kvsize - voffset   value
//
// Commands read their options with dict_has_key and dict_value_for_key.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "lib/libutil/list.h"

/// One record, allocated as one block of 8 + kvsize bytes. Packed, because dict_for_buf points at
/// records wherever they lie in a buffer.
struct [[gnu::packed]] kvpair {
  uint32_t kvsize;   // bytes of key and value
  uint32_t voffset;  // bytes of the key with its zero: where the value begins
  // key and value follow

  [[nodiscard]] const char* kv() const { return reinterpret_cast<const char*>(this + 1); }
  [[nodiscard]] char* kv() { return reinterpret_cast<char*>(this + 1); }
};

/// Releases a record that leaves its dictionary.
using kvpair_free = void (*)(kvpair* kvp);

/// A dictionary's node for one record.
struct kvpair_mgr {
  hlist_node node;
  kvpair_free free;  // null when the dictionary does not own the record
  struct kvpair* kvp;
};

constexpr size_t kDictBuckets = 16;

struct dictionary {
  std::array<hlist_head, kDictBuckets> kvtable;
  unsigned int entries;
};

/// An empty dictionary, null when out of memory (logged). Released with delete_dict.
dictionary* new_dict();

/// Releases the dictionary and, through their `free`, its records. Warns when `entries` does not
/// come out at 0.
void delete_dict(dictionary* dict);

/// A record with copies of the key and `size` bytes of value; null when out of memory or beyond
/// 32 bits (logged). Released with delete_kvpair.
kvpair* new_kvpair(const char* key, const void* value, size_t size);
void delete_kvpair(kvpair* kvp);

/// A node for a record; null when out of memory (logged).
kvpair_mgr* new_kvpair_mgr(kvpair* kvp, kvpair_free free_cb);

/// Releases the record through `free`, then the node, which must not be linked.
void delete_kvpair_mgr(kvpair_mgr* mgr);

/// The node under a key, null when absent.
kvpair_mgr* find_kvpair(const dictionary* dict, const char* key);

/// Adds a record in the place of one with the same key. Returns its node; null when out of
/// memory: the record then still belongs to the caller.
kvpair_mgr* add_kvpair(dictionary* dict, kvpair* kvp, kvpair_free free_cb);

/// Copies key and `size` bytes of value; returns the stored copy, null when out of memory.
void* dict_add_key(dictionary* dict, const char* key, const void* value, size_t size);

/// Deletes the record of a key, if present. `entries` keeps counting it.
void dict_remove_key(dictionary* dict, const char* key);

/// 1 when the key is present, else 0.
int dict_has_key(const dictionary* dict, const char* key);

/// The value of a key, owned by the dictionary, and its length in bytes in *size (may be null).
/// Null when the key is absent.
const void* dict_value_for_key(const dictionary* dict, const char* key, size_t* size);

/// Bytes of the serialised form.
size_t dict_serialized_size(const dictionary* dict);

/// Writes the serialised form into `buf`, which holds dict_serialized_size bytes, the buckets in
/// order and the latest key of a bucket first. Returns the bytes written.
size_t dict_serialize_into(const dictionary* dict, void* buf);

/// The serialised form in a new buffer that the caller frees, its length in *size (may be null).
/// Null when out of memory (logged).
void* dict_serialize(const dictionary* dict, size_t* size);

/// A new dictionary with copies of the records in a buffer of `size` bytes. Null for a record that
/// is not whole (logged) and when out of memory.
dictionary* dict_deserialize(const void* serialized_buf, size_t size);

/// The same with nodes that point into the buffer, which must outlive the dictionary. Each node
/// gets `free_cb`; null leaves the buffer alone.
dictionary* dict_for_buf(void* serialized_buf, size_t size, kvpair_free free_cb);
