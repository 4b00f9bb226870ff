// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/player.h"

#include <algorithm>
#include <bit>

#include "lib/irp/error.h"

namespace irp {
namespace {

constexpr size_t kFirstLaterLast = 3;  // [first][later][last]
constexpr int kMostSteps = 300'000;    // items and symbols of one signal, so that any text ends

/// The longest variation of a stream: how many kinds of passes it has.
size_t passes(const Stream& stream) {
  size_t most = 0;
  for (const auto& item : stream.body) {
    if (const auto* found = std::get_if<std::shared_ptr<const Stream::Choice>>(&item)) {
      most = std::max(most, (*found)->choices.size());
    }
  }
  return most;
}

}  // namespace

void append(SignedDurations& durations, Rational length) {
  if (length.numerator == 0) return;
  const bool mark = length.numerator > 0;
  if (!durations.empty() && (durations.back().numerator > 0) == mark) {
    durations.back() = durations.back() + length;
  } else if (mark || !durations.empty()) {
    durations.push_back(length);
  }
}

Player::Player(const Protocol& protocol, Parameters values, int repeats)
    : definition_(protocol.definition()),
      values_(std::move(values)),
      get_(protocol.lookup(values_)),
      repeats_(repeats),
      segments_{{Segment::kIntro, {}}} {
  repeat(definition_.stream, nullptr);
}

void Player::count_step() {
  if (++steps_ > kMostSteps) throw Error("a signal that is too long");
}

/// An empty choice ends the pass.
void Player::play(const Stream::Items& items, Scope* scope) {
  for (const auto& item : items) {
    count_step();
    if (const auto* field = std::get_if<Field>(&item)) {
      send(scope, *field);
      continue;
    }
    if (scope != nullptr && !scope->queue.empty()) throw Error("bits left over");
    if (const auto* duration = std::get_if<Duration>(&item)) {
      emit(*duration);
    } else if (const auto* assignment = std::get_if<Assignment>(&item)) {
      values_[assignment->name] = evaluate(*assignment->value, get_);
    } else if (const auto* stream = std::get_if<std::shared_ptr<const Stream>>(&item)) {
      repeat(**stream, scope);
    } else {
      const auto& choices = std::get<std::shared_ptr<const Stream::Choice>>(item)->choices;
      if (phase_ >= choices.size() || choices[phase_].empty()) return;
      play(choices[phase_], scope);
    }
  }
}

void Player::send(Scope* scope, const Field& field) {
  if (scope == nullptr) throw Error("bits without a bitspec");
  const int64_t value = evaluate(field, get_), width = evaluate(*field.width, get_);
  const bool msb = definition_.most_significant_first;
  for (int64_t i = 0; i < width; ++i) {
    scope->queue.push_back((value >> (msb ? width - 1 - i : i) & 1) != 0);
  }
  while (!scope->queue.empty() && scope->queue.size() >= scope->size) {
    count_step();
    size_t symbol = 0;
    for (size_t i = 0; i < scope->size; ++i) {
      symbol |= size_t{scope->queue[i]} << (msb ? scope->size - 1 - i : i);
    }
    scope->queue.erase(scope->queue.begin(),
                       scope->queue.begin() + static_cast<std::ptrdiff_t>(scope->size));
    if (symbol >= scope->alternatives->size()) throw Error("bits that have no symbol");
    play((*scope->alternatives)[symbol], scope->outer);
  }
}

void Player::emit(const Duration& duration) {
  const Rational length =
      exact_value(*duration.length, get_) * definition_.scale.at(duration.suffix);
  if (duration.kind != Duration::Kind::kExtent) {
    add(duration.kind == Duration::Kind::kMark ? length : -length);
    return;
  }
  const Rational gap = start_ + length - now_;
  if (gap.numerator < 0) throw Error("a frame longer than its extent");
  add(-gap);
  start_ = now_;  // a following extent counts from here
}

void Player::add(Rational length) {
  now_ = now_ + absolute(length);
  append(segments_.back().second, length);
}

void Player::repeat(const Stream& stream, Scope* outer) {
  Scope own{&stream.bitspec, outer, 0};
  if (stream.bitspec.size() == 1) throw Error("a bitspec of one symbol");
  if (!stream.bitspec.empty()) {
    own.size = static_cast<size_t>(std::bit_width(stream.bitspec.size() - 1));
  }
  Scope* scope = stream.bitspec.empty() ? outer : &own;
  if (!stream.endless) {
    for (int64_t i = 0; i < stream.least; ++i) run(stream, scope, phase_);
    return;
  }
  const size_t kinds = passes(stream);
  const int64_t least = std::max<int64_t>(stream.least, kinds > 0 ? 1 : 0);
  for (int64_t i = 0; i < least; ++i) run(stream, scope, 0);
  for (int i = 0; i < repeats_; ++i) {
    segments_.push_back({Segment::kRepeat, {}});
    run(stream, scope, 1);
  }
  segments_.push_back({Segment::kEnding, {}});
  if (kinds == kFirstLaterLast) run(stream, scope, 2);
}

void Player::run(const Stream& stream, Scope* scope, size_t phase) {
  count_step();
  const Rational start = start_;
  const size_t outer_phase = phase_;
  start_ = now_;
  phase_ = phase;
  play(stream.body, scope);
  if (scope != nullptr && !scope->queue.empty()) throw Error("bits left over");
  start_ = start;
  phase_ = outer_phase;
}

}  // namespace irp
