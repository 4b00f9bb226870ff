// SPDX-License-Identifier: GPL-3.0-or-later
// How the program shows captured durations to the signal analysis; what else asks it about them
// does the same, so that all get one answer.
#pragma once

#include "lib/ir/DecodeIR/signal.h"

namespace analysis {

inline constexpr int kCarrierHz = 38380;  // the device does not measure it
inline constexpr int kFinalSpaceUs = static_cast<int>(Signal::kNoSpaceUs);  // behind a last mark
inline constexpr size_t kTextSize = 255;  // of the three texts that it writes

}  // namespace analysis
