// SPDX-License-Identifier: GPL-3.0-or-later
// Check sums, parities and the names that depend on the data. Bit numbers count from the first
// bit sent; the definitions are the public IRP ones.
#include "lib/ir/DecodeIR/protocols/distance_rules.h"

#include <bit>

namespace analysis {
namespace {

unsigned byte_at(const reading& read, int first) {
  return read.get({first, 8});
}

unsigned nibble_at(const reading& read, int first) {
  return read.get({first, 4});
}

/// The exclusive-or of `count` nibbles from `first` on.
unsigned nibble_xor(const reading& read, int first, int count) {
  unsigned value = 0;
  for (int i = 0; i < count; ++i) value ^= nibble_at(read, first + 4 * i);
  return value;
}

unsigned nibble_sum(const reading& read, int first, int count) {
  unsigned value = 0;
  for (int i = 0; i < count; ++i) value += nibble_at(read, first + 4 * i);
  return value & 0xF;
}

/// The two bytes that name a maker in the 48-bit and 56-bit codes.
struct maker {
  unsigned m, n;
};
constexpr maker kMakers[] = {{2, 32}, {3, 1}, {20, 99}, {35, 203}, {67, 83}, {84, 50}, {170, 90}};

}  // namespace

// C = ~(D + S + F) of three bytes. The definition adds the unit as the high bits of F; remotes
// add the byte that is sent, in which the unit holds the low bits.
bool anthem_sum(const reading& read) {
  const unsigned unit = read.get({16, 2});
  const unsigned function = read.get({18, 6});
  const unsigned sum = byte_at(read, 0) + byte_at(read, 8) + 255;
  const unsigned check = byte_at(read, 24);
  return check == (~(sum + (unit << 6) + function) & 0xFF) ||
         check == (~(sum + byte_at(read, 16)) & 0xFF);
}

bool denon_k_xor(const reading& read) {
  const unsigned device = nibble_at(read, 20);
  const unsigned sub = nibble_at(read, 24);
  const unsigned function = read.get({28, 12});
  return byte_at(read, 40) == ((device << 4 ^ sub ^ function << 4 ^ function >> 4) & 0xFF);
}

namespace {

/// The four parity bits without D's third bit, which reverses all of them.
unsigned gi4dtv_difference(const reading& read) {
  const unsigned f = read.get({0, 6});
  const unsigned d = read.get({6, 2});
  const auto ones = [](unsigned value) { return static_cast<unsigned>(std::popcount(value)); };
  const unsigned expected =
      ((ones(f & 25) + ones(d & 1)) & 1) | ((ones(f & 43) + ones(d & 3)) & 1) << 1 |
      ((ones(f & 22) + ones(d & 3)) & 1) << 2 | ((ones(f & 44) + ones(d & 2)) & 1) << 3;
  return expected ^ nibble_at(read, 8);
}

}  // namespace

bool gi4dtv_parity(const reading& read) {
  const unsigned difference = gi4dtv_difference(read);
  return difference == 0 || difference == 0xF;
}

bool read_gi4dtv(const reading& read, answer* out) {
  if (gi4dtv_difference(read) != 0) out->device |= 4;
  return true;
}

bool gi_cable_sum(const reading& read) {
  return nibble_sum(read, 0, 4) == 0;
}

// X of M and N, and C of the 24 bits after it.
bool kaseikyo_xor(const reading& read) {
  return nibble_xor(read, 0, 5) == 0 && nibble_xor(read, 20, 7) == 0;
}

bool maker_parity(const reading& read) {
  return nibble_xor(read, 0, 5) == 0;
}

bool lego_xor(const reading& read) {
  return nibble_xor(read, 0, 4) == 0xF;
}

bool lg_sum(const reading& read) {
  return nibble_sum(read, 8, 4) == nibble_at(read, 24);
}

bool lumagen_parity(const reading& read) {
  return (std::popcount(read.get({4, 8})) & 1) == 1;
}

bool mitsubishi_k_sum(const reading& read) {
  return ((nibble_sum(read, 28, 4) + nibble_at(read, 44)) & 0xF) == 0xF;
}

bool sharp_dvd_xor(const reading& read) {
  return nibble_xor(read, 20, 7) == 0;
}

bool teac_k_sum(const reading& read) {
  unsigned sum = 0;
  for (int first = 20; first < 40; first += 4) sum += nibble_at(read, first);
  return byte_at(read, 40) == sum;
}

bool xor_of_three(const reading& read) {
  return (byte_at(read, 16) ^ byte_at(read, 24) ^ byte_at(read, 32)) == byte_at(read, 40);
}

bool xor_of_four(const reading& read) {
  return (byte_at(read, 16) ^ byte_at(read, 24) ^ byte_at(read, 32) ^ byte_at(read, 40)) ==
         byte_at(read, 48);
}

/// Each bit is sent as two symbols, the second the opposite of the first.
bool pairs_differ(const reading& read) {
  for (int i = 0; i < read.from->wire.distance()->bits; i += 2) {
    if (read.get({i, 1}) == read.get({i + 1, 1})) return false;
  }
  return true;
}

bool read_pid0083(const reading& read, answer* out) {
  out->function = 0;
  for (int i = 0; i < read.from->wire.distance()->bits / 2; ++i) {
    out->function |= static_cast<int>(read.get({2 * i, 1})) << i;
  }
  return true;
}

// A Matsui frame's long symbol is exactly twice the short one, an Akai frame's a little more. Where
// noise hides that, such a mark is rather Matsui's.
bool read_akai(const reading& read, answer*) {
  constexpr float kHalfway = 0.007F;
  const pulse_distance& wire = *read.from->wire.distance();
  const float mark = wire.mark * wire.unit * read.fit.scale + read.fit.bias;
  return mark < kMatsuiShortestMarkUs || (!read.fit.noisy && read.fit.skew < kHalfway);
}

bool read_anthem(const reading& read, answer* out) {
  out->remark.print("Unit=%u", read.get({16, 2}));
  return true;
}

bool read_complemented(const reading& read, answer* out) {
  const unsigned mask = (1U << read.from->function.width) - 1;
  out->function ^= static_cast<int>(mask);
  out->hex.first ^= static_cast<int>(mask);
  return true;
}

namespace {

/// Whether the frame may be the first 40 bits of an Aiwa frame.
bool is_aiwa(const reading& read) {
  constexpr unsigned kAddress = (1U << 13) - 1;
  return (read.get({0, 13}) ^ read.get({13, 13})) == kAddress;
}

}  // namespace

bool read_nec40(const reading& read, answer*) {
  return !is_aiwa(read);
}

// The name ends in n, which the last nibble completes; what that nibble is, nothing checks.
bool read_iodata(const reading& read, answer* out) {
  if (is_aiwa(read)) return false;
  const unsigned x = read.get({0, 7});
  const unsigned y = read.get({21, 7});
  out->name.print("%u", nibble_xor(read, 28, 3));
  if (x != 0 || y != 0) out->remark.print("x=%u, y=%u", x, y);
  return true;
}

// Nothing but its lead-in tells a JVC frame from other 16 bits, so that has to fit the clock of the
// bits. The mark may have grown while the receiver's gain settled.
bool read_jvc(const reading& read, answer*) {
  constexpr float kError = 0.045F;  // captured lead-ins reach -3.1 and +3.8 %
  const pulse_distance& wire = *read.from->wire.distance();
  const float unit = wire.unit * read.fit.scale;
  const auto fits = [](float found, float wanted) {
    return found > (1 - kError) * wanted && found < (1 + kError) * wanted;
  };
  return fits(read.seen.burst(0), (wire.lead.on + wire.lead.off) * unit) ||
         (read.seen.on(0) > wire.lead.on * unit &&
          fits(read.seen.off(0) + read.fit.bias, wire.lead.off * unit));
}

// The first bit of a RECS80 frame is a one; in frames that begin with a zero it belongs to the
// address, for all that is known, and keeps their devices apart.
bool read_recs80(const reading&, answer* out) {
  out->device += 8;
  return true;
}

// A maker with a row of its own sent a damaged frame if it comes here.
bool read_kaseikyo(const reading& read, answer* out) {
  for (const maker& known : kMakers) {
    if (byte_at(read, 0) == known.m && byte_at(read, 8) == known.n) return false;
  }
  out->name.print("-%u-%u", byte_at(read, 0), byte_at(read, 8));
  return true;
}

}  // namespace analysis
