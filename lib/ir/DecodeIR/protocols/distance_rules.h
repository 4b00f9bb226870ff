// SPDX-License-Identifier: GPL-3.0-or-later
// The checks and readings of pulse-distance protocols that a table row cannot say.
#pragma once

#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {

// Marks between these may be Akai's that a receiver made longer, or Matsui's made shorter.
inline constexpr float kMatsuiShortestMarkUs = 425;
inline constexpr float kAkaiLongestMarkUs = 452;

// Between Mitsubishi's marks, a quarter of the short burst, and JVC's, half of it.
inline constexpr float kJvcShortestMarkUs = 385;

// Checks: whether the frame's check bits agree with its data.
bool allBytesComplemented(const reading& read);
bool anthemSum(const reading& read);
bool bytesAddUpTo255(const reading& read);
bool denonKXor(const reading& read);
bool greeState(const reading& read);
bool gi4dtvParity(const reading& read);
bool giCableSum(const reading& read);
bool kaseikyoXor(const reading& read);
bool lastByteIsSum(const reading& read);
bool legoXor(const reading& read);
bool lgSum(const reading& read);
bool lumagenParity(const reading& read);
bool makerParity(const reading& read);
bool mitsubishiKSum(const reading& read);
bool mideaSum(const reading& read);
bool pairsDiffer(const reading& read);
bool samsungCount(const reading& read);
bool sharpDvdXor(const reading& read);
bool stateComplemented(const reading& read);
bool teacKSum(const reading& read);
bool toshibaXor(const reading& read);
bool xorOfThree(const reading& read);
bool xorOfFour(const reading& read);

// Readings: complete the answer; false refuses the frame.
bool isNotNec(const reading& read, answer* out);
bool readAkai(const reading& read, answer* out);
bool readAnthem(const reading& read, answer* out);
bool readComplemented(const reading& read, answer* out);
bool readGi4dtv(const reading& read, answer* out);
bool readGree(const reading& read, answer* out);
bool readGreeNext(const reading& read, answer* out);
bool readIodata(const reading& read, answer* out);
bool readJvc(const reading& read, answer* out);
bool readKaseikyo(const reading& read, answer* out);
bool readNec(const reading& read, answer* out);
bool readNec40(const reading& read, answer* out);
bool readMidea(const reading& read, answer* out);
bool readNecx(const reading& read, answer* out);
bool read48Nec(const reading& read, answer* out);
bool readRecs80(const reading& read, answer* out);
bool readPid0083(const reading& read, answer* out);
bool tellBytes(const reading& read, answer* out);

}  // namespace analysis
