// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/irp.h"

#include <fstream>

namespace irp {

const Protocols& protocols() {
  static const Protocols table = [] {
    Protocols found;
    std::ifstream file(PROTOCOLS);
    for (const BadDefinition& fault : found.add(file)) {
      throw Error(PROTOCOLS ":" + std::to_string(fault.line) + ": " + fault.what);
    }
    return found;
  }();
  return table;
}

const Protocol& protocol(std::string_view name) {
  const Protocol* found = protocols().find(name);
  if (found == nullptr) throw Error("no protocol " + std::string(name));
  return *found;
}

std::string csv(const std::vector<int>& durations) {
  std::string text;
  for (const int length : durations) {
    if (!text.empty()) text += ',';
    text += std::to_string(length);
  }
  return text;
}

}  // namespace irp
