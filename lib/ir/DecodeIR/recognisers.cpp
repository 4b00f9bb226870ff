// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/recognisers.h"

#include "lib/ir/DecodeIR/protocols/protocols.h"

namespace analysis {
namespace {

/// What the first of these says of the frame.
template <auto... kRead>
std::optional<answer> first_of(const frame& seen) {
  std::optional<answer> found;
  ((found = kRead(seen)) || ...);
  return found;
}

/// What the first row that fits says of it.
template <const std::span<const row>&... kTables>
std::optional<answer> by_rows(const frame& seen) {
  std::optional<answer> found;
  ((found = read_rows(kTables, seen)) || ...);
  return found;
}

/// `fewest` to `most` bursts with at least so many µs of silence on both sides.
constexpr frame_bounds between(int fewest, int most, float gap_us) {
  return {fewest, most, gap_us, gap_us};
}
constexpr frame_bounds ending_in_data(frame_bounds bounds) {
  bounds.ends_in_data = true;
  return bounds;
}

constexpr frame_bounds kNever = between(frame::kMostBursts + 1, frame::kMostBursts, 1e9F);

}  // namespace

constinit const recogniser_table kRecognisers{{{
    // The gap behind the first half of a frame is shorter than those around the frame.
    {0, "XMP", {9, 9, 10000, 5000}, xmp},
    {1, "Zenith", between(16, 26, 12000), zenith},
    {2, "X10", between(10, 12, 3400), x10},
    {3, "XX", between(5, 18, 10000), xx},
    {4, "TDC", between(9, 34, 10000), by_rows<kTdcRows>},
    {5, "Sejin", between(10, 18, 10000), sejin},
    {6, "Q1", kNever, unpublished},
    {7, "Q2", between(6, 36, 10000), solidtek},
    {8, "DirecTV", between(10, 15, 5000), first_of<directv, epson>},
    {9, "Somfy", between(10, 10, 2400), somfy},
    {10, "Gap", between(2, 100, 3600), gap},
    {11, "RC5", between(7, 20, 6000), rc5},
    {12, "RC6", between(11, 64, 6000), rc6},
    {13, "CanalSat", between(12, 29, 6000), by_rows<kCanalSatRows>},
    {14, "Nokia", between(8, 50, 5000), first_of<nokia, xiaomi, xiaomi_ac>},
    {15, "PCTV", between(2, 12, 10000), pctv},
    {16, "F12", ending_in_data(between(12, 33, 6000)), by_rows<kF12Rows>},
    {17, "Sony", between(9, 21, 5000), by_rows<kSonyRows>},
    {18, "SingleBurstSize", between(8, 16, 10000), by_rows<kSingleBurstSizeRows>},
    {19, "GXB", between(15, 15, 10000), by_rows<kGxbRows>},
    {20, "Async", kNever, unpublished},
    {21, "Airboard", kNever, unpublished},
    {22, "AirAsync", kNever, unpublished},
    {23, "AK", kNever, unpublished},
    {24, "Sunfire", between(25, 26, 10000), first_of<by_rows<kSunfireRows>, rs200>},
    {25, "Grundig16", between(10, 18, 10000), grundig16},
    {26, "Pid13", kNever, unpublished},
    {27, "Lutron", between(3, 14, 8000), lutron},
    {28, "Elan", between(19, 35, 6000), first_of<elan, beo>},
    {29, "Bryston", between(18, 18, 10000), by_rows<kBrystonRows>},
    {30, "Humax", between(6, 24, 10000), humax},
    {31, "AdNotam", between(8, 76, 10000), by_rows<kAdNotamRows, kMcir2Rows>},
}}};

}  // namespace analysis
