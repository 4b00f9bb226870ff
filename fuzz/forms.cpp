// SPDX-License-Identifier: GPL-3.0-or-later
// Any text as the input of one form's reader, and every signal in it through the form's writer and
// back.
#include <sstream>
#include <string>

#include "companions/convert.h"
#include "companions/formats/reader.h"
#include "fuzz/input.h"

namespace {

using namespace companions;

void require_to_come_back(const form& its, const pattern& signal) {
  std::ostringstream losses;
  const auto fit = fitting(its, losses).fit(signal, "");
  if (!fit) return;
  std::stringstream text;
  const auto writer = its.writer();
  writer->write(text, *fit);
  writer->end(text);
  pattern_reader reader(text, &its);
  size_t durations = 0;  // a long space inside ends a signal of some forms
  while (const auto back = reader.next()) {
    require(std::holds_alternative<pattern>(back->what));
    durations += std::get<pattern>(back->what).durations.size();
  }
  require(durations == fit->durations.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
  const form* const its = find_form(FORM);
  pattern_reader reader(text, its);
  while (const auto found = reader.next()) {
    require(found->line > 0);
    if (const auto* const fault = std::get_if<bad_line>(&found->what)) {
      require(fault->column > 0 && !fault->what.empty());
    } else {
      require_to_come_back(*its, std::get<pattern>(found->what));
    }
  }
  return 0;
}
