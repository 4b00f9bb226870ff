// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/installed.h"

#include <array>
#include <filesystem>
#include <fstream>

namespace irp {

Protocols installed_protocols() {
  std::error_code no_such_link;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", no_such_link);
  for (const char* folder : {VANTREL_DATA_FROM_BIN, "share/vantrel"}) {
    const auto path = (program.parent_path() / folder / "protocols.irp").lexically_normal();
    std::ifstream file(path);
    if (!file) continue;
    Protocols found;
    for (const BadDefinition& fault : found.add(file)) {
      throw Error(path.string() + ":" + std::to_string(fault.line) + ":" +
                  std::to_string(fault.column) + ": " + fault.what);
    }
    return found;
  }
  throw Error("cannot find share/vantrel/protocols.irp from " + program.string());
}

}  // namespace irp
