// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-json: one JSON object per infrared pattern, with what each decoder family says of it.
#include <getopt.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "companions/inputs.h"
#include "companions/json_record.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

constexpr const char* kUsage =
    "usage: vantrel-json [--first] [FILE...]\n"
    "Reads infrared patterns (standard input by default) and writes a JSON object for each.\n"
    "  -1, --first  stop at the first pattern that the signal analysis or the matchers name\n"
    "  -h, --help   show this help\n";

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
    struct stat file {};
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
  constexpr std::array<option, 3> kOptions = {
      {{"first", no_argument, nullptr, '1'}, {"help", no_argument, nullptr, 'h'}, {}}};
  bool first = false;
  for (int c = 0; (c = getopt_long(argc, argv, "1h", kOptions.data(), nullptr)) != -1;) {
    switch (c) {
      case '1':
        first = true;
        break;
      case 'h':
        std::fputs(kUsage, stdout);
        return EXIT_SUCCESS;
      default:
        std::fputs(kUsage, stderr);
        return EXIT_FAILURE;
    }
  }

  progress shown;
  bool found = false;
  const bool ok = read_inputs(argc - optind, argv + optind, [&](const input& from) {
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
