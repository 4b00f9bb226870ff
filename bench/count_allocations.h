// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

/// How often this process has asked for memory.
size_t allocations_so_far();
