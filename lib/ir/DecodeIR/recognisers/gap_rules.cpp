// SPDX-License-Identifier: GPL-3.0-or-later
// Check sums, parities and the names that depend on the data. Bit numbers count from the first
// bit sent; the definitions are the public IRP ones.
#include "lib/ir/DecodeIR/recognisers/gap_rules.h"

#include <bit>
#include <cstdio>

namespace gap {
namespace {

unsigned byteAt(const reading& frame, int first) {
  return frame.get({first, 8});
}

unsigned nibbleAt(const reading& frame, int first) {
  return frame.get({first, 4});
}

/// The exclusive-or of `count` nibbles from `first` on.
unsigned nibbleXor(const reading& frame, int first, int count) {
  unsigned value = 0;
  for (int i = 0; i < count; ++i) value ^= nibbleAt(frame, first + 4 * i);
  return value;
}

unsigned nibbleSum(const reading& frame, int first, int count) {
  unsigned value = 0;
  for (int i = 0; i < count; ++i) value += nibbleAt(frame, first + 4 * i);
  return value & 0xF;
}

void rename(answer* out, const char* name) {
  std::snprintf(out->name.data(), out->name.size(), "%s", name);
}

template <typename... Numbers>
void remark(answer* out, const char* format, Numbers... numbers) {
  std::snprintf(out->remark.data(), out->remark.size(), format, numbers...);
}

/// In the NEC family a subdevice that is the complement of the device is none.
void dropComplement(answer* out) {
  if (out->subDevice == 255 - out->device) out->subDevice = -1;
}

/// The two bytes that name a maker in the 48-bit and 56-bit codes.
struct maker {
  unsigned m, n;
};
constexpr maker kMakers[] = {{2, 32}, {3, 1}, {20, 99}, {35, 203}, {67, 83}, {84, 50}, {170, 90}};

}  // namespace

// C = ~(D + S + F) of three bytes. The definition adds the unit as the high bits of F; remotes
// add the byte that is sent, in which the unit holds the low bits.
bool anthemSum(const reading& frame) {
  const unsigned unit = frame.get({16, 2});
  const unsigned function = frame.get({18, 6});
  const unsigned sum = byteAt(frame, 0) + byteAt(frame, 8) + 255;
  const unsigned check = byteAt(frame, 24);
  return check == (~(sum + (unit << 6) + function) & 0xFF) ||
         check == (~(sum + byteAt(frame, 16)) & 0xFF);
}

bool denonKXor(const reading& frame) {
  const unsigned device = nibbleAt(frame, 20);
  const unsigned sub = nibbleAt(frame, 24);
  const unsigned function = frame.get({28, 12});
  return byteAt(frame, 40) == ((device << 4 ^ sub ^ function << 4 ^ function >> 4) & 0xFF);
}

namespace {

/// The four parity bits without D's third bit, which reverses all of them.
unsigned gi4dtvDifference(const reading& frame) {
  const unsigned f = frame.get({0, 6});
  const unsigned d = frame.get({6, 2});
  const auto ones = [](unsigned value) { return static_cast<unsigned>(std::popcount(value)); };
  const unsigned expected =
      ((ones(f & 25) + ones(d & 1)) & 1) | ((ones(f & 43) + ones(d & 3)) & 1) << 1 |
      ((ones(f & 22) + ones(d & 3)) & 1) << 2 | ((ones(f & 44) + ones(d & 2)) & 1) << 3;
  return expected ^ nibbleAt(frame, 8);
}

}  // namespace

bool gi4dtvParity(const reading& frame) {
  const unsigned difference = gi4dtvDifference(frame);
  return difference == 0 || difference == 0xF;
}

bool readGi4dtv(const reading& frame, answer* out) {
  if (gi4dtvDifference(frame) != 0) out->device |= 4;
  return true;
}

bool giCableSum(const reading& frame) {
  return nibbleSum(frame, 0, 4) == 0;
}

// X of M and N, and C of the 24 bits after it.
bool kaseikyoXor(const reading& frame) {
  return nibbleXor(frame, 0, 5) == 0 && nibbleXor(frame, 20, 7) == 0;
}

bool makerParity(const reading& frame) {
  return nibbleXor(frame, 0, 5) == 0;
}

bool legoXor(const reading& frame) {
  return nibbleXor(frame, 0, 4) == 0xF;
}

bool lgSum(const reading& frame) {
  return nibbleSum(frame, 8, 4) == nibbleAt(frame, 24);
}

bool lumagenParity(const reading& frame) {
  return (std::popcount(frame.get({4, 8})) & 1) == 1;
}

bool mitsubishiKSum(const reading& frame) {
  return ((nibbleSum(frame, 28, 4) + nibbleAt(frame, 44)) & 0xF) == 0xF;
}

bool sharpDvdXor(const reading& frame) {
  return nibbleXor(frame, 20, 7) == 0;
}

bool teacKSum(const reading& frame) {
  unsigned sum = 0;
  for (int first = 20; first < 40; first += 4) sum += nibbleAt(frame, first);
  return byteAt(frame, 40) == sum;
}

bool xorOfThree(const reading& frame) {
  return (byteAt(frame, 16) ^ byteAt(frame, 24) ^ byteAt(frame, 32)) == byteAt(frame, 40);
}

bool xorOfFour(const reading& frame) {
  return (byteAt(frame, 16) ^ byteAt(frame, 24) ^ byteAt(frame, 32) ^ byteAt(frame, 40)) ==
         byteAt(frame, 48);
}

/// Each bit is sent as two symbols, the second the opposite of the first.
bool pairsDiffer(const reading& frame) {
  for (int i = 0; i < frame.from->wire->bits; i += 2) {
    if (frame.get({i, 1}) == frame.get({i + 1, 1})) return false;
  }
  return true;
}

bool readPid0083(const reading& frame, answer* out) {
  out->obc = 0;
  for (int i = 0; i < frame.from->wire->bits / 2; ++i) {
    out->obc |= static_cast<int>(frame.get({2 * i, 1})) << i;
  }
  return true;
}

// A Matsui frame's long symbol is exactly twice the short one, an Akai frame's a little more.
bool readAkai(const reading& frame, answer*) {
  constexpr float kHalfway = 0.007F;
  const coding& wire = *frame.from->wire;
  const float mark = wire.mark * wire.unit * frame.wire.scale + frame.wire.bias;
  return mark < kMatsuiShortestMarkUs || frame.wire.skew < kHalfway;
}

bool readAnthem(const reading& frame, answer* out) {
  remark(out, "Unit=%u", frame.get({16, 2}));
  return true;
}

bool readComplemented(const reading& frame, answer* out) {
  const unsigned mask = (1U << frame.from->obc.width) - 1;
  out->obc ^= static_cast<int>(mask);
  out->hex[0] ^= static_cast<int>(mask);
  return true;
}

// The name ends in n, which the last nibble completes. Nothing else is checked, so keep away from
// the first 40 bits of an Aiwa frame.
bool readIodata(const reading& frame, answer* out) {
  constexpr unsigned kAiwaAddress = (1U << 13) - 1;
  if ((frame.get({0, 13}) ^ frame.get({13, 13})) == kAiwaAddress) return false;
  const unsigned x = frame.get({0, 7});
  const unsigned y = frame.get({21, 7});
  std::snprintf(out->name.data(), out->name.size(), "IODATA%u", nibbleXor(frame, 28, 3));
  if (x != 0 || y != 0) remark(out, "x=%u, y=%u", x, y);
  return true;
}

// A maker with a row of its own sent a damaged frame if it comes here.
bool readKaseikyo(const reading& frame, answer* out) {
  for (const maker& known : kMakers) {
    if (byteAt(frame, 0) == known.m && byteAt(frame, 8) == known.n) return false;
  }
  std::snprintf(out->name.data(), out->name.size(), "%s-%u-%u", frame.from->name, byteAt(frame, 0),
                byteAt(frame, 8));
  return true;
}

namespace {

constexpr int kTivoDevice = 133;
constexpr int kTivoSub = 48;
constexpr int kAppleDevice = 238;
constexpr int kAppleSub = 135;
// Pioneer sends the same code a little faster, from devices of its own.
constexpr float kPioneerShortestUnitUs = 519;
constexpr float kPioneerLongestUnitUs = 549;
constexpr int kPioneerFirst = 160;
constexpr int kPioneerLast = 175;
constexpr int kPioneerCarrierLeast = 39500;
constexpr int kPioneerCarrierMost = 41000;

/// Apple's bit below F makes the parity of all four bytes odd.
bool hasAppleParity(const reading& frame) {
  return byteAt(frame, 8) == kAppleSub && (std::popcount(frame.wire.bits) & 1) == 1;
}

bool isPioneer(const reading& frame, const answer& out) {
  if (out.subDevice != -1 || out.device < kPioneerFirst || out.device > kPioneerLast) return false;
  const float unit = frame.wire.scale * frame.from->wire->unit;
  return (unit > kPioneerShortestUnitUs && unit < kPioneerLongestUnitUs) ||
         (frame.carrier > kPioneerCarrierLeast && frame.carrier < kPioneerCarrierMost);
}

constexpr int kAddressBits = 16;

/// A code that no complement vouches for has to be clean.
bool clean(const reading& frame) {
  return frame.wire.guessed < 0 && !frame.wire.uneven;
}

/// Of a plain code the address has to be clean, unless its second byte vouches for the first.
bool addressSure(const reading& frame) {
  const int guessed = frame.wire.guessed;
  const unsigned difference = byteAt(frame, 0) ^ byteAt(frame, 8);
  return guessed < 0 || guessed >= kAddressBits || difference == 0xFF || difference == 0;
}

}  // namespace

// D:8 S:8 F:8 and a fourth byte that tells the relatives apart.
bool readNec(const reading& frame, answer* out) {
  const unsigned function = byteAt(frame, 16);
  const unsigned last = byteAt(frame, 24);
  const unsigned wrong = function ^ last ^ 0xFF;  // bits that break the complement
  const unsigned high = function >> 4;
  const unsigned low = function & 0xF;

  if (wrong == 0) {
    if (!addressSure(frame)) return false;
    dropComplement(out);
    if (isPioneer(frame, *out)) rename(out, "Pioneer");
    return true;
  }
  if (!clean(frame)) return false;
  if (out->device == kTivoDevice && out->subDevice == kTivoSub && last >> 4 == 15 - high) {
    rename(out, "Tivo");
    remark(out, "U=%u", last & 0xF);
    return true;
  }
  const bool apple = hasAppleParity(frame);
  if (apple && out->device == kAppleDevice) {
    rename(out, "Apple");
    out->obc = static_cast<int>(function >> 1);
    remark(out, "PairID=%u", last);
    return true;
  }
  if (!apple && last == ((low ^ 0xF) << 4 | high)) {
    rename(out, "Ortek_NEClike");
    return true;
  }
  dropComplement(out);
  if (!apple && last == ((low ^ 0xF) << 4 | (high ^ 0xF))) {
    out->suffix = "-rnc";
  } else if (!apple && (wrong & ~0x81U) == 0) {
    out->suffix = "-Yamaha";
    remark(out, "Y=%u", (wrong & 1) << 1 | wrong >> 7);
  } else {
    out->suffix = "-f16";
    out->hex[1] = code_byte(frame, {24, 8});
    remark(out, "E=%u", last);
  }
  return true;
}

bool readNecx(const reading& frame, answer* out) {
  dropComplement(out);
  const unsigned last = byteAt(frame, 24);
  if ((byteAt(frame, 16) ^ last) == 0xFF) return addressSure(frame);
  if (!clean(frame)) return false;
  out->suffix = "-f16";
  out->hex[1] = code_byte(frame, {24, 8});
  remark(out, "E=%u", last);
  return true;
}

bool read48Nec(const reading& frame, answer* out) {
  dropComplement(out);
  return addressSure(frame);
}

}  // namespace gap
