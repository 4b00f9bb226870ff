// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cmath>

#include "companions/bursts.h"
#include "companions/clusters.h"
#include "companions/coding_levels.h"
#include "companions/coding_readers.h"

namespace companions {

namespace {

// What tells the parts of a signal apart, as multiples of what is typical for it.
constexpr double kLeadInMark = 1.5;      // a longer mark than this is none of a bit
constexpr double kNewLeadIn = 1.8;       // pulse distance: nor between bits a stray one
constexpr double kMarkSpread = 0.25;     // pulse distance: a mark beside the typical, to a burst
constexpr double kGapSpace = 1.5;        // a longer space than this is none of a bit
constexpr double kBurstDeviation = 0.1;  // of the bursts of a symbol, as a part of their mean
constexpr double kMarkDeviation = 0.2;   // of the marks with pulse width
constexpr double kBurstSpread = 1.3;     // a burst of a symbol to the typical one
constexpr double kWidthSpread = 1.5;     // and with pulse width a mark, which receivers change more
constexpr double kOneSpace = 1.8;        // where all bits are alike: a one's space to its mark
constexpr double kUnlikeMarks = 1.4;     // pulse width: the longer mark to the shorter
constexpr double kAlikeSpaces = 1.8;     // and a space behind one kind of mark to the typical one
constexpr size_t kMostStrays = 10;       // of which one in so many may differ
constexpr size_t kSymbolsPerOdd = 8;     // one symbol of so many may be like none

/// What the symbols of a signal look like.
struct symbol_set {
  modulation kind = modulation::kUnknown;
  int unit_us = 0;
  std::vector<double> levels;  // of the burst, or with pulse width of the mark; rising, 2 or 4
  double spread = 0;           // a length of a symbol to its level
  double shortest_mark = 0;    // a shorter one belongs to no symbol
  double longest_mark = 0;     // a longer one before the bits belongs to a lead-in
  double new_lead_in = 0;      // and a longer one than this between bits begins a new section
  double longest_space = 0;    // a longer one is a gap

  /// The symbol whose level is nearest, by proportion.
  [[nodiscard]] size_t nearest(double length) const {
    size_t symbol = 0;
    while (symbol + 1 < levels.size() && length * length > levels[symbol] * levels[symbol + 1]) {
      ++symbol;
    }
    return symbol;
  }
  [[nodiscard]] bool fits(double length, size_t symbol) const {
    return alike(length, levels[symbol], spread);
  }
};

/// Half of the shortest symbol, which a receiver that lengthens marks leaves alone; or the mark
/// where the symbol is mostly space.
int unit_of(double mark, double space) {
  return static_cast<int>(std::lround(space <= 2 * mark ? (mark + space) / 2 : mark));
}

symbol_set find_pulse_distance(const burst_view& bursts) {
  std::vector<int> marks;
  marks.reserve(bursts.whole());
  for (size_t i = 0; i < bursts.whole(); ++i) marks.push_back(bursts.mark(i));
  const double mark = median(std::move(marks));
  std::vector<int> lengths;
  lengths.reserve(bursts.whole());
  for (size_t i = 0; i < bursts.whole(); ++i) {
    if (alike(bursts.mark(i), mark, kLeadInMark)) lengths.push_back(bursts.length(i));
  }
  symbol_set found;
  if (bursts.count() > 0 && bursts.mark(0) > kLeadInMark * mark) {
    found.levels = known_four_levels(bursts.length(0), lengths);
  }
  if (found.levels.empty()) found.levels = find_levels(std::move(lengths), 4, kBurstDeviation);
  found.spread = kBurstSpread;
  if (mark == 0 || found.levels.empty()) return found;
  if (found.levels.size() == 1) {  // all bits are alike: zeros or ones?
    const double only = found.levels[0];
    const bool ones = only - mark > kOneSpace * mark;
    found.levels = {ones ? only / 2 : only, ones ? only : only * 2};
  }
  found.kind = modulation::kPulseDistance;
  found.unit_us = unit_of(mark, found.levels[0] - mark);
  found.shortest_mark = mark - kMarkSpread * found.levels[0];
  found.longest_mark = mark + kMarkSpread * found.levels[0];
  found.new_lead_in = std::max(kNewLeadIn * mark, found.longest_mark);
  found.longest_space = kGapSpace * (found.levels.back() - mark);
  return found;
}

symbol_set find_pulse_width(const burst_view& bursts) {
  std::vector<int> marks;  // but the first one, which a lead-in makes unlike the others
  for (size_t i = 1; i < bursts.count(); ++i) marks.push_back(bursts.mark(i));
  symbol_set found;
  found.levels = find_levels(std::move(marks), 2, kMarkDeviation);
  found.spread = kWidthSpread;
  if (found.levels.size() != 2 || found.levels[1] < kUnlikeMarks * found.levels[0]) return found;
  std::array<std::vector<int>, 2> spaces;  // behind each kind of mark
  for (size_t i = 0; i < bursts.whole(); ++i) {
    const int mark = bursts.mark(i);
    const size_t symbol = found.nearest(mark);
    if (found.fits(mark, symbol)) spaces[symbol].push_back(*bursts.space(i));
  }
  const auto [fewer, more] = std::minmax({spaces[0].size(), spaces[1].size()});
  if (fewer * kSymbolsPerLevel < more) return found;
  const std::array typical = {median(spaces[0]), median(spaces[1])};
  size_t strays = 0;
  for (size_t symbol = 0; symbol < spaces.size(); ++symbol) {
    strays += static_cast<size_t>(
        std::count_if(spaces[symbol].begin(), spaces[symbol].end(),
                      [&](int us) { return !alike(us, typical[symbol], kAlikeSpaces); }));
  }
  if (strays * kMostStrays > spaces[0].size() + spaces[1].size()) return found;
  found.kind = modulation::kPulseWidth;
  found.unit_us = unit_of(found.levels[0], *std::min_element(typical.begin(), typical.end()));
  found.longest_mark = kLeadInMark * found.levels[1];
  found.new_lead_in = found.longest_mark;
  found.longest_space = kGapSpace * *std::max_element(typical.begin(), typical.end());
  return found;
}

/// Reads a signal burst by burst as symbols of one set.
class symbol_reader {
 public:
  symbol_reader(std::span<const int> durations, symbol_set symbols)
      : bursts_(durations), symbols_(std::move(symbols)) {
    found_.kind = symbols_.kind;
    found_.unit_us = symbols_.unit_us;
    found_.bits_per_symbol = symbols_.levels.size() == 4 ? 2 : 1;
    found_.roles.assign(durations.size(), role::kPlain);
    for (size_t i = 0; i < bursts_.count(); ++i) read_burst(i);
  }

