// SPDX-License-Identifier: GPL-3.0-or-later
// The printers: one pattern, one line of text on standard output, in one of four formats.
#pragma once

#include "lib/ir/ir_packet.h"

/// The longest duration in µs that is decoded; a longer one makes a pattern invalid.
constexpr uint16_t kLongestDurationUs = 14000;

/// 1: print_raw, print_comma_delim and print_analysir show the time since the previous pattern
/// on a line of its own first. Initially 0.
void set_elapsed_flag(int show);

/// True when no duration of the packet is over kLongestDurationUs.
bool is_valid_packet(const ir_packet& packet);

/// "+9000 -4500 +560 ", in µs.
void print_raw(ir_packet* p);

/// "9000,4500,560", in µs.
void print_comma_delim(ir_packet* p);

/// "0,9000, 4500, 560", in µs.
void print_analysir(ir_packet* p);

/// Pronto hex in carrier periods of 26 µs: "0000 006D 0002 0000 015A 00AD 0015 0602". The signal
/// is decoded on the way, which reports the decoder's line first; one of the NEC family ends in
/// the NEC repeat frame. An invalid packet prints "error: invalid packet" alone.
void print_pronto(ir_packet* p);
