// SPDX-License-Identifier: GPL-3.0-or-later
// Gree's air conditioners, a message of two blocks that tells the whole state.
//
//   <9000,-4500> b0 b1 b2 b3 <010>  20 ms  b4 b5 b6 b7    least significant bits first
//   mark 640 µs, space 550 for a 0 and 1620 for a 1
//
//   b0  mode (3 bits), power, fan (2 bits), swing, sleep     b1  temperature - 16, timer
//   b2  timer, flags     b3  5x, 7x or Ax: the kind of message
//   Check: the high nibble of b7 is 10 + the low nibbles of b0 to b3 + the high nibbles of b4 to b6
//
// Receivers deliver the blocks one by one. The first alone has no check; without a timer its state
// shows: the nibbles of the timer are 0, the mode is one of five, and "automatic" has 25 degrees.
//
// Sample, b0 b1 = 11 09:
//   9045,4416,700,1584,731,487,700,518,...
// Facts: public protocol definitions in IRP notation, checked with captured remotes.
#include "lib/ir/DecodeIR/protocols/distance_codings.h"

namespace analysis {
namespace {

constexpr float kPauseLeastUs = 16000;
constexpr float kPauseMostUs = 24000;
constexpr unsigned kModes = 5;
constexpr unsigned kTemperatures = 15;
constexpr unsigned kAutomatic = 0;
constexpr unsigned kAutomaticTemperature = 25 - 16;
constexpr unsigned kSumStart = 10;

unsigned nibble(const bit_buffer& bits, int number) {
  return bits.getLsb(4 * number, 4);
}

/// Whether the first block alone looks like the state of an air conditioner without a timer.
bool is_state(const bit_buffer& first) {
  const unsigned mode = first.getLsb(0, 3);
  const unsigned temperature = nibble(first, 2);
  return nibble(first, 3) == 0 && nibble(first, 4) == 0 && mode < kModes &&
         temperature < kTemperatures &&
         (mode != kAutomatic || temperature == kAutomaticTemperature);
}

/// Reads the block behind the first one; whether there is one and the check holds.
bool read_second(const reading& first, bit_buffer* second) {
  const frame& seen = first.seen;
  if (seen.trailing_gap < kPauseLeastUs || seen.trailing_gap > kPauseMostUs) return false;
  if (seen.reach < seen.length + kGreeNext.bursts()) return false;
  distance_fit fit;
  if (!read_pulse_distance(kGreeNext, seen.first + ptrdiff_t{2} * seen.length, second, &fit)) {
    return false;
  }
  unsigned sum = kSumStart;
  for (const int low : {0, 2, 4, 6}) sum += nibble(first.bits, low);
  for (const int high : {1, 3, 5}) sum += nibble(*second, high);
  return nibble(*second, 7) == sum % 16;
}

void tell_bytes(const bit_buffer& bits, answer* out) {
  for (int first = 0; first + 8 <= bits.size(); first += 8) {
    out->remark.print("%02X", bits.getLsb(first, 8));
  }
}

}  // namespace

bool gree_state(const reading& read) {
  const unsigned kind = nibble(read.bits, 7);
  bit_buffer second;
  return (kind == 5 || kind == 7 || kind == 0xA) &&
         (is_state(read.bits) || read_second(read, &second));
}

bool read_gree(const reading& read, answer* out) {
  tell_bytes(read.bits, out);
  bit_buffer second;
  if (read_second(read, &second)) {
    tell_bytes(second, out);
    out->length = read.seen.length + kGreeNext.bursts();
    out->layout.split = read.seen.length - 1;
  }
  return true;
}

bool read_gree_next(const reading& read, answer* out) {
  out->remark = "second block, ";
  tell_bytes(read.bits, out);
  return true;
}

}  // namespace analysis
