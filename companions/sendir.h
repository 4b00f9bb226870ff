// SPDX-License-Identifier: GPL-3.0-or-later
// What the companions that let `vantrel sendir` send have to know of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace companions {

constexpr int kLongestSendirUs = 65535;  // of one duration in its lists

/// How to run vantrel: the one that stands beside this program, else the one of the search path.
std::string vantrel_program();

/// The durations (µs, mark first) as `sendir --raw` and `decode --raw` take them.
std::string signed_list(const std::vector<int>& durations);

/// What a user is to be told of a signal that needs this carrier (Hz, 0 for none): sendir cannot
/// tell the device the carrier. Nothing where the device's own one does as well.
std::optional<std::string> carrier_note(const std::string& name, int carrier_hz);

}  // namespace companions
