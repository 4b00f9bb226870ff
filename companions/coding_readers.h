// SPDX-License-Identifier: GPL-3.0-or-later
// The two ways of reading bits: symbols that are bursts, and halves of equal length.
#pragma once

#include <optional>
#include <span>

#include "companions/coding.h"

namespace companions {

constexpr int kLongestLeadInUs = 14000;  // no space in a lead-in is longer
constexpr size_t kFewestSymbols = 4;     // fewer prove nothing

/// The signal read as pulse distance or pulse width, whichever leaves fewer bursts unexplained;
/// nothing where too many are.
std::optional<coding> read_symbols(std::span<const int> durations);

/// The signal read as bi-phase; nothing where a duration does not fit, or none is of double width.
std::optional<coding> read_bi_phase(std::span<const int> durations);

}  // namespace companions
