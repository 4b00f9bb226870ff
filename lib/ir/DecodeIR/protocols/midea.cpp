// SPDX-License-Identifier: GPL-3.0-or-later
// Midea's air conditioners.
//
//   <8,-8> A B C D E K <1>  5.2 ms  <8,-8> a b c d e k <1>    550 µs a unit, bytes most significant
//   bits first; a mark and a space of one unit for a 0, of one and three for a 1
//
//   A  A1, or A2 in a special command; B to E the state; a to k the complements of A to K
//   Check: the bytes of a frame, their bits reversed, add up to 0 modulo 256
//
// Receivers that cut a signal deliver the first frame alone.
//
// Sample, cooling at 67 °F, A to K = A1 A0 65 FF FF 4B:
//   4324,4446,518,1644,518,579,487,1644,...
// Facts: public protocol definitions in IRP notation, checked with captured remotes.
#include "lib/ir/DecodeIR/protocols/distance_codings.h"

namespace analysis {
namespace {

constexpr float kLongestPauseUs = 7000;

/// Whether the frame behind this one is its complement.
bool has_complement(const reading& read) {
  const pulse_distance& wire = *read.from->wire.distance();
  const frame& seen = read.seen;
  if (seen.trailing_gap > kLongestPauseUs || seen.reach < 2 * seen.length) return false;
  bit_buffer other;
  distance_fit fit;
  if (!read_pulse_distance(wire, seen.first + ptrdiff_t{2} * seen.length, &other, &fit)) {
    return false;
  }
  for (int i = 0; i < wire.bits; ++i) {
    if (read.bits.getBit(i) == other.getBit(i)) return false;
  }
  return true;
}

}  // namespace

bool midea_sum(const reading& read) {
  unsigned sum = 0;
  for (int first = 0; first < read.bits.size(); first += 8) sum += read.bits.getLsb(first, 8);
  return sum % 256 == 0;
}

bool read_midea(const reading& read, answer* out) {
  if (has_complement(read)) {
    out->length = 2 * read.seen.length;
    out->layout.split = read.seen.length - 1;
  }
  const unsigned kind = read.get({6, 2});
  return kind == 1 || kind == 2;
}

}  // namespace analysis
