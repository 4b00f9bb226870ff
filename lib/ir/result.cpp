// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/result.h"

#include "lib/libutil/output.h"

namespace {

ir_result_sink result_sink = nullptr;
void* result_user = nullptr;

}  // namespace

text_writer begin_result_line(result_room& room, std::string_view family, std::string_view name) {
  constexpr size_t kFamilyWidth = 8;
  constexpr size_t kNameWidth = 13;
  text_writer line(room);
  line.add(":: ")
      .add_padded(family, kFamilyWidth)
      .add(" :: ")
      .add_padded(name, kNameWidth)
      .add(" -");
  return line;
}

void set_result_sink(ir_result_sink sink, void* user) {
  result_sink = sink;
  result_user = user;
}

void report_result(const ir_result& result) {
  if (result_sink != nullptr) {
    result_sink(result, result_user);
  } else {
    output::print(result.line);
  }
}
