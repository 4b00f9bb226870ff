// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

/// A 32-bit hash of `len` durations in µs (at most 255 are looked at) that small jitter leaves
/// alone. Durations above `max_edge` count as gaps.
uint32_t ir_hash(const uint16_t* buf, size_t len, uint16_t max_edge);
