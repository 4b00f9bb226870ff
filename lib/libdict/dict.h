// SPDX-License-Identifier: GPL-3.0-or-later
// A small dictionary of byte-string values under text keys, with a flat serialised form.
//
// (The framework reads and fills it; commands use dict_has_key and dict_value_for_key.)
#pragma once

#include <cstddef>
#include <cstdint>

struct dictionary;

dictionary* new_dict();
void delete_dict(dictionary* dict);

/// Copies key and `size` bytes of value; returns the stored copy, null when out of memory.
void* dict_add_key(dictionary* dict, const char* key, const void* value, size_t size);
void dict_remove_key(dictionary* dict, const char* key);

/// 1 when the key is present, else 0.
int dict_has_key(const dictionary* dict, const char* key);

/// The value of a key, owned by the dictionary, and its length in bytes in *size (may be null).
/// Null when the key is absent.
const void* dict_value_for_key(const dictionary* dict, const char* key, size_t* size);
