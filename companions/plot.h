// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of patterns, drawn to scale: on a terminal and as SVG, as waves and as histograms; and
// their bytes.
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "companions/clusters.h"
#include "companions/heard.h"

namespace companions {

/// A pattern ready to be drawn.
struct plotted {
  std::string place;           // where it was read: source and line
  std::string title;           // the result line
  std::vector<int> durations;  // µs, mark and space in turn, a mark first
  coding form;
};

/// The coding of a signal as pictures show it: the bits are where the signal analysis says, if it
/// could read the signal.
coding drawn_coding(const heard_signal& heard);

/// How a terminal shows text.
struct screen {
  int columns;
  bool colour;
};

void plot_text(std::ostream& out, const plotted& signal, const screen& to);
void plot_svg(std::ostream& out, const std::vector<plotted>& signals);

/// The bytes of every section, side by side for all patterns that have it, and what differs among
/// them: the bytes marked, their bits spelled in the order sent.
void bytes_text(std::ostream& out, const std::vector<plotted>& signals, bit_order order);

/// A round number of µs (1, 2 or 5 times a power of ten), at least `us`.
int64_t round_up_nicely(double us);

/// A kind of length, and how often each of them occurs, in µs.
struct length_kind {
  const char* name;  // "marks", "spaces" or "bursts", which are a mark and a space
  length_counts counts = {};
  size_t total = 0;
};

/// How long the durations of patterns are, in memory that does not grow with their number: lengths
/// of over 131 ms are counted to 0.001 %.
class histogram {
 public:
  /// `durations`: µs, mark and space in turn, a mark first.
  void add(const std::vector<int>& durations);
  [[nodiscard]] const std::array<length_kind, 3>& kinds() const { return kinds_; }

 private:
  std::array<length_kind, 3> kinds_ = {{{"marks"}, {"spaces"}, {"bursts"}}};
};

void histogram_text(std::ostream& out, const histogram& lengths, const screen& to);
void histogram_svg(std::ostream& out, const histogram& lengths);

/// The bits of one symbol, and where its burst begins in µs; bits of bi-phase codes begin in the
/// middle of theirs, where mark and space meet.
struct drawn_bits {
  int64_t at_us;
  std::string_view bits;
};

/// All bits of a pattern in the order of time. They live as long as it does.
std::vector<drawn_bits> bits_of(const plotted& signal);

}  // namespace companions
