// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/result.h"

#include <cstdio>

namespace {

ir_result_sink result_sink = nullptr;
void* result_user = nullptr;

}  // namespace

void set_result_sink(ir_result_sink sink, void* user) {
  result_sink = sink;
  result_user = user;
}

void report_result(const ir_result& result) {
  if (result_sink != nullptr) {
    result_sink(result, result_user);
  } else {
    std::fwrite(result.line.data(), 1, result.line.size(), stdout);
  }
}
