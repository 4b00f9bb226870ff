// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>

#include "companions/bursts.h"
#include "companions/clusters.h"
#include "companions/coding_readers.h"

namespace companions {

namespace {

constexpr int kLongestHalves = 3;          // beside a bit of double width, such as RC6's toggle
constexpr size_t kFewestBesideDouble = 8;  // bits: among fewer a double one is a chance
constexpr int kShortestGap = 10;           // halves
constexpr int kLongestLeadIn = 8;          // RC6's mark of 6, on a receiver that lengthens marks
constexpr double kHalfSpread = 0.4;        // halves that a duration may lie beside a whole number

/// Half a bit: whether it is a mark, and the entry that it is part of.
struct half {
  bool mark;
  size_t entry;
};

/// How long half a bit is.
struct half_length {
  double us;
  double longer_marks_us;  // by how much the receiver lengthens marks and shortens spaces

  /// How many halves a duration is, at most kShortestGap; 0 for none of a bit's.
  [[nodiscard]] int count(int duration_us, bool mark) const {
    const double halves = (duration_us + (mark ? -longer_marks_us : longer_marks_us)) / us;
    const double whole = std::min<double>(std::round(halves), kShortestGap);
    if (whole <= kLongestHalves && std::abs(halves - whole) > kHalfSpread) return 0;
    return static_cast<int>(whole);
  }
};

/// Half a bit of this signal if it is bi-phase: the shortest bursts are a mark and a space of one
/// half each, whatever the receiver does to them.
std::optional<half_length> find_half(const burst_view& bursts) {
  std::vector<int> lengths;
  for (size_t i = 0; i < bursts.whole(); ++i) lengths.push_back(bursts.length(i));
  const auto clusters = find_clusters(std::move(lengths));
  const auto shortest = std::find_if(clusters.begin(), clusters.end(), [&](const cluster& c) {
    return c.count * kFewestSymbols * 2 >= bursts.whole();
  });
  if (shortest == clusters.end()) return {};
  std::vector<int> marks;
  for (size_t i = 0; i < bursts.whole(); ++i) {
    if (alike(bursts.length(i), shortest->mean, 1.25)) marks.push_back(bursts.mark(i));
  }
  const double us = shortest->mean / 2;
  return half_length{us, median(std::move(marks)) - us};
}

/// Reads halves as bits into a section, one of which may be of double width. False where they are
/// no bits.
bool read_halves(const std::vector<half>& halves, section& into) {
  into.bits.clear();
  into.marks.clear();
  bool doubled = false;
  const auto mark_at = [&](size_t i) { return i < halves.size() && halves[i].mark; };
  for (size_t i = 0; i < halves.size();) {
    size_t middle = i + 1;
    if (mark_at(i) == mark_at(middle)) {
      if (doubled || mark_at(i + 2) != mark_at(i + 3)) return false;
      doubled = true;
      middle = i + 2;
    }
    if (mark_at(i) == mark_at(middle)) return false;
    into.bits += mark_at(i) ? '0' : '1';
    into.marks.push_back(halves[std::min(middle, halves.size() - 1)].entry);
    i = 2 * middle - i;
  }
  return !doubled || into.bits.size() >= kFewestBesideDouble;
}

class bi_phase_reader {
 public:
  bi_phase_reader(std::span<const int> durations, const half_length& half)
      : durations_(durations), half_(half) {
    found_.kind = modulation::kBiPhase;
    found_.unit_us = static_cast<int>(std::lround(half.us));
    found_.roles.assign(durations.size(), role::kPlain);
  }

  /// False where a duration or a section does not fit.
  bool read() {
    for (size_t entry = 0; entry < durations_.size();) {
      found_.sections.push_back({.first = entry});
      if (!read_section(entry)) return false;
    }
    return double_mark_ && double_space_;
  }
  coding take() { return std::move(found_); }

 private:
  [[nodiscard]] int halves_of(size_t entry) const {
    return half_.count(durations_[entry], entry % 2 == 0);
  }
  [[nodiscard]] bool is_bit(size_t entry) const {
    const int count = halves_of(entry);
    return count >= 1 && count <= kLongestHalves;
  }

  /// Reads from this entry to behind the next gap.
  bool read_section(size_t& entry) {
    section& into = found_.sections.back();
    if (begins_with_lead_in(entry)) {
      into.lead_in = 2;
      found_.roles[entry] = found_.roles[entry + 1] = role::kLeadIn;
      entry += 2;
    }
    std::vector<half> halves;
    for (; entry < durations_.size(); ++entry) {
      const bool mark = entry % 2 == 0;
      if (!is_bit(entry)) {
        if (mark || halves_of(entry) <= kLongestHalves) return false;
        into.gap_us = durations_[entry];
        found_.roles[entry++] = role::kGap;
        break;
      }
      found_.roles[entry] = role::kBit;
      const int count = halves_of(entry);
      (mark ? double_mark_ : double_space_) |= count > 1;
      halves.insert(halves.end(), static_cast<size_t>(count), {mark, entry});
    }
    if (halves.empty()) return true;
    if (halves.size() < 2 * kFewestSymbols - 1) return false;
    if (read_halves(halves, into)) return true;
    // A first half that is a space cannot be told from the silence before it.
    halves.insert(halves.begin(), {false, halves[0].entry});
    return read_halves(halves, into);
  }

  /// A long mark and its space, or a mark with a space that is too long for a bit.
  [[nodiscard]] bool begins_with_lead_in(size_t entry) const {
    if (entry + 1 >= durations_.size() || durations_[entry + 1] > kLongestLeadInUs) return false;
    const int mark = halves_of(entry);
    const int space = halves_of(entry + 1);
    return mark <= kLongestLeadIn && space <= kLongestLeadIn &&
           (mark >= kLongestHalves || space > kLongestHalves);
  }

  std::span<const int> durations_;
  half_length half_;
  coding found_;
  bool double_mark_ = false;
  bool double_space_ = false;
};

}  // namespace

std::optional<coding> read_bi_phase(std::span<const int> durations) {
  const auto half = find_half(burst_view(durations));
  if (!half || half->us < 1) return {};
  bi_phase_reader reader(durations, *half);
  if (!reader.read()) return {};
  return reader.take();
}

}  // namespace companions
