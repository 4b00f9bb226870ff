// SPDX-License-Identifier: GPL-3.0-or-later
// Epson: two bits per burst, as DirecTV sends them.
//
// Modulation: 38.4 kHz, unit 577 µs; 0 = 2,-1  1 = 1,-2  2 = 1,-1  3 = 2,-2
// Frame: lead-in 4,-1, thirteen symbols, stop mark; gap 75 ms
// Layout (least significant symbol first): DDDDDDDD tt FFFFFF uu SSSSSSSS
// Checks: none but lead-in, symbols and their number.
// Sample (device 98, T1 1, function 33, T2 2, subdevice 170), µs:
//   2308,577,577,577,1154,577,577,577,577,1154,577,1154,577,1154,1154,577,577,577,577,577,577,577,
//   577,577,577,577,577,577,577
// Facts: public protocol definitions in IRP notation.
#include "lib/ir/DecodeIR/protocols/double_pulse.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

constexpr float kUnitUs = 577;
constexpr int kSymbols = 13;
constexpr int kBursts = kSymbols + 2;
constexpr float kLeadMinUs = 3 * kUnitUs;
constexpr float kLeadMaxUs = 5 * kUnitUs;

/// The data bits of the symbols, least significant first: a symbol of mark and space is worth 0
/// for 2,-1  1 for 1,-2  2 for 1,-1  3 for 2,-2.
bit_buffer data_of(const bit_buffer& symbols) {
  bit_buffer data;
  for (int i = 0; i < 2 * kSymbols; i += 2) {
    const bool long_mark = symbols.getBit(i) != 0;
    const bool long_space = symbols.getBit(i + 1) != 0;
    data.append(long_space);
    data.append(long_mark == long_space);
  }
  return data;
}

bool any_long_space(const bit_buffer& symbols) {
  for (int i = 1; i < 2 * kSymbols; i += 2) {
    if (symbols.getBit(i) != 0) return true;
  }
  return false;
}

}  // namespace

std::optional<answer> epson(const frame& seen) {
  if (seen.length != kBursts || !has_double_pulses(seen)) return {};
  if (seen.on(0) < kLeadMinUs || seen.on(0) > kLeadMaxUs || is_long_space(seen.off(0))) return {};
  const bit_buffer symbols = read_double_pulses(seen, kSymbols);
  // Marks of two lengths and spaces of one are another code with the same lead-in.
  if (!any_long_space(symbols) ||
      !double_pulses_fit(seen, symbols, 4 * kUnitUs, kUnitUs, kUnitUs)) {
    return {};
  }
  const bit_buffer data = data_of(symbols);
  const int function = data.lsb_number(10, 6);
  answer found{"Epson", data.lsb_number(0, 8), data.lsb_number(18, 8), function, {function}};
  found.remark.print("T1 = %u, T2 = %u", data.getLsb(8, 2), data.getLsb(16, 2));
  found.layout = {.lead = 1, .stop = true};
  return found;
}

}  // namespace analysis
