// SPDX-License-Identifier: GPL-3.0-or-later
// vantrel-plot: draws infrared patterns to scale.
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "companions/formats/form.h"
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

/// Names what is no pattern on standard error, and hands every pattern to `use` while that is true.
bool read_patterns(const std::vector<std::string>& files,
                   const std::function<bool(const input&)>& use) {
  return read_inputs(files, [&](const input& from) {
    if (const auto* fault = std::get_if<bad_line>(&from.read.what)) {
      print_fault(from, *fault);
      return verdict::kFailed;
    }
    return use(from) ? verdict::kGoOn : verdict::kStop;
  });
}

/// Draws every pattern as it is read.
bool plot_each(const std::vector<std::string>& files, const screen& terminal) {
  return read_patterns(files, [&](const input& from) {
    plot_text(std::cout, prepare(from, false), terminal);
    if (from.live) std::cout.flush();
    return static_cast<bool>(std::cout);
  });
}

/// Patterns for one picture: as many as can be looked at and kept.
bool gather(const std::vector<std::string>& files, bool bytes, std::vector<plotted>& to) {
  constexpr size_t kMostPatterns = 1000;
  size_t durations = 0;
  bool all = true;
  const bool ok = read_patterns(files, [&](const input& from) {
    plotted signal = prepare(from, bytes);
    durations += signal.durations.size();
    all = to.size() < kMostPatterns && durations <= kMostPatternDurations;
    if (all) {
      to.push_back(std::move(signal));
    } else {
      std::cerr << signal.place << ": one picture takes " << kMostPatterns << " patterns and "
                << kMostPatternDurations << " durations; this pattern and the rest are left out\n";
    }
    return all;
  });
  return ok && all;
}

/// What `draw` draws goes to the file of this name, or to standard output for "-".
bool write_svg(const std::string& path, const std::function<void(std::ostream&)>& draw) {
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
  draw(out);
  out.flush();
  if (!to_stdout && !out) {
    std::fprintf(stderr, "vantrel-plot: could not write %s\n", path.c_str());
  }
  return static_cast<bool>(out);
}

int run(int argc, char** argv) {
  std::string svg_path;
  bool as_histogram = false;
  bool bytes = false;
  bool msb_first = false;
  std::vector<std::string> files;
  options line("vantrel-plot", "Draws infrared patterns to scale.");
  line.add_option("-s,--svg", svg_path,
                  "Write one SVG picture instead of text; - is standard output")
      ->type_name("OUT.svg");
  line.add_flag("-H,--histogram", as_histogram,
                "How long marks, spaces and bursts are, instead of the waves");
  line.add_flag("-b,--bytes", bytes, "The bytes, and what differs among the patterns")
      ->excludes("--svg")
      ->excludes("--histogram");
  line.add_flag("-m,--msb", msb_first, "Bytes whose first bit sent is the most significant one")
      ->needs("--bytes");
  line.add_files(files);
  if (const auto status = line.read(argc, argv)) return *status;

  const screen terminal = this_terminal();
  const bool as_svg = !svg_path.empty();
  bool ok = true;
  if (as_histogram) {
    histogram lengths;
    ok = read_patterns(files, [&](const input& from) {
      lengths.add(frame_of(std::get<pattern>(from.read.what)));
      return true;
    });
    if (as_svg) {
      ok = write_svg(svg_path, [&](std::ostream& out) { histogram_svg(out, lengths); }) && ok;
    } else {
      histogram_text(std::cout, lengths, terminal);
    }
  } else if (as_svg || bytes) {
    std::vector<plotted> signals;
    ok = gather(files, bytes, signals);
    if (as_svg) {
      ok = write_svg(svg_path, [&](std::ostream& out) { plot_svg(out, signals); }) && ok;
    } else {
      bytes_text(std::cout, signals, msb_first ? bit_order::kMsbFirst : bit_order::kLsbFirst);
    }
  } else {
    ok = plot_each(files, terminal);
  }
  return finish("vantrel-plot", ok);
}

}  // namespace

int main(int argc, char** argv) {
  set_loglevel(0);  // what a decoder could not make of a pattern, its answer shows
  return run_guarded("vantrel-plot", run, argc, argv);
}
