// SPDX-License-Identifier: GPL-3.0-or-later
// Where the decoders put what they found. A decoder never prints: it hands its line, and the
// numbers in it, to report_result, which shows the line or passes it to a program that asked.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "lib/libutil/text_writer.h"

/// One decoder's answer to one pattern. The texts live as long as the call that delivers them.
struct ir_result {
  std::string_view family;  // "ZARVO", "DECODEIR" or "ARDUINO"
  std::string_view name;    // the protocol variant, such as "NEC32"; "NEC Repeat" for a repeat
  uint32_t scancode;        // the decoded code, for an unknown pattern its hash
  uint32_t bits;            // bits decoded, 0 where the decoder does not count them
  std::string_view line;    // what a terminal shows, with its newline
};

/// For the line of a result with a name of at most 254 chars.
using result_room = std::array<char, 336>;

/// ":: FAMILY   :: NAME          -", with which the line of every result begins.
text_writer begin_result_line(result_room& room, std::string_view family, std::string_view name);

using ir_result_sink = void (*)(const ir_result& result, void* user);

/// Sends every further result to `sink` with `user`; null brings back standard output.
void set_result_sink(ir_result_sink sink, void* user);

/// Delivers one result: its line to standard output, or the whole to the sink that was set.
void report_result(const ir_result& result);
