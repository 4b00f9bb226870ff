// SPDX-License-Identifier: GPL-3.0-or-later
// NEC and those of its relatives that only the fourth byte, the device or the clock tell apart.
//
//   <16,-8> DDDDDDDD SSSSSSSS FFFFFFFF GGGGGGGG, 564 us a unit, least significant bits first
//
//   NEC            G the complement of F; S the complement of D or a subdevice
//   Pioneer        the same a little faster, its lead-in, too, or on 40 kHz, from the devices
//                  160 to 175
//   Tivo           D 133, S 48: the upper half of G complements that of F, the lower is a unit
//   Apple          D 238, S 135: G is the remote's number; F's lowest bit makes the parity odd
//   Ortek_NEClike  the halves of G are those of F exchanged, the upper one complemented
//   NEC-rnc        ... both complemented
//   NEC-Yamaha     the complement, but for the outer bits of the byte
//   NEC-f16        anything else: sixteen bits of function
// Facts: public protocol definitions in IRP notation.
#include <bit>

#include "lib/ir/DecodeIR/protocols/distance_rules.h"

namespace analysis {
namespace {

unsigned byte_at(const reading& read, int first) {
  return read.get({first, 8});
}

constexpr int kTivoDevice = 133;
constexpr int kTivoSub = 48;
constexpr int kAppleDevice = 238;
constexpr int kAppleSub = 135;
// Pioneer sends the same code a little faster, from devices of its own.
constexpr float kPioneerLongestUnitUs = 545;
constexpr float kPioneerShortestLeadUs = 12000;  // mark and space; NEC's have 13200 and more
constexpr float kPioneerLongestLeadUs = 12950;
constexpr int kPioneerFirst = 160;
constexpr int kPioneerLast = 175;
constexpr int kPioneerCarrierLeast = 39500;
constexpr int kPioneerCarrierMost = 41000;

/// Apple's bit below F makes the parity of all four bytes odd.
bool has_apple_parity(const reading& read) {
  return byte_at(read, 8) == kAppleSub && (std::popcount(read.bits.getLsb(0, 32)) & 1) == 1;
}

bool is_pioneer(const reading& read, const answer& out) {
  if (out.subdevice != -1 || out.device < kPioneerFirst || out.device > kPioneerLast) return false;
  const float unit = read.fit.scale * read.from->wire.distance()->unit;
  const float lead = read.seen.burst(0);
  return (unit <= kPioneerLongestUnitUs && lead >= kPioneerShortestLeadUs &&
          lead <= kPioneerLongestLeadUs) ||
         (read.seen.carrier_hz > kPioneerCarrierLeast &&
          read.seen.carrier_hz < kPioneerCarrierMost);
}

constexpr int kAddressBits = 16;
constexpr float kSlowestAlone = 1.03F;  // half of the way to Anthem's clock

/// A code that no complement checks has to be undamaged.
bool undamaged(const reading& read) {
  return read.fit.unsure_bit < 0 && !read.fit.damaged;
}

/// Of a plain code the address has to be sure, unless its second byte checks the first.
bool address_sure(const reading& read) {
  const int unsure = read.fit.unsure_bit;
  const unsigned difference = byte_at(read, 0) ^ byte_at(read, 8);
  return unsure < 0 || unsure >= kAddressBits || difference == 0xFF || difference == 0;
}

/// In the NEC family a subdevice that is the complement of the device is none.
void drop_complement(answer* out) {
  if (out->subdevice == 255 - out->device) out->subdevice = -1;
}

}  // namespace

// D:8 S:8 F:8 and a fourth byte that tells the relatives apart.
bool read_nec(const reading& read, answer* out) {
  const unsigned function = byte_at(read, 16);
  const unsigned last = byte_at(read, 24);
  const unsigned wrong = function ^ last ^ 0xFF;  // bits that break the complement
  const unsigned high = function >> 4;
  const unsigned low = function & 0xF;

  if (wrong == 0) {
    if (!address_sure(read)) return false;
    drop_complement(out);
    if (is_pioneer(read, *out)) out->name = "Pioneer";
    return true;
  }
  if (!undamaged(read)) return false;
  if (out->device == kTivoDevice && out->subdevice == kTivoSub && last >> 4 == 15 - high) {
    out->name = "Tivo";
    out->remark.print("U=%u", last & 0xF);
    return true;
  }
  const bool apple = has_apple_parity(read);
  if (apple && out->device == kAppleDevice) {
    out->name = "Apple";
    out->function = static_cast<int>(function >> 1);
    out->remark.print("PairID=%u", last);
    return true;
  }
  if (!apple && last == ((low ^ 0xF) << 4 | high)) {
    out->name = "Ortek_NEClike";
    return true;
  }
  // Anthem's lead-in, grown as long as NEC's while the receiver's gain settled.
  if (read.fit.scale > kSlowestAlone && anthem_sum(read)) return false;
  drop_complement(out);
  if (!apple && last == ((low ^ 0xF) << 4 | (high ^ 0xF))) {
    out->suffix = "-rnc";
  } else if (!apple && (wrong & ~0x81U) == 0) {
    out->suffix = "-Yamaha";
    out->remark.print("Y=%u", (wrong & 1) << 1 | wrong >> 7);
  } else {
    out->suffix = "-f16";
    out->hex.second = read.code_byte({24, 8});
    out->remark.print("E=%u", last);
  }
  return true;
}

bool is_not_nec(const reading& read, answer*) {
  return (byte_at(read, 16) ^ byte_at(read, 24)) != 0xFF;
}

bool read_necx(const reading& read, answer* out) {
  drop_complement(out);
  const unsigned last = byte_at(read, 24);
  if ((byte_at(read, 16) ^ last) == 0xFF) return address_sure(read);
  if (!undamaged(read)) return false;
  out->suffix = "-f16";
  out->hex.second = read.code_byte({24, 8});
  out->remark.print("E=%u", last);
  return true;
}

bool read_48_nec(const reading& read, answer* out) {
  drop_complement(out);
  return address_sure(read);
}

}  // namespace analysis
