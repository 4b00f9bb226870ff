// SPDX-License-Identifier: GPL-3.0-or-later
// The functions behind the table of recognisers, one for each file of this folder that reads a
// frame. Each says what the frame is, or nothing; the bounds of its row hold for the frame.
#pragma once

#include <optional>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/frame.h"

namespace analysis {

std::optional<answer> adnotam(const frame& seen);
std::optional<answer> beo(const frame& seen);
std::optional<answer> bryston(const frame& seen);
std::optional<answer> canalsat(const frame& seen);
std::optional<answer> directv(const frame& seen);
std::optional<answer> elan(const frame& seen);
std::optional<answer> epson(const frame& seen);
std::optional<answer> f12(const frame& seen);
std::optional<answer> gap(const frame& seen);
std::optional<answer> grundig16(const frame& seen);
std::optional<answer> gxb(const frame& seen);
std::optional<answer> humax(const frame& seen);
std::optional<answer> lutron(const frame& seen);
std::optional<answer> mcir2(const frame& seen);
std::optional<answer> nokia(const frame& seen);
std::optional<answer> pctv(const frame& seen);
std::optional<answer> rc5(const frame& seen);
std::optional<answer> rc6(const frame& seen);
std::optional<answer> rs200(const frame& seen);
std::optional<answer> sejin(const frame& seen);
std::optional<answer> single_burst_size(const frame& seen);
std::optional<answer> solidtek(const frame& seen);
std::optional<answer> somfy(const frame& seen);
std::optional<answer> sony(const frame& seen);
std::optional<answer> sunfire(const frame& seen);
std::optional<answer> tdc(const frame& seen);
std::optional<answer> unknown_gap(const frame& seen);
std::optional<answer> unpublished(const frame& seen);
std::optional<answer> x10(const frame& seen);
std::optional<answer> xiaomi(const frame& seen);
std::optional<answer> xmp(const frame& seen);
std::optional<answer> xx(const frame& seen);
std::optional<answer> zenith(const frame& seen);

}  // namespace analysis
