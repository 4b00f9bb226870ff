// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/ir_codes.h"

#include <array>
#include <string_view>

#include "companions/formats/ir_protocols.h"

namespace companions {
namespace {

unsigned reversed(unsigned value, int bits) {
  unsigned result = 0;
  for (int i = 0; i < bits; ++i) result |= (value >> i & 1) << (bits - 1 - i);
  return result;
}

constexpr unsigned byte(unsigned value) {
  return value & 0xFF;
}

// One way for each protocol of the form; d, s, f are the numbers of the answer.

ir_code nec(unsigned d, unsigned s, unsigned f) {
  if (s == byte(~d)) return {"NEC", d, f};
  return {"NECext", s << 8 | d, byte(~f) << 8 | f};
}

ir_code samsung(unsigned d, unsigned, unsigned f) {
  return {"Samsung32", d, f};
}

ir_code rc5(unsigned d, unsigned, unsigned f) {
  constexpr unsigned kSecondStartBit = 64;  // 0 on the wire for the functions from 64 on
  return {f < kSecondStartBit ? "RC5" : "RC5X", d, f % kSecondStartBit};
}

ir_code rc6(unsigned d, unsigned, unsigned f) {
  return {"RC6", d, f};
}

ir_code sirc(unsigned d, unsigned, unsigned f) {
  return {"SIRC", d, f};
}

ir_code sirc15(unsigned d, unsigned, unsigned f) {
  return {"SIRC15", d, f};
}

ir_code sirc20(unsigned d, unsigned s, unsigned f) {
  return {"SIRC20", s << 5 | d, f};
}

/// D is a byte of genre and vendor parity, S holds the other genre and the low half of the command,
/// F its high bits and the id.
ir_code panasonic(unsigned d, unsigned s, unsigned f) {
  constexpr unsigned kVendor = 0x2002;
  return {"Kaseikyo", f >> 6 << 24 | kVendor << 8 | (d >> 4) << 4 | (s & 0xF),
          (f & 0x3F) << 4 | s >> 4};
}

ir_code pioneer(unsigned d, unsigned, unsigned f) {
  return {"Pioneer", d, f};
}

ir_code rca(unsigned d, unsigned, unsigned f) {
  return {"RCA", reversed(d, 4), reversed(f, 8)};
}

struct way {
  std::string_view protocol;  // how the answer's name begins
  ir_code (*code)(unsigned d, unsigned s, unsigned f);
};

/// The first that fits is taken, so longer names stand before their beginnings.
constexpr std::array<way, 11> kWays{{
    {"NECx", samsung},
    {"NEC", nec},
    {"RC5", rc5},
    {"RC6", rc6},
    {"Sony12", sirc},
    {"Sony15", sirc15},
    {"Sony20", sirc20},
    {"Panasonic", panasonic},
    {"Pioneer", pioneer},
    {"RCA", rca},
    {"Samsung", samsung},
}};

std::optional<ir_code> code_of(const analysis_answer& answer) {
  if (answer.device < 0 || answer.obc < 0) return std::nullopt;
  for (const way& one : kWays) {
    if (!answer.protocol.starts_with(one.protocol)) continue;
    // A protocol without a subdevice sends the complement of the device in its place.
    const auto d = static_cast<unsigned>(answer.device);
    const unsigned s = answer.subdevice < 0 ? byte(~d) : static_cast<unsigned>(answer.subdevice);
    return one.code(d, s, static_cast<unsigned>(answer.obc));
  }
  return std::nullopt;
}

}  // namespace

std::optional<ir_code> certain_code(const identity& frame) {
  if (!frame.answer) return std::nullopt;
  std::optional<ir_code> code = code_of(*frame.answer);
  pattern sent;
  if (!code || render_code(*code, sent).has_value()) return std::nullopt;
  const std::vector<identity> frames = identify(sent);
  if (frames.empty() || !frames.front().answer || !same(frames.front(), frame)) return std::nullopt;
  return code;
}

}  // namespace companions
