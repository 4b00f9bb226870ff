// SPDX-License-Identifier: GPL-3.0-or-later
// How far a frame may be from what it should be, and still get its answer from the signal analysis.
//
//   find_limits > tests/data/limits.tsv    after a limit was moved; then look at the difference
//   find_limits tests/data/limits.tsv      names what is no longer so, by more than rounding
//
// One duration of an exact frame at a time is made shorter and longer, or all of them by a clock
// or by a bias, or the gap between two frames, until the answer is another one. No limit of a
// recogniser can move without one of these.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/decode_ir_call.h"

namespace {

using durations = std::vector<int>;

/// What is changed of a frame, to a value between `least` and `most` that is `exact` at first.
struct change {
  const char* what;
  int least, exact, most;
  std::function<durations(durations frame, int value)> apply;
};

change of_duration(const char* what, const durations& frame, size_t i) {
  constexpr int kMoreUs = 2000;
  return {what, 0, frame[i], 2 * frame[i] + kMoreUs, [i](durations changed, int value) {
            changed[i] = value;
            return changed;
          }};
}

/// The mark at `i` longer, and the space behind it shorter by as much.
change of_edge(const char* what, size_t i) {
  constexpr int kMostUs = 3000;
  return {what, -kMostUs, 0, kMostUs, [i](durations changed, int value) {
            changed[i] = std::max(changed[i] + value, 0);
            changed[i + 1] = std::max(changed[i + 1] - value, 0);
            return changed;
          }};
}

std::vector<change> changes_of(const durations& frame) {
  constexpr int kThousandths = 1000;
  constexpr int kMostBiasUs = 1000;
  constexpr int kExactGapUs = 30000;
  const size_t middle = frame.size() / 2 & ~size_t{1};
  return {
      of_duration("first mark", frame, 0),
      of_duration("first space", frame, 1),
      of_duration("second mark", frame, 2),
      of_duration("second space", frame, 3),
      of_duration("middle mark", frame, middle),
      of_duration("middle space", frame, middle + 1),
      of_duration("last mark", frame, frame.size() - 1),
      {"clock in thousandths", kThousandths / 2, kThousandths, 2 * kThousandths,
       [](durations changed, int value) {
         for (int& us : changed) us = us * value / kThousandths;
         return changed;
       }},
      {"bias", -kMostBiasUs, 0, kMostBiasUs,
       [](durations changed, int value) {
         for (size_t i = 0; i < changed.size(); ++i) {
           changed[i] = std::max(changed[i] + (i % 2 == 0 ? value : -value), 0);
         }
         return changed;
       }},
      of_edge("edge behind the first mark", 0),
      of_edge("edge in the middle", middle),
      {"gap to a copy", 0, kExactGapUs, kExactGapUs,
       [](durations changed, int value) {
         durations twice = changed;
         twice.push_back(value);
         twice.insert(twice.end(), changed.begin(), changed.end());
         return twice;
       }},
  };
}

/// A frame that the analysis names: of a protocol the last of its samples, with fields at random.
struct subject {
  std::string protocol;
  durations frame;
  int carrier;

  [[nodiscard]] std::string answer(const change& made, int value) const {
    return decode_ir::text(decode_ir::call(made.apply(frame, value), carrier));
  }
  [[nodiscard]] bool holds(const change& made, int value) const {
    return answer(made, value) == answer(made, made.exact);
  }
};

std::vector<subject> subjects() {
  constexpr size_t kFewestDurations = 8;
  constexpr contract::Counts kFrames{.clean = 5, .received = 0, .repeated = 0};
  std::vector<subject> found;
  for (const std::string& protocol : contract::protocols()) {
    for (const contract::Sample& sample : contract::samples(protocol, 1, kFrames)) {
      if (sample.durations.size() < kFewestDurations || sample.durations.size() % 2 == 0) continue;
      if (!decode_ir::isNamed(decode_ir::call(sample.durations, sample.carrier))) continue;
      if (!found.empty() && found.back().protocol == protocol) found.pop_back();
      found.push_back({protocol, sample.durations, sample.carrier});
    }
  }
  for (const contract::Frame& one : contract::frames()) {
    subject special{one.what, decode_ir::broken(one.definition), decode_ir::kCarrier};
    if (decode_ir::isNamed(decode_ir::call(special.frame))) found.push_back(std::move(special));
  }
  return found;
}

/// The value nearest to `beyond` that holds, between one that holds and one that does not.
int last_that_holds(const subject& of, const change& made, int beyond) {
  int good = made.exact;
  while (std::abs(good - beyond) > 1) {
    const int between = good + (beyond - good) / 2;
    (of.holds(made, between) ? good : beyond) = between;
  }
  return good;
}

constexpr const char* kNone = "-";    // there is no limit in sight
constexpr const char* kRagged = "~";  // it holds here and there, which no one value tells

/// Whether a limit is where the file has it, give or take what rounding does.
bool is_at(const subject& of, const change& made, const std::string& limit, int end) {
  if (limit == kRagged) return true;
  if (limit == kNone) return of.holds(made, end);
  constexpr int kRounding = 1;
  const int value = std::stoi(limit);
  const int outwards = end < made.exact ? -1 : 1;
  const int inside = value - outwards * kRounding;
  const bool reaches_exact = outwards * (inside - made.exact) <= 0;
  return (reaches_exact || of.holds(made, inside)) &&
         !of.holds(made, value + outwards * (1 + kRounding));
}

std::string limit_of(const subject& of, const change& made, int end) {
  if (of.holds(made, end)) return kNone;
  std::string limit = std::to_string(last_that_holds(of, made, end));
  return is_at(of, made, limit, end) ? limit : kRagged;
}

constexpr const char* kHeading =
    "# How far a frame may be off and get its answer: what it is TAB what of it is changed TAB the "
    "least and\n# TAB the most that it may be, - for any, ~ where it is no one value; in \u00B5s. "
    "Made by\n# tests/support/find_limits.cpp.\n"
    "# Copying and distribution of this file, with or without modification, are permitted in any "
    "medium without\n# royalty provided this notice is preserved. This file is offered as-is, "
    "without any warranty.\n";

void print_limits() {
  std::cout << kHeading;
  for (const subject& of : subjects()) {
    for (const change& made : changes_of(of.frame)) {
      std::cout << of.protocol << '\t' << made.what << '\t' << limit_of(of, made, made.least)
                << '\t' << limit_of(of, made, made.most) << '\n';
    }
  }
}

int check_limits(std::istream& file) {
  int moved = 0;
  std::string line;
  for (const subject& of : subjects()) {
    for (const change& made : changes_of(of.frame)) {
      while (std::getline(file, line) && line.starts_with('#')) {
      }
      std::istringstream fields(line);
      std::string protocol, what, least, most;
      std::getline(fields, protocol, '\t');
      std::getline(fields, what, '\t');
      std::getline(fields, least, '\t');
      std::getline(fields, most, '\t');
      const bool same = protocol == of.protocol && what == made.what &&
                        is_at(of, made, least, made.least) && is_at(of, made, most, made.most);
      if (same) continue;
      std::cout << of.protocol << ", " << made.what << ": not " << line << '\n';
      ++moved;
    }
  }
  if (moved == 0) return 0;
  std::cout << "Where that is meant: find_limits > tests/data/limits.tsv\n";
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    print_limits();
    return 0;
  }
  std::ifstream file(argv[1]);
  return check_limits(file);
}
