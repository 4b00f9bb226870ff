// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "companions/clusters.h"
#include "companions/plot.h"

namespace companions {

namespace {

constexpr double kWidth = 1000;  // pixels of the picture; long signals take more, so that their
constexpr double kMostWidth = 16000;  // bits have room
constexpr double kMargin = 20;
constexpr double kWaveHeight = 44;
constexpr double kSignalHeight = 122;  // title, wave, bits, burst numbers
constexpr double kAxisHeight = 34;
constexpr double kLegendHeight = 28;
constexpr double kCharacter = 6.2;  // width of a small digit

struct role_style {
  role its;
  const char* name;  // of the style
  const char* legend;
};

constexpr std::array<role_style, 8> kRoles = {{{role::kLeadIn, "lead", "lead-in"},
                                               {role::kZero, "zero", "0"},
                                               {role::kOne, "one", "1"},
                                               {role::kBit, "part", "part of bits"},
                                               {role::kStop, "plain", "stop mark"},
                                               {role::kGap, "gap", "gap"},
                                               {role::kOdd, "odd", "like no bit"},
                                               {role::kPlain, "plain", "not read"}}};

const char* class_of(role r) {
  const auto style =
      std::find_if(kRoles.begin(), kRoles.end(), [r](auto& s) { return s.its == r; });
  return style->name;
}

constexpr const char* kStyle =
    "<style>\n"
    "text{font-family:sans-serif;fill:#222}\n"
    ".title{font-size:13px;font-weight:bold}\n"
    ".small{font-size:10px;text-anchor:middle;fill:#555}\n"
    ".label{font-size:10px;text-anchor:end;fill:#555}\n"
    ".number{font-size:10px;fill:#555}\n"
    ".key,.bit{font-size:11px}\n"
    ".line{stroke:#888;stroke-width:1;fill:none}\n"
    ".plain{fill:#444}.lead{fill:#8e44ad}.zero{fill:#2471a3}.one{fill:#1e8449}\n"
    ".part{fill:#117a8b}.gap{fill:#999}.odd{fill:#c0392b}\n"
    "</style>\n";

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '&':
        safe += "&amp;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

/// Writes elements with coordinates of one decimal, the same on every machine and locale.
class svg {
 public:
  svg(std::ostream& out, double width, double height) : out_(out) {
    out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << number(width) << "\" height=\""
         << number(height) << "\" viewBox=\"0 0 " << number(width) << ' ' << number(height)
         << "\">\n"
         << kStyle << "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
  }
  svg(const svg&) = delete;
  svg& operator=(const svg&) = delete;
  ~svg() { out_ << "</svg>\n"; }

  void rect(double x, double y, double width, double height, const char* style) {
    out_ << "<rect class=\"" << style << "\" x=\"" << number(x) << "\" y=\"" << number(y)
         << "\" width=\"" << number(std::max(width, 0.5)) << "\" height=\"" << number(height)
         << "\"/>\n";
  }
  void line(double x1, double y1, double x2, double y2) {
    out_ << "<path class=\"line\" d=\"M" << number(x1) << ' ' << number(y1) << 'L' << number(x2)
         << ' ' << number(y2) << "\"/>\n";
  }
  void text(double x, double y, const char* style, std::string_view what) {
    out_ << "<text class=\"" << style << "\" x=\"" << number(x) << "\" y=\"" << number(y) << "\">"
         << escaped(what) << "</text>\n";
  }

 private:
  static std::string number(double value) {
    const auto tenths = std::lround(value * 10);
    std::string text = std::to_string(tenths / 10);
    if (tenths % 10 != 0) text += '.' + std::to_string(std::labs(tenths % 10));
    return text;
  }
  std::ostream& out_;
};

int64_t length_of(const plotted& signal) {
  return std::accumulate(signal.durations.begin(), signal.durations.end(), int64_t{0});
}

/// Writes texts side by side in a row, and leaves out those that have no room.
class label_row {
 public:
  label_row(svg& picture, double y, const char* style) : picture_(picture), y_(y), style_(style) {}
  /// REQUIRES: the x of the texts rise. `x` is where the text begins.
  void add(double x, std::string_view what) {
    if (x < taken_to_ - kSlack) return;
    picture_.text(x, y_, style_, what);
    taken_to_ = x + width_of(what);
  }
  static double width_of(std::string_view what) {
    return kCharacter * static_cast<double>(what.size()) + 2;
  }

