// SPDX-License-Identifier: GPL-3.0-or-later
// The protocols that the mark/space engine knows, and what their bits say about each other.
//
// Lengths and layouts are the makers' published ones; the clocks are those of
// captured remotes.
#include <bit>

#include "lib/ir/arduino/mark_space.h"

namespace arduino {
namespace {

// Bits `from` … `from + count - 1` of a frame of `all` bits, bit 0 sent first.
constexpr uint64_t field(uint64_t bits, unsigned all, unsigned from, unsigned count) {
  return bits >> (all - from - count) & ((uint64_t{1} << count) - 1);
}

constexpr bool complementary(uint64_t a, uint64_t b, unsigned count) {
  return (a ^ b) == (uint64_t{1} << count) - 1;
}

// cccccccccccccCCCCCCCCCCCCCkkkkkkkkKKKKKKKK: custom code and key, each with its complement.
constexpr unsigned kSanyoBits = 42;
constexpr unsigned kCustomBits = 13;
constexpr unsigned kKeyBits = 8;
constexpr uint64_t kAiwaCustom = 0b1000100111111;

proof check_sanyo(uint64_t bits) {
  const uint64_t custom = field(bits, kSanyoBits, 0, kCustomBits);
  const uint64_t custom_inverse = field(bits, kSanyoBits, kCustomBits, kCustomBits);
  const uint64_t key = field(bits, kSanyoBits, 2 * kCustomBits, kKeyBits);
  const uint64_t key_inverse = field(bits, kSanyoBits, 2 * kCustomBits + kKeyBits, kKeyBits);
  return complementary(custom, custom_inverse, kCustomBits) &&
                 complementary(key, key_inverse, kKeyBits)
             ? proof::strong
             : proof::refuted;
}

proof check_aiwa(uint64_t bits) {
  return field(bits, kSanyoBits, 0, kCustomBits) == kAiwaCustom ? check_sanyo(bits)
                                                                : proof::refuted;
}

// mmmmmmmmmmmmmmmm dddddddd ssssssss ffffffff xxxxxxxx: maker, device, subdevice, function, and
// x = d ^ s ^ f. The maker is 2, 32, each byte sent lowest bit first.
constexpr unsigned kPanasonicBits = 48;
constexpr uint64_t kPanasonicMaker = 0x4004;

proof check_panasonic(uint64_t bits) {
  const auto byte = [bits](unsigned number) { return field(bits, kPanasonicBits, 8 * number, 8); };
  const bool holds = field(bits, kPanasonicBits, 0, 16) == kPanasonicMaker &&
                     (byte(2) ^ byte(3) ^ byte(4)) == byte(5);
  return holds ? proof::strong : proof::refuted;
}

// aaaaaaaa cccccccccccccccc ssss: address, command, and s = the sum of the command's nibbles.
constexpr unsigned kLgBits = 28;

proof check_lg(uint64_t bits) {
  uint64_t sum = 0;
  for (unsigned nibble = 2; nibble < 6; nibble++) sum += field(bits, kLgBits, 4 * nibble, 4);
  return (sum & 0xF) == (bits & 0xF) ? proof::weak : proof::refuted;
}

// dddddddd ssssssss ffffffff xxxxxxxx: device, subdevice, function, and its complement, which
// proves the frame. Many remotes send something else instead, so a complement that does not hold
// refutes nothing; one that fails in a single bit does, as that is what a damaged frame looks like.
constexpr unsigned kNecBits = 32;

// The bits in which the last byte is not the complement of the function.
unsigned wrong_bits(uint64_t bits) {
  const uint64_t function = field(bits, kNecBits, 16, 8);
  const uint64_t last = field(bits, kNecBits, 24, 8);
  return unsigned(function ^ last ^ 0xFF);
}

proof check_samsung(uint64_t bits) {
  const unsigned wrong = wrong_bits(bits);
  if (wrong == 0) return proof::strong;
  return std::has_single_bit(wrong) ? proof::refuted : proof::weak;
}

// Remotes whose subdevice is not the complement of the device use the last byte freely, and some
// give its first or last bit another meaning.
proof check_nec(uint64_t bits) {
  constexpr unsigned kFreeBits = 0x81;
  const bool plain = complementary(field(bits, kNecBits, 0, 8), field(bits, kNecBits, 8, 8), 8);
  const unsigned wrong = wrong_bits(bits);
  if (wrong == 0) return proof::strong;
  return plain && std::has_single_bit(wrong & ~kFreeBits) ? proof::refuted : proof::weak;
}

// The last two bits, expansion and check, differ in Sharp frames and are alike in Denon's.
proof check_sharp(uint64_t bits) {
  return (bits >> 1 & 1U) != (bits & 1U) ? proof::weak : proof::refuted;
}

proof check_denon(uint64_t bits) {
  return (bits >> 1 & 1U) == (bits & 1U) ? proof::weak : proof::refuted;
}

constexpr lead_in kNoLead = {};
constexpr lead_in kNecLead = {1, {{{9000, 4500}}}};
constexpr lead_in kLgLead = {1, {{{8750, 4375}}}};  // from 8500/4250 to 9000/4500
constexpr symbol kNecZero = {560, 560};
constexpr symbol kNecOne = {560, 1690};
constexpr clocks kNecSeen = {0.90, 1.08};  // Pioneer's unit is 525 µs, others reach 600
constexpr symbol kSharpZero = {264, 792};
constexpr symbol kSharpOne = {264, 1848};
constexpr clocks kSharpSeen = {0.92, 1.09};
constexpr symbol kJvcZero = {525, 525};
constexpr symbol kJvcOne = {525, 1575};
constexpr auto kStop = ending::stop_mark;

// Frames that a check of their own proves, the strongest first. NEC and Samsung stand among
// them for their complement, though some remotes do without.
constexpr mark_space kChecked[] = {
    {"AIWA_RC_T501", kNecLead, kNecZero, kNecOne, kStop, kSanyoBits, kProvenClocks, check_aiwa},
    {"PANASONIC",
     {1, {{{3456, 1728}}}},
     {432, 432},
     {432, 1296},
     kStop,
     kPanasonicBits,
     kProvenClocks,
     check_panasonic},
    {"SANYO", kNecLead, kNecZero, kNecOne, kStop, kSanyoBits, kProvenClocks, check_sanyo},
    {"NEC", kNecLead, kNecZero, kNecOne, kStop, kNecBits, kNecSeen, check_nec},
    {"SAMSUNG", {1, {{{4500, 4500}}}}, kNecZero, kNecOne, kStop, kNecBits, kNecSeen, check_samsung},
    {"LG", kLgLead, kNecZero, kNecOne, kStop, kLgBits, {0.88, 1.05}, check_lg},
};

// Frames with a lead-in or a bit count of their own, and little else. JVC's limits of clock keep
// a 16-bit frame of NEC's unit out.
constexpr mark_space kPlain[] = {
    {"WHYNTER",
     {2, {{{750, 750}, {3000, 3000}}}},
     {750, 750},
     {750, 2250},
     kStop,
     32,
     {0.93, 1.07},
     nullptr},
    {"JVC", {1, {{{8400, 4200}}}}, kJvcZero, kJvcOne, kStop, 16, {0.93, 1.05}, nullptr},
    {"SHARP", kNoLead, kSharpZero, kSharpOne, kStop, 15, kSharpSeen, check_sharp},
    {"DENON", kNoLead, kSharpZero, kSharpOne, kStop, 15, kSharpSeen, check_denon},
    {"MITSUBISHI", kNoLead, {300, 900}, {300, 2100}, kStop, 16, {0.93, 1.07}, nullptr},
    {"JVC", kNoLead, kJvcZero, kJvcOne, kStop, 16, {0.93, 1.06}, nullptr},
};

}  // namespace

bool match_checked_mark_space(const frame& f, arduino_result& result) {
  return match_any(kChecked, f, result);
}

bool match_plain_mark_space(const frame& f, arduino_result& result) {
  return match_any(kPlain, f, result);
}

}  // namespace arduino
