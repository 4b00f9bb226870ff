// SPDX-License-Identifier: GPL-3.0-or-later
// The checks and readings of pulse-distance protocols that a table row cannot say.
#pragma once

#include "lib/ir/DecodeIR/recognisers/gap_engine.h"

namespace gap {

// Marks between these may be Akai's that a receiver made longer, or Matsui's made shorter.
constexpr float kMatsuiShortestMarkUs = 425;
constexpr float kAkaiLongestMarkUs = 452;

// Checks: whether the frame's check bits agree with its data.
bool anthemSum(const reading& frame);
bool denonKXor(const reading& frame);
bool gi4dtvParity(const reading& frame);
bool giCableSum(const reading& frame);
bool kaseikyoXor(const reading& frame);
bool legoXor(const reading& frame);
bool lgSum(const reading& frame);
bool lumagenParity(const reading& frame);
bool makerParity(const reading& frame);
bool mitsubishiKSum(const reading& frame);
bool pairsDiffer(const reading& frame);
bool sharpDvdXor(const reading& frame);
bool teacKSum(const reading& frame);
bool xorOfThree(const reading& frame);
bool xorOfFour(const reading& frame);

// Readings: complete the answer; false refuses the frame.
bool readAkai(const reading& frame, answer* out);
bool readAnthem(const reading& frame, answer* out);
bool readComplemented(const reading& frame, answer* out);
bool readGi4dtv(const reading& frame, answer* out);
bool readIodata(const reading& frame, answer* out);
bool readKaseikyo(const reading& frame, answer* out);
bool readNec(const reading& frame, answer* out);
bool readNecx(const reading& frame, answer* out);
bool read48Nec(const reading& frame, answer* out);
bool readPid0083(const reading& frame, answer* out);

}  // namespace gap
