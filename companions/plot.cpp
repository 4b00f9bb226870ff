// SPDX-License-Identifier: GPL-3.0-or-later
// What pictures on a terminal and as SVG have in common.
#include "companions/plot.h"

namespace companions {

int round_up_nicely(double us) {
  int power = 1;
  while (power * 10 < us) power *= 10;
  for (const int factor : {1, 2, 5}) {
    if (factor * power >= us) return factor * power;
  }
  return 10 * power;
}

std::array<std::vector<int>, 3> lengths_of(const std::vector<plotted>& signals) {
  std::array<std::vector<int>, 3> lengths;
  for (const plotted& signal : signals) {
    for (size_t i = 0; i < signal.durations.size(); ++i) {
      lengths[i % 2].push_back(signal.durations[i]);
      if (i % 2 == 1) lengths[2].push_back(signal.durations[i - 1] + signal.durations[i]);
    }
  }
  return lengths;
}

}  // namespace companions
