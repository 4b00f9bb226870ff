// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/libdict/dict.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "lib/liblog/logging.h"

namespace {

constexpr const char* kModule = "lib/libdict/dict";

static_assert(sizeof(kvpair) == 8 && alignof(kvpair) == 1);
static_assert(offsetof(kvpair_mgr, node) == 0, "a node's address is its manager's");

kvpair_mgr* manager_of(hlist_node* node) {
  return reinterpret_cast<kvpair_mgr*>(node);
}

size_t record_size(const kvpair* kvp) {
  return sizeof(kvpair) + kvp->kvsize;
}

size_t bucket_of(const char* key) {
  constexpr uint32_t kWeight = 7;
  uint32_t sum = 0;
  for (uint32_t i = 0; key[i] != '\0'; i++) {
    sum += kWeight * (i + 1) * static_cast<uint32_t>(static_cast<signed char>(key[i]));
  }
  // Bytes from 0x80 on count negative, as in data that was serialised before; a negative sum
  // takes the bucket of its remainder's absolute value.
  const int remainder = static_cast<int32_t>(sum) % static_cast<int>(kDictBuckets);
  return static_cast<size_t>(std::abs(remainder));
}

/// The record at the start of `size` - `offset` bytes, null unless it and its key end within them.
kvpair* record_at(char* buf, size_t offset, size_t size) {
  const size_t left = size - offset;
  if (left < sizeof(kvpair)) return nullptr;
  auto* kvp = reinterpret_cast<kvpair*>(buf + offset);
  if (kvp->kvsize > left - sizeof(kvpair) || kvp->voffset > kvp->kvsize) return nullptr;
  return std::memchr(kvp->kv(), '\0', kvp->kvsize) != nullptr ? kvp : nullptr;
}

}  // namespace

dictionary* new_dict() {
  auto* dict = static_cast<dictionary*>(std::calloc(1, sizeof(dictionary)));
  if (dict == nullptr) {
    _log(1, "[E] %s %s(%d): could not allocate new dictionary : %s\n", kModule, __func__, __LINE__,
         std::strerror(errno));
  }
  return dict;
}

void delete_dict(dictionary* dict) {
  if (dict == nullptr) return;
  for (hlist_head& bucket : dict->kvtable) {
    for (hlist_node* node = bucket.first; node != nullptr;) {
      hlist_node* const next = node->next;
      delete_kvpair_mgr(manager_of(node));
      dict->entries--;
      node = next;
    }
  }
  if (dict->entries != 0) {
    _log(2, "[W] %s %s(%d): dict->entries non-zero on free\n", kModule, __func__, __LINE__);
  }
  std::free(dict);
}

kvpair* new_kvpair(const char* key, const void* value, size_t size) {
  const size_t key_size = std::strlen(key) + 1;
  constexpr size_t kLargest = std::numeric_limits<uint32_t>::max();
  const bool fits = key_size <= kLargest && size <= kLargest - key_size;
  auto* kvp = fits ? static_cast<kvpair*>(std::malloc(sizeof(kvpair) + key_size + size)) : nullptr;
  if (kvp == nullptr) {
    _log(1, "[E] %s %s(%d): could not allocate new key/value : %s\n", kModule, __func__, __LINE__,
         std::strerror(fits ? errno : EOVERFLOW));
    return nullptr;
  }
  kvp->kvsize = static_cast<uint32_t>(key_size + size);
  kvp->voffset = static_cast<uint32_t>(key_size);
  std::memcpy(kvp->kv(), key, key_size);
  if (size > 0) std::memcpy(kvp->kv() + key_size, value, size);
  return kvp;
}

void delete_kvpair(kvpair* kvp) {
  std::free(kvp);
}

kvpair_mgr* new_kvpair_mgr(kvpair* kvp, kvpair_free free_cb) {
  auto* mgr = static_cast<kvpair_mgr*>(std::calloc(1, sizeof(kvpair_mgr)));
  if (mgr == nullptr) {
    _log(1, "[E] %s %s(%d): could not allocate new key/value mgr: %s\n", kModule, __func__,
         __LINE__, std::strerror(errno));
    return nullptr;
  }
  mgr->free = free_cb;
  mgr->kvp = kvp;
  return mgr;
}

void delete_kvpair_mgr(kvpair_mgr* mgr) {
  if (mgr->free != nullptr) mgr->free(mgr->kvp);
  std::free(mgr);
}

kvpair_mgr* find_kvpair(const dictionary* dict, const char* key) {
  for (hlist_node* node = dict->kvtable[bucket_of(key)].first; node != nullptr; node = node->next) {
    kvpair_mgr* const mgr = manager_of(node);
    if (std::strcmp(mgr->kvp->kv(), key) == 0) return mgr;
  }
  return nullptr;
}

