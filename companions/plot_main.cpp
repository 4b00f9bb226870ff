// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-plot: draws infrared patterns to scale.
#include <getopt.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "companions/decoders.h"
#include "companions/inputs.h"
#include "companions/plot.h"
#include "lib/liblog/logging.h"

namespace {

using namespace companions;

constexpr const char* kUsage =
    "usage: vantrel-plot [--svg OUT.svg] [--histogram] [FILE...]\n"
    "Draws the infrared patterns of the files (standard input by default) to scale.\n"
    "  -s, --svg OUT.svg  write one SVG picture instead of text (- for standard output)\n"
    "  -H, --histogram    how long marks, spaces and bursts are, instead of the waves\n"
    "  -h, --help         show this help\n";
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

/// Whether the analysis named a protocol whose bursts are one bit each.
bool bursts_are_bits(const std::vector<analysis_answer>& answers) {
  constexpr std::array<std::string_view, 8> kOthers = {"Gap-",    "XMP",   "Velodyne", "Nokia",
                                                       "DirecTV", "Epson", "Xiaomi",   "Zenith"};
  if (answers.empty()) return false;
  const std::string& name = answers[0].protocol;
  return std::none_of(kOthers.begin(), kOthers.end(),
                      [&](std::string_view other) { return name.starts_with(other); });
}

plotted prepare(std::vector<int> durations) {
  plotted signal{analysis_line(durations), std::move(durations), {}, false};
  signal.form = find_shape(signal.durations);
  signal.known = bursts_are_bits(ask_analysis(signal.durations));
  return signal;
}

bool write_svg(const char* path, const std::vector<plotted>& signals, bool histogram) {
  std::ofstream file;
  const bool to_stdout = std::strcmp(path, "-") == 0;
  if (!to_stdout) {
    file.open(path);
    if (!file) {
      std::perror(path);
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
  if (!out) std::fprintf(stderr, "vantrel-plot: could not write %s\n", path);
  return static_cast<bool>(out);
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a pattern, its answer shows
  constexpr std::array<option, 4> kOptions = {{{"svg", required_argument, nullptr, 's'},
                                               {"histogram", no_argument, nullptr, 'H'},
                                               {"help", no_argument, nullptr, 'h'},
                                               {nullptr, 0, nullptr, 0}}};
  const char* svg_path = nullptr;
  bool histogram = false;
  for (int c = 0; (c = getopt_long(argc, argv, "s:Hh", kOptions.data(), nullptr)) != -1;) {
    switch (c) {
      case 's':
        svg_path = optarg;
        break;
      case 'H':
        histogram = true;
        break;
      case 'h':
        std::fputs(kUsage, stdout);
        return EXIT_SUCCESS;
      default:
        std::fputs(kUsage, stderr);
        return EXIT_FAILURE;
    }
  }

  const screen terminal = this_terminal();
  std::vector<plotted> kept;  // for what needs all patterns at once
  const bool together = histogram || svg_path != nullptr;
  bool ok = read_inputs(argc - optind, argv + optind, [&](const input& from) {
    if (const auto* fault = std::get_if<bad_line>(&from.read.what)) {
      std::fprintf(stderr, "%s:%zu:%zu: %s\n", from.source.c_str(), from.read.line, fault->column,
                   fault->what.c_str());
      return verdict::kFailed;
    }
    auto signal = prepare(std::get<pattern>(from.read.what).durations);
    if (together) {
      kept.push_back(std::move(signal));
    } else {
      plot_text(std::cout, signal, terminal);
      std::cout.flush();
    }
    return std::cout ? verdict::kGoOn : verdict::kStop;
  });
  if (svg_path != nullptr) {
    ok = write_svg(svg_path, kept, histogram) && ok;
  } else if (histogram) {
    histogram_text(std::cout, kept, terminal);
    std::cout.flush();
  }
  if (!std::cout) {
    std::fputs("vantrel-plot: could not write to standard output\n", stderr);
    ok = false;
  }
  return ok ? EXIT_SUCCESS : EXIT_FAILURE;
}
