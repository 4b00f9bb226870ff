// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/explain.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "lib/ir/DecodeIR/protocols/rows.h"
#include "lib/ir/DecodeIR/recognisers.h"
#include "lib/ir/DecodeIR/signal.h"
#include "lib/ir/DecodeIR/wrapper.h"

namespace analysis {
namespace {

/// Collects what the recognisers tell.
class collector : public refusal_listener {
 public:
  explicit collector(std::vector<attempt>* to) : to_(*to) {}
  void ask(const recogniser& who) {
    who_ = who.name;
    by_ = {};
  }
  void refused(const char* protocol, const refusal& why) override {
    to_.push_back({protocol != nullptr ? protocol : who_, why});
  }
  void proved(const proof& by) override { by_ = by; }
  /// What the recogniser that was asked last has said of its proof.
  [[nodiscard]] const proof& by() const { return by_; }

 private:
  std::vector<attempt>& to_;
  const char* who_ = "";
  proof by_;
};

/// Finds the frame that is worth a word.
class frame_finder : public refusal_listener {
 public:
  void asked(const frame& seen) override {
    last_ = seen;
    if (longest_.first == nullptr || is_better(seen)) longest_ = seen;
  }
  void refused(const char*, const refusal&) override {}
  [[nodiscard]] const frame& last() const { return last_; }
  [[nodiscard]] const frame& longest() const { return longest_; }

 private:
  /// Longer, but not for a gap inside.
  [[nodiscard]] bool is_better(const frame& seen) const {
    const auto is_one = [](const frame& f) { return f.off_times.largest <= kLongestSpaceUs; };
    if (is_one(seen) != is_one(longest_)) return is_one(seen);
    return seen.length > longest_.length;
  }

  static constexpr float kLongestSpaceUs = 8000;  // of lead-ins
  frame last_, longest_;
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
  if (a.why.burst != b.why.burst) return a.why.burst > b.why.burst;  // more of it has been read
  return distance(a.why) < distance(b.why);
}

/// Leaves the nearest attempt of every protocol.
void drop_repeated(std::vector<attempt>* attempts) {
  std::set<std::string> known;
  std::erase_if(*attempts, [&](const attempt& one) { return !known.insert(one.protocol).second; });
}

}  // namespace

explanation explain(const frame& seen) {
  explanation told{
      .first = seen.before, .bursts = seen.length, .found = {}, .by = {}, .attempts = {}};
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
      told.by = listener.by();
    }
  }
  for (const row* const other : distance_rows()) {
    const int bursts = other->wire.distance()->bursts();
    if (bursts == seen.length) continue;
    const auto wanted = static_cast<float>(bursts);
    listener.refused(other->name,
                     {reason::bursts, -1, static_cast<float>(seen.length), wanted, wanted});
  }
  std::stable_sort(told.attempts.begin(), told.attempts.end(), comes_closer);
  drop_repeated(&told.attempts);
  return told;
}

explanation explain(std::span<const int> durations) {
  std::vector<int> bursts(durations.begin(), durations.end());
  if (bursts.size() % 2 == 1) bursts.push_back(kFinalSpaceUs);
  if (bursts.size() < 4) return {};
  unsigned context[2] = {0, 0};
  int numbers[3] = {-1, -1, -1};
  int hex[4];
  char texts[3][kTextSize] = {};
  Signal signal(context, bursts.data(), kCarrierHz, static_cast<int>(bursts.size() / 2), 0,
                texts[0], &numbers[0], &numbers[1], &numbers[2], hex, texts[1], texts[2]);
  frame_finder finder;
  signal.listen(&finder);
  signal.decode();
  const frame& worth = texts[0][0] != '\0' ? finder.last() : finder.longest();
  return worth.first != nullptr ? explain(worth) : explanation{};
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
