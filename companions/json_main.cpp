// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-json: one JSON object per infrared pattern, with what each decoder family says of it.
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "companions/formats/inputs.h"
#include "companions/json_record.h"
#include "companions/options.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

/// Tells a person at a terminal how far a long file has come.
class progress {
 public:
  progress() : shown_to_(isatty(STDERR_FILENO) == 1 ? stderr : nullptr) {}
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;
  ~progress() {
    if (drawn_) std::fputs("\r\x1b[K", shown_to_);
  }

  void advance(const input& from) {
    ++patterns_;
    if (shown_to_ == nullptr) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < kPause) return;
    last_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = static_cast<double>(patterns_) / seconds;
    std::fprintf(shown_to_, "\r\x1b[K%zu patterns, %.0f a second", patterns_, rate);
    struct stat file = {};
    if (from.source != "-" && stat(from.source.c_str(), &file) == 0 && from.position > 0) {
      const double done = static_cast<double>(from.position) / static_cast<double>(file.st_size);
      std::fprintf(shown_to_, ", %.0f s left in %s", seconds / done - seconds, from.source.c_str());
    }
    std::fflush(shown_to_);
    drawn_ = true;
  }

 private:
  static constexpr std::chrono::milliseconds kPause{500};
  std::FILE* shown_to_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point last_ = start_;
  size_t patterns_ = 0;
  bool drawn_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a pattern, its answer shows
  bool first = false;
  std::vector<std::string> files;
  options line("vantrel-json", "Reads infrared patterns and writes a JSON object for each.");
  line.add_flag("-1,--first", first,
                "Stop at the first pattern that the signal analysis or the matchers name");
  line.add_files(files);
  if (const auto status = line.read(argc, argv)) return *status;

  progress shown;
  bool found = false;
  const bool ok = read_inputs(files, [&](const input& from) {
    const record made = make_record(from);
    std::cout << made.json << '\n' << std::flush;
    shown.advance(from);
    if (!std::cout) return verdict::kStop;
    if (first && made.named) {
      found = true;
      return verdict::kStop;
    }
    return made.fault ? verdict::kFailed : verdict::kGoOn;
  });
  if (!std::cout) {
    std::fputs("vantrel-json: could not write to standard output\n", stderr);
    return EXIT_FAILURE;
  }
  return (first ? found : ok) ? EXIT_SUCCESS : EXIT_FAILURE;
}
