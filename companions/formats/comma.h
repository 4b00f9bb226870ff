// SPDX-License-Identifier: GPL-3.0-or-later
// What the forms that are lists with commas share.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "companions/formats/text.h"

namespace companions {

/// Reads the durations of a whole line; the fault where it is no list.
std::optional<bad_line> read_comma_list(std::string_view line, std::vector<int>& durations);

}  // namespace companions
