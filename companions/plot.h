// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of patterns, drawn to scale: on a terminal and as SVG, as waves and as histograms.
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "companions/roles.h"

namespace companions {

/// A pattern ready to be drawn.
struct plotted {
  std::string title;           // the result line
  std::vector<int> durations;  // µs, mark and space in turn, a mark first
  shape form;
  bool known;  // the signal analysis named it, so the bits below the bursts are its bits
};

/// How a terminal shows text.
struct screen {
  int columns;
  bool colour;
};

void plot_text(std::ostream& out, const plotted& signal, const screen& to);
void plot_svg(std::ostream& out, const std::vector<plotted>& signals);
void histogram_text(std::ostream& out, const std::vector<plotted>& signals, const screen& to);
void histogram_svg(std::ostream& out, const std::vector<plotted>& signals);

/// A round number of µs (1, 2 or 5 times a power of ten), at least `us`.
int round_up_nicely(double us);

/// The lengths of all marks, of all spaces and of all bursts (mark and space), in µs.
std::array<std::vector<int>, 3> lengths_of(const std::vector<plotted>& signals);

}  // namespace companions
