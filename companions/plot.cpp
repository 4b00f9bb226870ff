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

std::array<length_kind, 3> lengths_of(const std::vector<plotted>& signals) {
  std::array<length_kind, 3> kinds = {{{"marks", {}}, {"spaces", {}}, {"bursts", {}}}};
  for (const plotted& signal : signals) {
    for (size_t i = 0; i < signal.durations.size(); ++i) {
      kinds[i % 2].lengths.push_back(signal.durations[i]);
      if (i % 2 == 1) {
        kinds[2].lengths.push_back(signal.durations[i - 1] + signal.durations[i]);
      }
    }
  }
  return kinds;
}

std::vector<drawn_bits> bits_of(const plotted& signal) {
  const auto per_symbol = static_cast<size_t>(signal.form.bits_per_symbol);
  std::vector<drawn_bits> all;
  size_t entry = 0;
  int64_t at = 0;
  for (const section& s : signal.form.sections) {
    for (size_t i = 0; i < s.bits.size(); i += per_symbol) {
      while (entry < s.marks[i]) at += signal.durations[entry++];
      all.push_back({at, std::string_view(s.bits).substr(i, per_symbol)});
    }
  }
  return all;
}

}  // namespace companions
