// SPDX-License-Identifier: GPL-3.0-or-later
// One captured or typed infrared pattern, as everything outside the decoders passes it on.
#pragma once

#ifdef __cplusplus
#include <cstddef>
#include <cstdint>
#else
#include <stddef.h>
#include <stdint.h>
#endif

struct ir_packet {
  uint16_t buf[256];  // durations in µs, mark and space in turn, a mark first
  uint8_t len;        // entries of buf in use
  uint16_t elapsed;   // ms since the previous pattern
};
