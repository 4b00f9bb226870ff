// SPDX-License-Identifier: GPL-3.0-or-later
// What stands behind the table of recognisers, one for each file of this folder that reads a frame:
// a function that says what the frame is, or nothing, or rows that read_rows looks at. The bounds
// of the recogniser hold for the frame.
#pragma once

#include <optional>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/frame.h"
#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {

std::optional<answer> beo(const frame& seen);
std::optional<answer> directv(const frame& seen);
std::optional<answer> elan(const frame& seen);
std::optional<answer> epson(const frame& seen);
std::optional<answer> gap(const frame& seen);
std::optional<answer> grundig16(const frame& seen);
std::optional<answer> humax(const frame& seen);
std::optional<answer> lutron(const frame& seen);
std::optional<answer> nokia(const frame& seen);
std::optional<answer> pctv(const frame& seen);
std::optional<answer> rc5(const frame& seen);
std::optional<answer> rc6(const frame& seen);
std::optional<answer> rs200(const frame& seen);
std::optional<answer> sejin(const frame& seen);
std::optional<answer> solidtek(const frame& seen);
std::optional<answer> somfy(const frame& seen);
std::optional<answer> unknown_gap(const frame& seen);
std::optional<answer> unpublished(const frame& seen);
std::optional<answer> x10(const frame& seen);
std::optional<answer> xiaomi(const frame& seen);
std::optional<answer> xiaomi_ac(const frame& seen);
std::optional<answer> xmp(const frame& seen);
std::optional<answer> xx(const frame& seen);
std::optional<answer> zenith(const frame& seen);

extern const std::span<const row> kAdNotamRows;
extern const std::span<const row> kBrystonRows;
extern const std::span<const row> kCanalSatRows;
extern const std::span<const row> kF12Rows;
extern const std::span<const row> kGxbRows;
extern const std::span<const row> kMcir2Rows;
extern const std::span<const row> kSingleBurstSizeRows;
extern const std::span<const row> kSonyRows;
extern const std::span<const row> kSunfireRows;
extern const std::span<const row> kTdcRows;

}  // namespace analysis
