// SPDX-License-Identifier: GPL-3.0-or-later
// Why the signal analysis names a pattern as it does, or does not: in sentences.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "lib/ir/DecodeIR/explain.h"

namespace companions {

/// "burst 17: 2,610 µs, 2,256 ± 170 expected (a burst that is no symbol)".
std::string sentence_of(const analysis::refusal& why);

/// The lines on a pattern: what it is and what speaks for it, then what came closest and what
/// stopped that. Only of `protocol` where it is not empty, by its name in any case.
std::string explain(std::span<const int> durations, std::string_view protocol);

}  // namespace companions
