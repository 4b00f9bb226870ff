// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/explain.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "lib/ir/DecodeIR/protocols/rows.h"
#include "lib/ir/DecodeIR/recognisers.h"

namespace analysis {
namespace {

constexpr int kNearlyAsLong = 2;  // bursts by which a frame may miss a row to be worth a word

/// Collects what the recognisers tell.
class collector : public refusal_listener {
 public:
  explicit collector(std::vector<attempt>* to) : to_(*to) {}
  void ask(const recogniser& who) { who_ = who.name; }
  void refused(const char* protocol, const refusal& why) override {
    to_.push_back({protocol != nullptr ? protocol : who_, why});
  }

 private:
  std::vector<attempt>& to_;
  const char* who_ = "";
};

/// What a frame out of a recogniser's bounds lacks.
refusal missing(const frame_bounds& bounds, const frame& seen) {
  if (seen.length < bounds.min_bursts || seen.length > bounds.max_bursts) {
    return {reason::bursts, -1, static_cast<float>(seen.length),
            static_cast<float>(bounds.min_bursts), static_cast<float>(bounds.max_bursts)};
  }
  const bool before = seen.gap_before < bounds.min_gap_before;
  return {before ? reason::gap_before : reason::gap_behind, -1,
          before ? seen.gap_before : seen.gap_behind(),
          before ? bounds.min_gap_before : bounds.min_gap, frame::kSilenceUs};
}

/// By how much of the allowed range the found value lies outside it.
float distance(const refusal& why) {
  const float outside = std::max(why.least - why.found, why.found - why.most);
  const float range = why.most - why.least;
  return range > 0 ? outside / range : std::abs(outside);
}

bool comes_closer(const attempt& a, const attempt& b) {
  if (a.why.why != b.why.why) return a.why.why > b.why.why;
  return distance(a.why) < distance(b.why);
}

}  // namespace

explanation explain(const frame& seen) {
  explanation told;
  collector listener(&told.attempts);
  frame shown = seen;
  shown.listener = &listener;
  for (const recogniser& row : kRecognisers) {
    listener.ask(row);
    if (!row.bounds.hold(shown)) {
      if (row.bounds.min_bursts <= row.bounds.max_bursts) {
        listener.refused(nullptr, missing(row.bounds, shown));
      }
    } else if (auto found = row.read(shown); found && !told.found) {
      told.found = found;
    }
  }
  for (const row* const other : distance_rows()) {
    const int bursts = other->wire.distance()->bursts();
    if (bursts == seen.length || std::abs(bursts - seen.length) > kNearlyAsLong) continue;
    const auto wanted = static_cast<float>(bursts);
    listener.refused(other->name,
                     {reason::bursts, -1, static_cast<float>(seen.length), wanted, wanted});
  }
  std::stable_sort(told.attempts.begin(), told.attempts.end(), comes_closer);
  return told;
}

const char* text_of(reason why) {
  constexpr const char* kTexts[] = {"",
                                    "the number of bursts",
                                    "the space before the frame",
                                    "the space behind the frame",
                                    "how long the frame lasts",
                                    "the lead-in",
                                    "a duration that is no whole number of units",
                                    "a burst that is no symbol",
                                    "the clock",
                                    "the clocks of the two symbols",
                                    "the marks and spaces against each other",
                                    "a mark",
                                    "the burst between the halves",
                                    "the last mark",
                                    "a bit without an edge in its middle",
                                    "a check",
                                    "a damaged duration that nothing checks"};
  return kTexts[static_cast<size_t>(why)];
}

}  // namespace analysis