kvpair_mgr* add_kvpair(dictionary* dict, kvpair* kvp, kvpair_free free_cb) {
  kvpair_mgr* const mgr = new_kvpair_mgr(kvp, free_cb);
  if (mgr == nullptr) return nullptr;
  kvpair_mgr* const old = find_kvpair(dict, kvp->kv());
  if (old != nullptr) {
    hlist_del(&old->node);
    dict->entries--;
    delete_kvpair_mgr(old);
  }
  hlist_add_head(&mgr->node, &dict->kvtable[bucket_of(kvp->kv())]);
  dict->entries++;
  return mgr;
}

void* dict_add_key(dictionary* dict, const char* key, const void* value, size_t size) {
  kvpair* const kvp = new_kvpair(key, value, size);
  if (kvp == nullptr) return nullptr;
  if (add_kvpair(dict, kvp, delete_kvpair) == nullptr) {
    delete_kvpair(kvp);
    return nullptr;
  }
  return kvp->kv() + kvp->voffset;
}

void dict_remove_key(dictionary* dict, const char* key) {
  kvpair_mgr* const mgr = find_kvpair(dict, key);
  if (mgr == nullptr) return;
  // `entries` is left alone on purpose: delete_dict warns of dictionaries that lost a key.
  hlist_del(&mgr->node);
  delete_kvpair_mgr(mgr);
}

int dict_has_key(const dictionary* dict, const char* key) {
  return find_kvpair(dict, key) != nullptr ? 1 : 0;
}

const void* dict_value_for_key(const dictionary* dict, const char* key, size_t* size) {
  const kvpair_mgr* const mgr = find_kvpair(dict, key);
  if (mgr == nullptr) return nullptr;
  if (size != nullptr) *size = mgr->kvp->kvsize - mgr->kvp->voffset;
  return mgr->kvp->kv() + mgr->kvp->voffset;
}

size_t dict_serialized_size(const dictionary* dict) {
  size_t size = 0;
  for (const hlist_head& bucket : dict->kvtable) {
    for (hlist_node* node = bucket.first; node != nullptr; node = node->next) {
      size += record_size(manager_of(node)->kvp);
    }
  }
  return size;
}

size_t dict_serialize_into(const dictionary* dict, void* buf) {
  char* const start = static_cast<char*>(buf);
  char* end = start;
  for (const hlist_head& bucket : dict->kvtable) {
    for (hlist_node* node = bucket.first; node != nullptr; node = node->next) {
      const kvpair* const kvp = manager_of(node)->kvp;
      std::memcpy(end, kvp, record_size(kvp));
      end += record_size(kvp);
    }
  }
  return static_cast<size_t>(end - start);
}

void* dict_serialize(const dictionary* dict, size_t* size) {
  const size_t bytes = dict_serialized_size(dict);
  if (size != nullptr) *size = bytes;
  void* const buf = std::malloc(std::max<size_t>(bytes, 1));
  if (buf == nullptr) {
    _log(1, "[E] %s %s(%d): could not allocate serialized buffer : %s\n", kModule, __func__,
         __LINE__, std::strerror(errno));
    return nullptr;
  }
  dict_serialize_into(dict, buf);
  return buf;
}

dictionary* dict_deserialize(const void* serialized_buf, size_t size) {
  dictionary* const dict = new_dict();
  if (dict == nullptr) return nullptr;
  char* const buf = static_cast<char*>(const_cast<void*>(serialized_buf));  // only read below
  for (size_t offset = 0; offset < size;) {
    const kvpair* const kvp = record_at(buf, offset, size);
    if (kvp == nullptr) {
      _log(1, "[E] %s %s(%d): deserialize sanity check failed\n", kModule, __func__, __LINE__);
      delete_dict(dict);
      return nullptr;
    }
    if (dict_add_key(dict, kvp->kv(), kvp->kv() + kvp->voffset, kvp->kvsize - kvp->voffset) ==
        nullptr) {
      delete_dict(dict);
      return nullptr;
    }
    offset += record_size(kvp);
  }
  return dict;
}

dictionary* dict_for_buf(void* serialized_buf, size_t size, kvpair_free free_cb) {
  dictionary* const dict = new_dict();
  if (dict == nullptr) return nullptr;
  char* const buf = static_cast<char*>(serialized_buf);
  for (size_t offset = 0; offset < size;) {
    kvpair* const kvp = record_at(buf, offset, size);
    if (kvp == nullptr) {
      _log(1, "[E] %s %s(%d): deserialize sanity check failed\n", kModule, __func__, __LINE__);
      delete_dict(dict);
      return nullptr;
    }
    // Before the record is in: a repeated key's free_cb may run on the earlier record.
    const size_t next = offset + record_size(kvp);
    if (add_kvpair(dict, kvp, free_cb) == nullptr) {
      delete_dict(dict);
      return nullptr;
    }
    offset = next;
  }
  return dict;
}
