// SPDX-License-Identifier: GPL-3.0-or-later
// What pictures on a terminal and as SVG have in common.
#include "companions/plot.h"

namespace companions {

namespace {

/// The length in seventeen significant bits, of which there are fewer than 700,000.
int rounded(int length) {
  constexpr int kExact = 1 << 17;
  int unit = 1;
  while (length / unit >= kExact) unit *= 2;
  return (length + unit / 2) / unit * unit;
}

}  // namespace

int64_t round_up_nicely(double us) {
  int64_t power = 1;
  while (static_cast<double>(power * 10) < us) power *= 10;
  for (const int factor : {1, 2, 5}) {
    if (static_cast<double>(factor * power) >= us) return factor * power;
  }
  return 10 * power;
}

void histogram::add(const std::vector<int>& durations) {
  const auto count = [](length_kind& kind, int length) {
    ++kind.counts[rounded(length)];
    ++kind.total;
  };
  for (size_t i = 0; i < durations.size(); ++i) {
    count(kinds_[i % 2], durations[i]);
    if (i % 2 == 1) count(kinds_[2], durations[i - 1] + durations[i]);
  }
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
