// SPDX-License-Identifier: GPL-3.0-or-later
// Dictionaries and their serialised form as text.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "lib/libdict/dict.h"

using owned_dict = std::unique_ptr<dictionary, decltype(&delete_dict)>;

inline owned_dict own(dictionary* dict) {
  return {dict, delete_dict};
}

/// The bytes of a value; "absent" where there is none.
inline std::string value_of(const dictionary* dict, const char* key) {
  size_t size = 0;
  const void* const value = dict_value_for_key(dict, key, &size);
  return value != nullptr ? std::string(static_cast<const char*>(value), size) : "absent";
}

/// The serialised form, freed.
inline std::string serialized(const dictionary* dict) {
  size_t size = 0;
  char* const bytes = static_cast<char*>(dict_serialize(dict, &size));
  std::string text(bytes, size);
  std::free(bytes);
  return text;
}

inline std::string u32(uint32_t value) {
  return {reinterpret_cast<const char*>(&value), sizeof value};
}

/// One record of the serialised form: two lengths, then key and value.
inline std::string record(const std::string& key_and_value, uint32_t voffset) {
  return u32(static_cast<uint32_t>(key_and_value.size())) + u32(voffset) + key_and_value;
}

inline std::string zero_ended(const std::string& text) {
  return text + '\0';
}
