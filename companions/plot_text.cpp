// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <span>
#include <utility>

#include "companions/clusters.h"
#include "companions/plot.h"

namespace companions {

namespace {

constexpr int kFewestColumns = 20;
constexpr int kColumnsPerTick = 10;
constexpr double kMostColumns = 1e6;  // of one signal, whose silences may be of any length
constexpr std::string_view kMark = "█";
constexpr std::string_view kSpace = "▁";
constexpr std::string_view kPlainColour = "\x1b[0m";

std::string_view colour_of(role r) {
  switch (r) {
    case role::kLeadIn:
      return "\x1b[35m";
    case role::kZero:
      return "\x1b[34m";
    case role::kOne:
      return "\x1b[32m";
    case role::kBit:
      return "\x1b[36m";
    case role::kGap:
      return "\x1b[90m";
    case role::kOdd:
      return "\x1b[31m";
    case role::kStop:
    case role::kPlain:
      break;
  }
  return kPlainColour;
}

/// One row of the wave: columns first to end - 1, `step` µs each.
struct row {
  int first, end;
  int64_t step;
};

/// Walks a pattern in step with the columns.
class cursor {
 public:
  explicit cursor(const std::vector<int>& durations) : durations_(durations) {}
  /// The duration that covers this time; the times asked for only rise.
  size_t at(int64_t us) {
    while (entry_ + 1 < durations_.size() && us >= start_ + durations_[entry_]) {
      start_ += durations_[entry_++];
    }
    return entry_;
  }

 private:
  const std::vector<int>& durations_;
  size_t entry_ = 0;
  int64_t start_ = 0;
};

void draw_wave(std::ostream& out, const plotted& signal, const row& r, cursor& walk, bool colour) {
  role shown = role::kPlain;
  for (int column = r.first; column < r.end; ++column) {
    const size_t entry = walk.at(column * r.step + r.step / 2);
    if (const role its = signal.form.roles[entry]; colour && its != shown) {
      out << colour_of(its);
      shown = its;
    }
    out << (entry % 2 == 0 ? kMark : kSpace);
  }
  if (shown != role::kPlain) out << kPlainColour;
  out << '\n';
}

/// Takes the bits that begin in this row from the front of the rest, and writes each below the
/// start of its burst.
void draw_bits(std::ostream& out, std::span<const drawn_bits>& rest, const row& r) {
  std::string line;
  for (; !rest.empty(); rest = rest.subspan(1)) {
    const drawn_bits& symbol = rest.front();
    const int64_t column = symbol.at_us / r.step - r.first;
    if (column >= r.end - r.first) break;
    if (std::cmp_less(line.size(), column)) line.resize(static_cast<size_t>(column), ' ');
    line += symbol.bits;
  }
  if (!line.empty()) out << line << '\n';
}

void draw_axis(std::ostream& out, const row& r) {
  std::string ticks;
  std::string labels;
  for (int column = r.first; column < r.end; ++column) {
    const bool tick = column % kColumnsPerTick == 0;
    ticks += tick ? "┬" : "─";
    const auto place = static_cast<size_t>(column - r.first);
    const std::string label = std::to_string(column * r.step);
    if (tick && place >= labels.size() && column + static_cast<int>(label.size()) <= r.end) {
      labels.resize(place, ' ');
      labels += label + ' ';
    }
  }
  if (labels.ends_with(' ')) labels.pop_back();
  out << ticks << '\n' << labels << '\n';
}

void draw_bars(std::ostream& out, const length_kind& kind, const screen& to) {
  constexpr int kLabelColumns = 24;
  if (kind.total == 0) return;
  out << kind.name << '\n';
  const auto clusters = find_clusters(kind.counts);
  size_t most = 1;
  for (const cluster& c : clusters) most = std::max(most, c.count);
  const int room = std::max(1, to.columns - kLabelColumns);
  auto at = kind.counts.begin();
  for (const cluster& c : clusters) {
    // Within a cluster one line for each part of its range that holds anything.
    const auto step = static_cast<int>(round_up_nicely(std::max(1.0, c.mean / 20)));
    out << "  about " << std::lround(c.mean) << " us: " << c.count << '\n';
    while (at != kind.counts.end() && at->first <= c.high) {
      const int low = at->first / step * step;
      size_t n = 0;
      for (; at != kind.counts.end() && at->first <= c.high && at->first < low + step; ++at) {
        n += at->second;
      }
      std::array<char, 64> label;
      std::snprintf(label.data(), label.size(), "  %6d..%-6d %5zu ", low, low + step - 1, n);
      out << label.data();
      const size_t bar = std::max<size_t>(1, n * static_cast<size_t>(room) / most);
      for (size_t i = 0; i < bar; ++i) out << "█";
      out << '\n';
    }
  }
}

}  // namespace

void plot_text(std::ostream& out, const plotted& signal, const screen& to) {
  out << signal.title << '\n';
  if (signal.durations.empty()) {
    out << '\n';
    return;
  }
  // The shortest duration still covers some columns; a stray sliver may not stretch the rest.
  auto sorted = signal.durations;
  const auto tenth = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 10);
  std::nth_element(sorted.begin(), tenth, sorted.end());
  const auto total = std::accumulate(signal.durations.begin(), signal.durations.end(), int64_t{0});
  const double least = static_cast<double>(total) / kMostColumns;
  const int64_t step = round_up_nicely(std::max({1.0, *tenth / 3.0, least}));
  const int columns = static_cast<int>((total + step - 1) / step);
  const int width = std::max(to.columns, kFewestColumns) / kColumnsPerTick * kColumnsPerTick;

  const auto bits = bits_of(signal);
  std::span rest(bits);
  cursor walk(signal.durations);
  for (int first = 0; first < columns; first += width) {
    const row r{first, std::min(first + width, columns), step};
    draw_wave(out, signal, r, walk, to.colour);
    draw_bits(out, rest, r);
    draw_axis(out, r);
  }
  out << '\n';
}

void histogram_text(std::ostream& out, const histogram& lengths, const screen& to) {
  for (const length_kind& kind : lengths.kinds()) draw_bars(out, kind, to);
}

}  // namespace companions
