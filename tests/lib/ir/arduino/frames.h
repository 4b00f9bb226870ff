// SPDX-License-Identifier: GPL-3.0-or-later
// Frames for the matchers' tests, and what IRrecv says to them as one line of text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/irp.h"

/// The first frame of a protocol of the table, without the space after it.
std::vector<int> sent(std::string_view protocol, const irp::Parameters& parameters);

/// LG is in no table: 8 address bits, 16 command bits, the check as given.
std::vector<int> sent_lg(uint32_t bits);

/// "NEC 20DF10EF {32}", or "" where nothing is found.
std::string answer(const std::vector<int>& durations);

/// The type of the answer alone.
std::string type_of(const std::vector<int>& durations);
