// SPDX-License-Identifier: GPL-3.0-or-later
// Any line as a record of vantrel-json, and as a parameter of vantrel-encode.
#include "companions/encode.h"

#include <fstream>

#include "companions/encode_json.h"
#include "fuzz/input.h"
#include "lib/liblog/logging.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  set_loglevel(0);
  static const irp::Protocols protocols = [] {
    irp::Protocols found;
    std::ifstream file(PROTOCOLS);
    require(found.add(file).empty() && !found.all().empty());
    return found;
  }();
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  try {
    const auto code = companions::code_of_record(protocols, line);
    const auto sent = companions::render_press(*code.protocol, code.parameters, 1);
    for (const companions::form* const to : companions::forms()) {
      require(!companions::signal_of(sent, "key", *to).durations.empty());
    }
  } catch (const irp::Error& fault) {
    require(fault.what()[0] != '\0');
  }
  try {
    irp::Parameters parameters;
    companions::add_parameter(line, parameters);
    require(parameters.size() == 1);
  } catch (const irp::Error& fault) {
    require(fault.what()[0] != '\0');
  }
  return 0;
}
