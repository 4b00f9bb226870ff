// SPDX-License-Identifier: GPL-3.0-or-later
// Short codes whose bursts (mark + space) are all of one length: pid-0003 and the 8-bit remotes of
// robot cleaners.
//
//   pid-0003  40.2 kHz, unit 389 µs, lsb first, 0 = <2,-2>, 1 = <3,-1>: FFFFFFFF ffffffff
//   Roomba    38 kHz, unit 985 µs, msb first, 0 = <1,-3>, 1 = <3,-1>:  1FFFFFFF
//   F function (Roomba: with its leading one), f its complement
//
// The space of the last bit lies in the gap.
//
// Sample, Roomba, F = 130:
//   2955,985,985,2955,985,2955,985,2955,985,2955,985,2955,2955,985,985
// Facts: public protocol definitions in IRP notation; the cleaner's published character codes.
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {
namespace {

constexpr pulse_width kPid3{
    .units = {.unit_us = 389, .longest = 3},
    .pair = {.zero_mark = 2, .zero_space = 2, .one_mark = 3, .one_space = 1},
    .bits = 16};
constexpr pulse_width kRoomba{
    .units = {.unit_us = 985, .longest = 3},
    .pair = {.zero_mark = 1, .zero_space = 3, .one_mark = 3, .one_space = 1},
    .bits = 8};
constexpr row kRows[] = {
    {.name = "pid-0003", .wire = &kPid3, .function = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "Roomba", .wire = &kRoomba, .msb = true, .function = {0, 8}, .constants = {{0, 1, 1}}},
};
static_assert(are_sound(kRows));

}  // namespace

constinit const std::span<const row> kSingleBurstSizeRows = kRows;

}  // namespace analysis
