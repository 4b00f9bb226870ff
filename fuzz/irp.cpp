// SPDX-License-Identifier: GPL-3.0-or-later
// Any text as a file of definitions: each is rendered with its lowest numbers, and read backwards.
#include <sstream>
#include <string>

#include "fuzz/input.h"
#include "lib/irp/message.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
  irp::Protocols protocols;
  for (const irp::BadDefinition& fault : protocols.add(text)) {
    require(fault.line > 0 && fault.column > 0 && !fault.what.empty());
  }
  const irp::MessageReader reader(protocols);
  for (const auto& protocol : protocols.all()) {
    irp::Parameters lowest;
    for (const irp::Parameter& parameter : protocol->parameters()) {
      if (!parameter.preset) lowest[parameter.name] = parameter.low;
    }
    try {
      const irp::Rendering made = protocol->render(lowest);
      for (const int us : made.whole()) require(us >= 0);
    } catch (const irp::Error& fault) {
      require(fault.what()[0] != '\0');
    }
    if (!reader.reads(*protocol)) continue;
    const irp::Section any{.lead_in = {9000, 4500}, .bits = std::vector<bool>(size), .gap_us = 0};
    reader.read(std::span(&any, 1));
  }
  return 0;
}
