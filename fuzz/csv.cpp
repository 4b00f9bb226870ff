// SPDX-License-Identifier: GPL-3.0-or-later
// A comma list gives what a plain reading of it with strtol gives.
#include "lib/csv.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "fuzz/input.h"
#include "lib/liblog/logging.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  set_loglevel(0);
  const size_t entries = 50 + (size > 0 ? data[0] % 64 : 0);
  const std::unique_ptr<char[]> line = exact_text(data, size);
  const auto buf = std::make_unique<uint16_t[]>(entries);
  const ssize_t count = csv_to_buf(line.get(), buf.get(), entries * sizeof(uint16_t));

  if (std::strchr(line.get(), ',') == nullptr) {
    require(count == -1);
    return 0;
  }
  std::vector<uint16_t> expected;
  for (const char* field = line.get(); *field != '\0' && expected.size() < entries;) {
    expected.push_back(static_cast<uint16_t>(std::strtol(field, nullptr, 10)));
    const char* const comma = std::strchr(field, ',');
    field = comma != nullptr ? comma + 1 : field + std::strlen(field);
  }
  require(count == static_cast<ssize_t>(expected.size()) -
                       std::count(expected.begin() + 1, expected.end(), 0));
  expected.resize(entries);
  require(std::equal(expected.begin(), expected.end(), buf.get()));
  return 0;
}
