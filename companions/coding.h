// SPDX-License-Identifier: GPL-3.0-or-later
// How a signal of any length and of no known protocol carries its bits. A section is a run of
// bits, mostly behind a lead-in and before a gap; a signal has one or several:
//
//   ██████▁▁▁█▁█▁▁▁█▁█▁█▁▁▁▁▁▁▁▁▁▁██████▁▁▁█▁▁▁█▁█▁█
//   lead-in  0 1   0 0 stop + gap lead-in  1   0 0 stop
//
// Pulse distance: the marks are alike, a longer space is a 1. With four lengths of space a symbol
//                 is two bits, 00 for the shortest. Frames too short to show all four are known
//                 by their lead-in.
// Pulse width:    a longer mark is a 1.
// Bi-phase:       every bit is a mark and a space of equal length, a 1 where the mark comes second.
//
// Only the shape of the signal decides. Protocols that give the longer symbol, or the mark ahead of
// the space, the other value have all bits inverted here.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace companions {

enum class modulation { kUnknown, kPulseDistance, kPulseWidth, kBiPhase };

/// "pulse distance", "pulse width", "bi-phase" or "unknown".
std::string_view name_of(modulation kind);

/// What one duration is for. kBit is part of a bit, or of several, that is neither a zero nor a one
/// by itself; kStop is a mark that only ends the space
/// before it. kOdd fits none of the symbols, though a bit may have been read from it.
enum class role { kPlain, kLeadIn, kZero, kOne, kBit, kStop, kGap, kOdd };

struct section {
  size_t first = 0;       // the entry that it begins with
  size_t lead_in = 0;     // how many entries its lead-in has
  std::string bits = {};  // '0' and '1' in the order sent
  std::vector<size_t> marks =
      {};  // of each bit, its mark; with bi-phase the entry of its second half
  std::optional<int> gap_us = {};  // the space behind it; nothing where the signal ends before
};

struct coding {
  modulation kind = modulation::kUnknown;
  int unit_us = 0;          // half of the shortest bit, or a lone mark where spaces are far longer
  int bits_per_symbol = 1;  // 2 of four-level pulse distance
  std::vector<section> sections;
  std::vector<role> roles;  // one a duration
};

/// REQUIRES: durations in µs, mark and space in turn, a mark first, none below 0.
coding find_coding(std::span<const int> durations);

enum class bit_order { kLsbFirst, kMsbFirst };

/// The bytes of these bits: of every eight, the first sent is the least or the most significant
/// one. Bits that are left over make a last byte of their own: the number that they are by
/// themselves.
std::vector<unsigned char> bytes_of(std::string_view bits, bit_order order);

}  // namespace companions