 private:
  svg& picture_;
  double y_;
  const char* style_;
  static constexpr double kSlack = 0.5;  // of pixels, for what a scale leaves
  double taken_to_ = 0;
};

void draw_signal(svg& picture, const plotted& signal, double top, double pixels_per_us) {
  picture.text(kMargin, top + 14, "title", signal.title);
  const double high = top + 26;
  const double low = high + kWaveHeight;
  label_row numbers(picture, low + 32, "number");
  double x = kMargin;
  for (size_t i = 0; i < signal.durations.size(); ++i) {
    const double width = signal.durations[i] * pixels_per_us;
    const char* const style = class_of(signal.form.roles[i]);
    if (i % 2 == 0) {
      picture.rect(x, high, width, kWaveHeight, style);
      numbers.add(x, std::to_string(i / 2 + 1));
    } else {
      picture.rect(x, low - 1.5, width, 1.5, style);
    }
    x += width;
  }
  label_row bits(picture, low + 15, "bit");
  for (const drawn_bits& symbol : bits_of(signal)) {
    bits.add(kMargin + static_cast<double>(symbol.at_us) * pixels_per_us, symbol.bits);
  }
}

void draw_axis(svg& picture, double y, double to_us, double pixels_per_us) {
  const int64_t step = round_up_nicely(70 / pixels_per_us);
  picture.line(kMargin, y, kMargin + to_us * pixels_per_us, y);
  for (int64_t us = 0; static_cast<double>(us) <= to_us; us += step) {
    const double x = kMargin + static_cast<double>(us) * pixels_per_us;
    picture.line(x, y, x, y + 5);
    picture.text(x, y + 17, "small", std::to_string(us));
  }
  picture.text(kMargin + to_us * pixels_per_us, y + 30, "label", "us");
}

/// What the colours of these signals mean.
void draw_legend(svg& picture, const std::vector<plotted>& signals, double top) {
  constexpr double kSquare = 10;
  double x = kMargin;
  for (const role_style& style : kRoles) {
    const bool used = std::any_of(signals.begin(), signals.end(), [&](const plotted& signal) {
      const auto& roles = signal.form.roles;
      return std::find(roles.begin(), roles.end(), style.its) != roles.end();
    });
    if (!used) continue;
    picture.rect(x, top, kSquare, kSquare, style.name);
    picture.text(x + kSquare + 4, top + kSquare - 1, "key", style.legend);
    x += kSquare + label_row::width_of(style.legend) + 20;
  }
}

/// How many pixels a µs takes: the longest signal fills the width, or more if bits need more room.
double scale_of(const std::vector<plotted>& signals, double longest_us) {
  double scale = 0;
  for (const plotted& signal : signals) {
    const auto bits = bits_of(signal);
    for (size_t i = 1; i < bits.size(); ++i) {
      const auto apart = static_cast<double>(bits[i].at_us - bits[i - 1].at_us);
      scale = std::max(scale, label_row::width_of(bits[i - 1].bits) / std::max(1.0, apart));
    }
  }
  return std::clamp(scale, (kWidth - 2 * kMargin) / longest_us,
                    (kMostWidth - 2 * kMargin) / longest_us);
}

/// A label over its line, in the lowest row that has room for it.
struct placed_label {
  double x;       // of the line
  double middle;  // of the text, which stays within the picture
  size_t row;
  std::string text;
};

std::vector<placed_label> place_labels(const std::vector<cluster>& clusters, double pixels_per_us) {
  std::vector<placed_label> placed;
  std::vector<double> taken_to;  // by row
  for (const cluster& c : clusters) {
    const double x = kMargin + c.mean * pixels_per_us;
    std::string text = std::to_string(std::lround(c.mean)) + " (" + std::to_string(c.count) + ")";
    const double half = label_row::width_of(text) / 2;
    const double middle = std::clamp(x, half, std::max(half, kWidth - half));
    const auto free = std::find_if(taken_to.begin(), taken_to.end(),
                                   [&](double end) { return end <= middle - half; });
    const auto row = static_cast<size_t>(free - taken_to.begin());
    if (free == taken_to.end()) taken_to.push_back(0);
    taken_to[row] = middle + half;
    placed.push_back({x, middle, row, std::move(text)});
  }
  return placed;
}

/// The histogram of one kind of length, with its clusters labelled.
class panel {
 public:
  /// REQUIRES: there are such lengths.
  explicit panel(const length_kind& kind)
      : kind_(kind),
        to_us_(std::max(1.0, 1.02 * kind.counts.rbegin()->first)),
        pixels_per_us_((kWidth - 2 * kMargin) / to_us_),
        labels_(place_labels(find_clusters(kind.counts), pixels_per_us_)) {
    for (const placed_label& label : labels_) rows_ = std::max(rows_, label.row + 1);
  }
  [[nodiscard]] double height() const { return ground() + kAxisHeight + kMargin; }

