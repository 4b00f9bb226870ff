// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-plot: draws infrared patterns to scale.
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "companions/formats/inputs.h"
#include "companions/heard.h"
#include "companions/options.h"
#include "companions/plot.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

constexpr int kDefaultColumns = 80;

screen this_terminal() {
  screen found{kDefaultColumns, false};
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    found.columns = size.ws_col;
  } else if (const char* columns = std::getenv("COLUMNS"); columns != nullptr) {
    const long n = std::strtol(columns, nullptr, 10);
    if (n > 0 && n <= 10000) found.columns = static_cast<int>(n);
  }
  const char* const no_colour = std::getenv("NO_COLOR");
  found.colour = isatty(STDOUT_FILENO) == 1 && (no_colour == nullptr || *no_colour == '\0');
  return found;
}

plotted prepare(const input& from, bool bytes) {
  heard_signal heard = hear(std::get<pattern>(from.read.what));
  std::string title = analysis_line(heard);
  return {from.source + ':' + std::to_string(from.read.line), std::move(title), heard.durations,
          bytes ? heard.form : drawn_coding(heard)};
}

bool write_svg(const std::string& path, const std::vector<plotted>& signals, bool histogram) {
  std::ofstream file;
  const bool to_stdout = path == "-";
  if (!to_stdout) {
    file.open(path);
    if (!file) {
      std::perror(path.c_str());
      return false;
    }
  }
  std::ostream& out = to_stdout ? std::cout : file;
  if (histogram) {
    histogram_svg(out, signals);
  } else {
    plot_svg(out, signals);
  }
  out.flush();
  if (!out) std::fprintf(stderr, "vantrel-plot: could not write %s\n", path.c_str());
  return static_cast<bool>(out);
}

int run(int argc, char** argv) {
  std::string svg_path;
  bool histogram = false;
  bool bytes = false;
  bool msb_first = false;
  std::vector<std::string> files;
  options line("vantrel-plot", "Draws infrared patterns to scale.");
  line.add_option("-s,--svg", svg_path,
                  "Write one SVG picture instead of text; - is standard output")
      ->type_name("OUT.svg");
  line.add_flag("-H,--histogram", histogram,
                "How long marks, spaces and bursts are, instead of the waves");
  line.add_flag("-b,--bytes", bytes, "The bytes, and what differs among the patterns")
      ->excludes("--svg")
      ->excludes("--histogram");
  line.add_flag("-m,--msb", msb_first, "Bytes whose first bit sent is the most significant one")
      ->needs("--bytes");
  line.add_files(files);
  if (const auto status = line.read(argc, argv)) return *status;

  const screen terminal = this_terminal();
  std::vector<plotted> kept;  // for what needs all patterns at once
  const bool together = histogram || bytes || !svg_path.empty();
  bool ok = read_inputs(files, [&](const input& from) {
    if (const auto* fault = std::get_if<bad_line>(&from.read.what)) {
      print_fault(from, *fault);
      return verdict::kFailed;
    }
    auto signal = prepare(from, bytes);
    if (together) {
      kept.push_back(std::move(signal));
    } else {
      plot_text(std::cout, signal, terminal);
      if (from.live) std::cout.flush();
    }
    return std::cout ? verdict::kGoOn : verdict::kStop;
  });
  if (!svg_path.empty()) {
    ok = write_svg(svg_path, kept, histogram) && ok;
  } else if (histogram) {
    histogram_text(std::cout, kept, terminal);
  } else if (bytes) {
    bytes_text(std::cout, kept, msb_first ? bit_order::kMsbFirst : bit_order::kLsbFirst);
  }
  return finish("vantrel-plot", ok);
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a pattern, its answer shows
  return run_guarded("vantrel-plot", run, argc, argv);
}
