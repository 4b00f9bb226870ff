// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-explain: tells which protocols came closest to a pattern, and what stopped each.
#include <iostream>
#include <string>
#include <vector>

#include "companions/explain.h"
#include "companions/formats/form.h"
#include "companions/formats/inputs.h"
#include "companions/options.h"

namespace {

using namespace companions;

int run(int argc, char** argv) {
  std::string protocol;
  std::vector<std::string> files;
  options line("vantrel-explain",
               "Tells which protocols came closest to a pattern, and what stopped each.");
  line.add_option("-p,--protocol", protocol, "Tell of this one alone, however far it is")
      ->type_name("NAME");
  line.add_files(files);
  if (const auto status = line.read(argc, argv)) return *status;

  const bool ok = read_inputs(files, [&](const input& from) {
    if (const auto* fault = std::get_if<bad_line>(&from.read.what)) {
      print_fault(from, *fault);
      return verdict::kFailed;
    }
    std::cout << from.source << ':' << from.read.line << ": "
              << explain(frame_of(std::get<pattern>(from.read.what)), protocol);
    if (from.live) std::cout.flush();
    return std::cout ? verdict::kGoOn : verdict::kStop;
  });
  return finish("vantrel-explain", ok);
}

}  // namespace

int main(int argc, char** argv) {
  return run_guarded("vantrel-explain", run, argc, argv);
}