  void draw(svg& picture, double top) const {
    picture.text(kMargin, top + kTitleHeight / 2, "title",
                 std::to_string(kind_.total) + ' ' + kind_.name + ": how often each length");
    draw_bars(picture, top + ground());
    for (const placed_label& label : labels_) {
      const double y = top + kTitleHeight + kLabelHeight * static_cast<double>(rows_ - label.row);
      picture.line(label.x, y, label.x, top + ground());
      picture.text(label.middle, y - 3, "small", label.text);
    }
    draw_axis(picture, top + ground(), to_us_, pixels_per_us_);
  }

 private:
  static constexpr double kTitleHeight = 28;
  static constexpr double kLabelHeight = 14;
  static constexpr double kPlotHeight = 150;
  static constexpr size_t kBins = 240;

  /// How far below its top the axis is.
  [[nodiscard]] double ground() const {
    return kTitleHeight + kLabelHeight * static_cast<double>(rows_) + 8 + kPlotHeight;
  }

  void draw_bars(svg& picture, double floor) const {
    const double bin_us = std::max(1.0, to_us_ / static_cast<double>(kBins));
    std::array<size_t, kBins + 1> bins{};
    for (const auto& [length, times] : kind_.counts) {
      bins[std::min(kBins, static_cast<size_t>(length / bin_us))] += times;
    }
    const auto most = static_cast<double>(*std::max_element(bins.begin(), bins.end()));
    const double width = bin_us * pixels_per_us_;
    for (size_t i = 0; i < bins.size(); ++i) {
      if (bins[i] == 0) continue;
      const double height = kPlotHeight * static_cast<double>(bins[i]) / most;
      picture.rect(kMargin + static_cast<double>(i) * width, floor - height, width - 0.5, height,
                   "zero");
    }
  }

  const length_kind& kind_;
  double to_us_;
  double pixels_per_us_;
  std::vector<placed_label> labels_;
  size_t rows_ = 0;  // of labels
};

}  // namespace

void plot_svg(std::ostream& out, const std::vector<plotted>& signals) {
  int64_t longest = 1;
  for (const plotted& signal : signals) longest = std::max(longest, length_of(signal));
  const auto to_us = static_cast<double>(longest);
  const double pixels_per_us = scale_of(signals, to_us);
  const double bottom = kMargin + kSignalHeight * static_cast<double>(signals.size());

  svg picture(out, std::max(kWidth, to_us * pixels_per_us + 2 * kMargin),
              bottom + kAxisHeight + kLegendHeight);
  double top = kMargin / 2;
  for (const plotted& signal : signals) {
    draw_signal(picture, signal, top, pixels_per_us);
    top += kSignalHeight;
  }
  draw_axis(picture, bottom, to_us, pixels_per_us);
  draw_legend(picture, signals, bottom + kAxisHeight);
}

void histogram_svg(std::ostream& out, const histogram& lengths) {
  std::vector<panel> panels;
  double height = kMargin;
  for (const length_kind& kind : lengths.kinds()) {
    if (kind.total == 0) continue;
    panels.emplace_back(kind);
    height += panels.back().height();
  }
  svg picture(out, kWidth, height);
  double top = kMargin;
  for (const panel& p : panels) {
    p.draw(picture, top);
    top += p.height();
  }
}

}  // namespace companions
