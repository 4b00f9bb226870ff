// SPDX-License-Identifier: GPL-3.0-or-later
// Rs200's switched sockets.
//
// Carrier 35.7 kHz, pulse width, most significant bit first; a zero is mark 1400, space
// 3360 µs, a one mark 588, space 3360 µs; gap 32.5 ms.
//
//   011001 HHHHHHHH P DDD FF 00 CCCC
//   H four house dials, P parity of D and F, D device less one, F function, C the sum of 9 and of
//   the nibbles H, H, PD and F x 4
//
// Sample, H1 = 1, H2 = 2, H3 = 3, H4 = 4, D = 6, F = 2:
//   1401,3361,588,3361,588,3361,1401,3361,1401,3361,588,3361,588,3361,588,3361,588,3361,1401,3361,
//   1401,3361,588,3361,1401,3361,1401,3361,1401,3361,588,3361,1401,3361,588,3361,588,3361,1401,
//   3361,1401,3361,1401,3361,588,3361,1401,3361,1401,3361,1401
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/bit_buffer.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr int kBits = 26;
constexpr float kSpaceUs = 3360;
constexpr float kToleranceUs = 400;
constexpr float kLongestOneUs = 1000;
constexpr float kLongestZeroUs = 2 * kLongestOneUs;
constexpr unsigned kHead = 25;
constexpr unsigned kSumStart = 9;

bool checks_hold(const bit_buffer& bits) {
  const unsigned sum = kSumStart + bits.getMsb(6, 4) + bits.getMsb(10, 4) + bits.getMsb(14, 4) +
                       4 * bits.getMsb(18, 2);
  return bits.getMsb(0, 6) == kHead && bits.getMsb(20, 2) == 0 &&
         bits.getMsb(22, 4) == (sum & 0xF) && parity(bits.getMsb(14, 6)) == 1;
}

}  // namespace

std::optional<answer> rs200(const frame& seen) {
  if (seen.length != kBits || seen.on_times.largest > kLongestZeroUs ||
      seen.off_times.smallest < kSpaceUs - kToleranceUs ||
      seen.off_times.largest > kSpaceUs + kToleranceUs) {
    return {};
  }
  bit_buffer bits;
  for (int i = 0; i < kBits; ++i) bits.append(seen.on(i) < kLongestOneUs);
  bits.makeMsb();
  if (!checks_hold(bits)) return {};
  const auto function = static_cast<int>(bits.getMsb(18, 2));
  return answer{"Rs200",
                static_cast<int>(bits.getMsb(15, 3)) + 1,
                static_cast<int>(bits.getMsb(6, 8)),
                function,
                {function}};
}

}  // namespace analysis
