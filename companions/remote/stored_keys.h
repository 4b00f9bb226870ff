// SPDX-License-Identifier: GPL-3.0-or-later
// The named signals of files in any text form that has names.
#pragma once

#include <string>
#include <vector>

#include "companions/formats/pattern.h"

namespace companions {

struct stored_key {
  std::string remote;  // as the file calls it, else the file's name
  pattern signal;
};

/// All of them, in the order of the files. What cannot be read is named on standard error and
/// clears `good`.
std::vector<stored_key> read_keys(const std::vector<std::string>& files, bool& good);

}  // namespace companions
