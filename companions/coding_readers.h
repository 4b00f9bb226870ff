// SPDX-License-Identifier: GPL-3.0-or-later
// The two ways of reading bits: symbols that are bursts, and halves of equal length.
#pragma once

#include <optional>
#include <span>

#include "companions/coding.h"

namespace companions {

constexpr int kLongestLeadInUs = 14000;  // no space in a lead-in is longer
constexpr size_t kFewestSymbols = 4;     // fewer prove nothing

/// A signal read symbol by symbol.
struct symbol_reading {
  coding found;
  size_t odd;  // how many bursts are like no symbol
};

/// The signal read as pulse distance or pulse width; nothing where it has too few symbols or too
/// many bursts that are like none.
std::optional<symbol_reading> read_pulse_distance(std::span<const int> durations);
std::optional<symbol_reading> read_pulse_width(std::span<const int> durations);

/// The signal read as bi-phase; nothing where a duration does not fit, or none is of double width.
std::optional<coding> read_bi_phase(std::span<const int> durations);

}  // namespace companions
