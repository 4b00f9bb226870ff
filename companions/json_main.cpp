// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-json: one JSON object per infrared pattern, with what each decoder family says of it.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "companions/formats/inputs.h"
#include "companions/json_record.h"
#include "companions/json_text.h"
#include "companions/options.h"
#include "lib/irp/error.h"
#include "lib/irp/installed.h"
#include "lib/irp/message.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

/// Tells a person at a terminal how far a long file has come.
class progress {
 public:
  progress() = default;
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;
  ~progress() { erase(); }

  /// Makes room for a record, which may go to the same terminal.
  void step_aside() {
    if (records_beside_) erase();
  }

  void advance(const input& from) {
    ++patterns_;
    if (!terminal_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ >= kPause) {
      last_ = now;
      text_ = text(from, std::chrono::duration<double>(now - start_).count());
    } else if (drawn_ || text_.empty()) {
      return;
    }
    std::fprintf(stderr, "\r\x1b[K%s", text_.c_str());
    std::fflush(stderr);
    drawn_ = true;
  }

 private:
  void erase() {
    if (!drawn_) return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    drawn_ = false;
  }

  [[nodiscard]] std::string text(const input& from, double seconds) const {
    std::array<char, 100> rate;
    std::snprintf(rate.data(), rate.size(), "%zu patterns, %.0f a second", patterns_,
                  static_cast<double>(patterns_) / seconds);
    struct stat file = {};
    if (from.source == "-" || stat(from.source.c_str(), &file) != 0 || from.position == 0) {
      return rate.data();
    }
    const double done = static_cast<double>(from.position) / static_cast<double>(file.st_size);
    std::array<char, 50> left;
    std::snprintf(left.data(), left.size(), ", %.0f s left in ", seconds / done - seconds);
    return std::string(rate.data()) + left.data() + from.source;
  }

  static constexpr std::chrono::milliseconds kPause{500};
  const bool terminal_ = isatty(STDERR_FILENO) == 1;
  const bool records_beside_ = isatty(STDOUT_FILENO) == 1;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::chrono::steady_clock::time_point last_ = start_;
  size_t patterns_ = 0;
  std::string text_;
  bool drawn_ = false;
};

/// The definitions of messages. Without them signals are read all the same.
irp::Protocols definitions() {
  try {
    return irp::installed_protocols();
  } catch (const irp::Error& error) {
    std::fprintf(stderr, "vantrel-json: no messages are read: %s\n", error.what());
    return {};
  }
}

int run(int argc, char** argv) {
  bool first = false;
  std::vector<std::string> files;
  options line("vantrel-json", "Reads infrared patterns and writes a JSON object for each.");
  line.add_flag(
      "-1,--first", first,
      "Stop at the first pattern that is named: by the analysis, the matchers or a message");
  line.add_files(files);
  if (const auto status = line.read(argc, argv)) return *status;

  const irp::Protocols known = definitions();
  const irp::MessageReader messages(known);
  progress shown;
  const bool seen_at_once = isatty(STDOUT_FILENO) == 1;
  bool found = false;
  const bool ok = read_inputs(files, [&](const input& from) {
    const record made =
        make_record(from, messages, from.live ? std::optional(now_text()) : std::nullopt);
    shown.step_aside();
    std::cout << made.json << '\n';
    if (from.live || seen_at_once) std::cout.flush();
    shown.advance(from);
    if (!std::cout) return verdict::kStop;
    if (first && made.named) {
      found = true;
      return verdict::kStop;
    }
    return made.fault ? verdict::kFailed : verdict::kGoOn;
  });
  return finish("vantrel-json", first ? found : ok);
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a pattern, its answer shows
  return run_guarded("vantrel-json", run, argc, argv);
}
