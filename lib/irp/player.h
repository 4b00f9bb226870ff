// SPDX-License-Identifier: GPL-3.0-or-later
// One walk through the stream of a definition, collecting the exact durations of every segment.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "lib/irp/definition.h"
#include "lib/irp/protocol.h"

namespace irp {

using SignedDurations = std::vector<Rational>;  // µs; marks positive, spaces negative

/// Neighbours of one sign merge; a leading space is silence and is dropped.
void append(SignedDurations& durations, Rational length);

class Player {
 public:
  /// Plays the intro, `repeats` passes of the repeated part, and the ending. Throws Error when the
  /// definition cannot be played with these values.
  Player(const Protocol& protocol, Parameters values, int repeats);

  const std::vector<std::pair<Segment, SignedDurations>>& segments() const { return segments_; }

 private:
  /// The bitspec in force. Bits gather until they select an alternative, which the scope outside
  /// plays.
  struct Scope {
    const std::vector<Stream::Items>* alternatives;
    Scope* outer;
    size_t size;  // bits that select one alternative
    std::vector<bool> queue = {};
  };

  void play(const Stream::Items& items, Scope* scope);
  void send(Scope* scope, const Field& field);
  void emit(const Duration& duration);
  void add(Rational length);
  void repeat(const Stream& stream, Scope* outer);
  void run(const Stream& stream, Scope* scope, size_t phase);
  void count_step();

  const Definition& definition_;
  Parameters values_;
  Lookup get_;
  int repeats_;
  std::vector<std::pair<Segment, SignedDurations>> segments_;
  Rational now_, start_;
  size_t phase_ = 0;
  int steps_ = 0;
};

}  // namespace irp