  /// Whether there are enough symbols, and few that fit no level.
  [[nodiscard]] bool convinces() const {
    return read_ >= kFewestSymbols && odd_ * kSymbolsPerOdd <= read_;
  }
  [[nodiscard]] size_t odd() const { return odd_; }
  coding take() { return std::move(found_); }

 private:
  void read_burst(size_t i) {
    if (!open_) open(i);
    const auto space = bursts_.space(i);
    if (is_lead_in(i)) {
      add_lead_in(i);
    } else if (!space || *space > symbols_.longest_space) {
      end_section(i);
    } else if (bursts_.mark(i) > symbols_.new_lead_in) {
      ++odd_;  // a lead-in without a gap before it
      open(i);
      add_lead_in(i);
    } else {
      add_symbol(i);
    }
  }

  /// Whether this burst stands before the bits of its section, and is none itself.
  [[nodiscard]] bool is_lead_in(size_t i) const {
    const section& now = found_.sections.back();
    if (!now.bits.empty() || bursts_.space(i).value_or(0) > kLongestLeadInUs) return false;
    if (bursts_.mark(i) > symbols_.longest_mark) return true;
    return now.lead_in == 0 && bursts_.space(i) && !fits(i, symbols_.nearest(measure(i)));
  }

  [[nodiscard]] double measure(size_t i) const {
    return symbols_.kind == modulation::kPulseWidth ? bursts_.mark(i) : bursts_.length(i);
  }
  [[nodiscard]] bool fits(size_t i, size_t symbol) const {
    return symbols_.fits(measure(i), symbol) && bursts_.mark(i) <= symbols_.longest_mark &&
           bursts_.mark(i) >= symbols_.shortest_mark;
  }

  void open(size_t i) {
    found_.sections.push_back({.first = 2 * i});
    open_ = true;
  }

  /// The last mark of pulse distance only ends the space before it, that of pulse width is a bit.
  void end_section(size_t i) {
    section& now = found_.sections.back();
    if (symbols_.kind == modulation::kPulseWidth) {
      add_symbol(i);
    } else if (now.bits.empty()) {
      ++now.lead_in;
      found_.roles[2 * i] = role::kLeadIn;
    } else {
      found_.roles[2 * i] = role::kStop;
    }
    now.gap_us = bursts_.space(i);
    if (bursts_.space(i)) found_.roles[2 * i + 1] = role::kGap;
    open_ = false;
  }

  void add_lead_in(size_t i) {
    found_.sections.back().lead_in += bursts_.space(i) ? 2 : 1;
    set_role(i, role::kLeadIn);
  }

  void add_symbol(size_t i) {
    section& into = found_.sections.back();
    if (into.bits.empty()) reserve_bits(into, i);
    const size_t symbol = symbols_.nearest(measure(i));
    for (int bit = found_.bits_per_symbol; bit-- > 0;) {
      into.bits += (symbol >> bit & 1) != 0 ? '1' : '0';
      into.marks.push_back(2 * i);
    }
    ++read_;
    if (!fits(i, symbol)) {
      ++odd_;
      set_role(i, role::kOdd);
    } else if (found_.bits_per_symbol > 1) {
      set_role(i, role::kBit);
    } else {
      set_role(i, symbol == 0 ? role::kZero : role::kOne);
    }
  }

  /// Room for as many as one frame mostly has, where the signal is not over before.
  void reserve_bits(section& into, size_t i) const {
    constexpr size_t kUsualBits = 64;
    const size_t most = (bursts_.count() - i) * static_cast<size_t>(found_.bits_per_symbol);
    into.bits.reserve(std::min(most, kUsualBits));
    into.marks.reserve(std::min(most, kUsualBits));
  }

  void set_role(size_t i, role its) {
    found_.roles[2 * i] = its;
    if (bursts_.space(i)) found_.roles[2 * i + 1] = its;
  }

  burst_view bursts_;
  symbol_set symbols_;
  coding found_;
  bool open_ = false;
  size_t read_ = 0;
  size_t odd_ = 0;
};

std::optional<symbol_reading> read(std::span<const int> durations, symbol_set symbols) {
  if (symbols.kind == modulation::kUnknown) return {};
  symbol_reader reader(durations, std::move(symbols));
  if (!reader.convinces()) return {};
  return symbol_reading{reader.take(), reader.odd()};
}

}  // namespace

std::optional<symbol_reading> read_pulse_distance(std::span<const int> durations) {
  return read(durations, find_pulse_distance(burst_view(durations)));
}

std::optional<symbol_reading> read_pulse_width(std::span<const int> durations) {
  return read(durations, find_pulse_width(burst_view(durations)));
}

}  // namespace companions
