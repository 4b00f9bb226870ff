// SPDX-License-Identifier: GPL-3.0-or-later
// The ways of one pattern through `decode`.
#pragma once

#include "lib/ir/ir_packet.h"

/// Prints and decodes one comma list of durations in µs.
void decode_line(const char* line);

/// Converts Pronto hex to durations, then prints and decodes what it holds: the once sequence
/// and the repeat sequence, or the once sequence twice when it stands alone. Logs a text whose
/// size does not match its header. Returns 0.
int pronto_buf_to_raw(const char* text);

/// Runs the decoder families on a packet and prints the separator behind their lines; an invalid
/// packet gets its message instead.
void decodeit(ir_packet* p);
