// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/stored_keys.h"

#include <variant>

#include "companions/formats/inputs.h"

namespace companions {

std::vector<stored_key> read_keys(const std::vector<std::string>& files, bool& good) {
  std::vector<stored_key> keys;
  const bool all_read = read_inputs(files, [&keys](const input& found) {
    if (const auto* const fault = std::get_if<bad_line>(&found.read.what)) {
      print_fault(found, *fault);
      return verdict::kFailed;
    }
    const auto& signal = std::get<pattern>(found.read.what);
    if (!signal.name.empty()) {
      keys.push_back({signal.remote.empty() ? found.source : signal.remote, signal});
    }
    return verdict::kGoOn;
  });
  good = good && all_read;
  return keys;
}

}  // namespace companions
