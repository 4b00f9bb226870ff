// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes are read within their bounds, and what is a dictionary survives another round.
#include "lib/libdict/dict.h"

#include <cstdlib>

#include "fuzz/input.h"
#include "lib/liblog/logging.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  set_loglevel(0);
  // The odd address: records in a buffer need not be aligned.
  const auto block = std::make_unique<char[]>(size + 1);
  char* const bytes = block.get() + 1;
  if (size > 0) std::memcpy(bytes, data, size);

  dictionary* const copy = dict_deserialize(bytes, size);
  dictionary* const view = dict_for_buf(bytes, size, nullptr);
  require((copy == nullptr) == (view == nullptr));
  if (copy == nullptr) return 0;
  require(copy->entries == view->entries);

  size_t first_size = 0;
  size_t second_size = 0;
  void* const first = dict_serialize(copy, &first_size);
  dictionary* const again = dict_deserialize(first, first_size);
  void* const second = dict_serialize(again, &second_size);
  // Colliding keys change places in every round; size and count stay.
  require(first_size == second_size && again->entries == copy->entries);
  std::free(first);
  std::free(second);
  delete_dict(again);
  delete_dict(view);
  delete_dict(copy);
  return 0;
}
