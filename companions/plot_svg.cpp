// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>

#include "companions/plot.h"

namespace companions {

namespace {

constexpr double kWidth = 1000;  // pixels of the picture
constexpr double kMargin = 20;
constexpr double kWaveHeight = 44;
constexpr double kSignalHeight = 122;  // title, wave, bits, burst numbers
constexpr double kAxisHeight = 34;
constexpr double kCharacter = 6.2;  // width of a small digit

const char* class_of(role r) {
  switch (r) {
    case role::kLeadIn:
      return "lead";
    case role::kZero:
      return "zero";
    case role::kOne:
      return "one";
    case role::kGap:
      return "gap";
    case role::kOdd:
      return "odd";
    case role::kPlain:
      break;
  }
  return "plain";
}

constexpr const char* kStyle =
    "<style>\n"
    "text{font-family:sans-serif;fill:#222}\n"
    ".title{font-size:13px;font-weight:bold}\n"
    ".small{font-size:10px;text-anchor:middle;fill:#555}\n"
    ".label{font-size:10px;text-anchor:end;fill:#555}\n"
    ".bit{font-size:11px;text-anchor:middle}\n"
    ".line{stroke:#888;stroke-width:1;fill:none}\n"
    ".plain{fill:#444}.lead{fill:#8e44ad}.zero{fill:#2471a3}.one{fill:#1e8449}\n"
    ".gap{fill:#999}.odd{fill:#c0392b}\n"
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
  svg(std::ostream& out, double height) : out_(out) {
    out_ << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << number(kWidth) << "\" height=\""
         << number(height) << "\" viewBox=\"0 0 " << number(kWidth) << ' ' << number(height)
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

void draw_signal(svg& picture, const plotted& signal, double top, double pixels_per_us) {
  picture.text(kMargin, top + 14, "title", signal.title);
  const double high = top + 26;
  const double low = high + kWaveHeight;
  double x = kMargin;
  double numbered_to = 0;  // where the last burst number ends
  for (size_t i = 0; i < signal.durations.size(); ++i) {
    const double width = signal.durations[i] * pixels_per_us;
    const char* const style = class_of(signal.form.roles[i]);
    if (i % 2 == 0) {
      picture.rect(x, high, width, kWaveHeight, style);
      const std::string burst = std::to_string(i / 2 + 1);
      const double room = kCharacter * static_cast<double>(burst.size());
      if (x - room / 2 > numbered_to) {
        picture.text(x + width / 2, low + 32, "small", burst);
        numbered_to = x + width / 2 + room / 2 + 2;
      }
      if (const size_t b = i / 2; signal.known && b < signal.form.bits.size()) {
        const char bit = signal.form.bits[b];
        if (bit != ' ') picture.text(x + width / 2, low + 15, "bit", std::string_view(&bit, 1));
      }
    } else {
      picture.rect(x, low - 1.5, width, 1.5, style);
    }
    x += width;
  }
}

void draw_axis(svg& picture, double y, double to_us, double pixels_per_us) {
  const int step = round_up_nicely(70 / pixels_per_us);
  picture.line(kMargin, y, kWidth - kMargin, y);
  for (int64_t us = 0; static_cast<double>(us) <= to_us; us += step) {
    const double x = kMargin + static_cast<double>(us) * pixels_per_us;
    picture.line(x, y, x, y + 5);
    picture.text(x, y + 17, "small", std::to_string(us));
  }
  picture.text(kWidth - kMargin, y + 30, "label", "us");
}

}  // namespace

void plot_svg(std::ostream& out, const std::vector<plotted>& signals) {
  int64_t longest = 1;
  for (const plotted& signal : signals) longest = std::max(longest, length_of(signal));
  const double pixels_per_us = (kWidth - 2 * kMargin) / static_cast<double>(longest);
  const double bottom = kMargin + kSignalHeight * static_cast<double>(signals.size());

  svg picture(out, bottom + kAxisHeight);
  double top = kMargin / 2;
  for (const plotted& signal : signals) {
    draw_signal(picture, signal, top, pixels_per_us);
    top += kSignalHeight;
  }
  draw_axis(picture, bottom, static_cast<double>(longest), pixels_per_us);
}

void histogram_svg(std::ostream& out, const std::vector<plotted>& signals) {
  constexpr std::array<const char*, 3> kNames = {"marks", "spaces", "bursts"};
  constexpr double kPlotHeight = 150;
  constexpr double kPanelHeight = 220;
  constexpr int kBins = 240;
  const auto lengths = lengths_of(signals);

  svg picture(out, kMargin + kPanelHeight * static_cast<double>(lengths.size()));
  double top = kMargin;
  for (size_t kind = 0; kind < lengths.size(); ++kind, top += kPanelHeight) {
    picture.text(kMargin, top, "title", kNames[kind]);
    if (lengths[kind].empty()) continue;
    const int longest = *std::max_element(lengths[kind].begin(), lengths[kind].end());
    const double pixels_per_us = (kWidth - 2 * kMargin) / std::max(1.0, longest * 1.02);
    const double bin_us = std::max(1.0, longest * 1.02 / kBins);
    std::vector<size_t> bins(kBins + 1);
    for (const int length : lengths[kind]) {
      ++bins[std::min<size_t>(kBins, static_cast<size_t>(length / bin_us))];
    }
    const double most = static_cast<double>(*std::max_element(bins.begin(), bins.end()));
    const double floor = top + 40 + kPlotHeight;
    for (size_t i = 0; i < bins.size(); ++i) {
      if (bins[i] == 0) continue;
      const double height = kPlotHeight * static_cast<double>(bins[i]) / most;
      picture.rect(kMargin + static_cast<double>(i) * bin_us * pixels_per_us, floor - height,
                   bin_us * pixels_per_us - 0.5, height, "zero");
    }
    double labelled_to = 0;
    for (const cluster& c : find_clusters(lengths[kind])) {
      const double x = kMargin + c.mean * pixels_per_us;
      const std::string label =
          std::to_string(std::lround(c.mean)) + " (" + std::to_string(c.count) + ")";
      const double half = kCharacter * static_cast<double>(label.size()) / 2;
      picture.line(x, floor - kPlotHeight - 8, x, floor);
      if (x - half < labelled_to) continue;
      picture.text(x, floor - kPlotHeight - 12, "small", label);
      labelled_to = x + half;
    }
    draw_axis(picture, floor, longest * 1.02, pixels_per_us);
  }
}

}  // namespace companions
