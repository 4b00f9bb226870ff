// SPDX-License-Identifier: GPL-3.0-or-later
// Which lengths the symbols of a signal have.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace companions {

constexpr size_t kSymbolsPerLevel = 20;  // one of so many has a level that is no stray

/// The typical lengths of 4 (where `most` allows them), 2 or 1 symbols among these lengths, rising.
/// What is out of proportion to the commonest is no symbol. None where there are more symbols, so
/// that their lengths run into one another and deviate by more than this proportion of their mean,
/// and where one of four is missing.
std::vector<double> find_levels(std::vector<int> lengths, size_t most, double deviation);

/// The four levels of the bursts of a code whose short frames mostly lack one of them; nothing for
/// other codes. The lead-in tells it, and that all bursts are near its levels.
std::vector<double> known_four_levels(int lead_in_us, std::span<const int> bursts_us);

}  // namespace companions
