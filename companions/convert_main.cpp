// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-convert: infrared signals from one text form into another.
#include <iostream>
#include <string>
#include <vector>

#include "companions/convert.h"
#include "companions/formats/inputs.h"
#include "companions/options.h"

namespace {

using namespace companions;

/// Writes what was read, as it comes.
class conversion {
 public:
  conversion(const form& to, bool split)
      : fitting_(to, std::cerr), writer_(to.writer()), split_(split) {}

  verdict take(const input& from) {
    if (const auto* fault = std::get_if<bad_line>(&from.read.what)) {
      print_fault(from, *fault);
      return verdict::kFailed;
    }
    const auto& signal = std::get<pattern>(from.read.what);
    const std::string place = from.source + ':' + std::to_string(from.read.line);
    bool ok = true;
    for (pattern& part : split_ ? split_at_gaps(signal) : std::vector<pattern>{signal}) {
      if (const auto fit = fitting_.fit(std::move(part), place)) {
        writer_->write(std::cout, *fit);
      } else {
        ok = false;
      }
    }
    if (from.live) std::cout.flush();
    if (!std::cout) return verdict::kStop;
    return ok ? verdict::kGoOn : verdict::kFailed;
  }

  void end() {
    writer_->end(std::cout);
    std::cout.flush();
    fitting_.report();
  }

 private:
  fitting fitting_;
  std::unique_ptr<form_writer> writer_;
  bool split_;
};

int run(int argc, char** argv) {
  std::string from;
  std::string to = "raw";
  bool split = false;
  std::vector<std::string> files;
  options line("vantrel-convert", "Converts infrared signals from one text form into another.");
  line.add_form("-f,--from", from, "The form of the files; told by their text without it");
  line.add_form("-t,--to", to, "The form to write; raw without it");
  line.add_flag("-s,--split", split, "Make a signal of every part between spaces of over 14 ms");
  line.add_files(files);
  if (const auto status = line.read(argc, argv)) return *status;

  conversion all(*find_form(to), split);
  const bool ok = read_inputs(
      files, [&](const input& found) { return all.take(found); },
      from.empty() ? nullptr : find_form(from));
  all.end();
  return finish("vantrel-convert", ok);
}

}  // namespace

int main(int argc, char** argv) {
  return run_guarded("vantrel-convert", run, argc, argv);
}
