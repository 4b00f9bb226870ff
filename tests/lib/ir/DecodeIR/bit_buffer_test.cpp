// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/bit_buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using analysis::bit_buffer;

/// Bursts of 500/500 and 1500/500 in turn.
const std::vector<float> kBursts = [] {
  std::vector<float> durations;
  for (int i = 0; i < 130; ++i) {
    durations.insert(durations.end(), {i % 2 == 0 ? 500.0F : 1500.0F, 500.0F});
  }
  return durations;
}();

bit_buffer over(const std::vector<float>& durations, float threshold = 1000) {
  bit_buffer bits(durations.data(), static_cast<int>(durations.size()));
  bits.threshold = threshold;
  return bits;
}

/// The bits in the order they were sent.
std::string sent(const bit_buffer& bits) {
  std::string text;
  for (int i = 0; i < bits.size(); ++i) text += bits.getBit(i) != 0 ? '1' : '0';
  return text;
}

TEST(Bits, ReversalAndParity) {
  EXPECT_EQ(analysis::msb(1, 4), 8U);
  EXPECT_EQ(analysis::msb(1, 1), 1U);
  EXPECT_EQ(analysis::msb(0xF3, 4), 0xCU);
  EXPECT_EQ(analysis::parity(0x80000001), 0);
  EXPECT_EQ(analysis::parity(7), 1);
}

TEST(Bits, AreReadInBothOrders) {
  bit_buffer bits = over(kBursts);
  bits.decodeX(4);  // 0101 by the marks
  EXPECT_EQ(bits.getLsb(0, 4), 0b1010U);
  bits.threshold = 2500;
  bits.decodeX2(4);  // none of the bursts is as long
  EXPECT_EQ(bits.getLsb(0, 8), 0b1010U);
  EXPECT_EQ(bits.msb_number(1, 3), 0b101);
  bits.makeMsb();
  EXPECT_EQ(bits.getMsb(0, 8), 0b01010000U);
  EXPECT_EQ(bits.getMsb(1, 3), 0b101U);
}

TEST(Bits, FieldsCrossBytesInBothOrders) {
  bit_buffer bits;
  for (int i = 0; i < 48; ++i) bits.append(i % 3 == 0);
  unsigned low = 0;
  unsigned high = 0;
  for (int i = 0; i < 32; ++i) {
    low |= bits.getBit(7 + i) << i;
    high = high << 1 | bits.getBit(7 + i);
  }
  EXPECT_EQ(bits.getLsb(7, 32), low);
  EXPECT_EQ(bits.msb_number(7, 32), static_cast<int>(high));
  bits.makeMsb();
  EXPECT_EQ(bits.getMsb(7, 32), high);
}

TEST(Bits, CheckedPulsesAreOfTwoLengthsAndNothingElse) {
  const std::vector<float> marks = {480, 0, 1560, 0, 500, 0, 900, 0};
  bit_buffer bits = over(marks);
  EXPECT_TRUE(bits.checkDecodeX(0, 3, 500, 1500, 60));
  EXPECT_FALSE(bits.checkDecodeX(0, 1, 500, 1500, 60)) << "900 is neither";
  EXPECT_EQ(sent(bits), "010");
  bits.cleanup();
  EXPECT_FALSE(bits.checkDecodeX(0, 3, 500, 1500, 59));
  const std::vector<float> spaces = {0, 500, 0, 1500};
  bits = over(spaces);
  EXPECT_TRUE(bits.checkDecodeX(1, 2, 500, 1500, 60));
  EXPECT_EQ(sent(bits), "01");
}

TEST(Bits, RawLevelsAreMarksAndSpacesOfOneLength) {
  const std::vector<float> durations = {2100, 950, 1000, 3000, 400};
  bit_buffer bits = over(durations);
  bits.decodeRaw(2);  // a duration may be taken in pieces
  EXPECT_FALSE(bits.at_end());
  bits.decodeRaw(8);
  EXPECT_EQ(sent(bits), "1101000100");
  EXPECT_TRUE(bits.at_end());
  bits.cleanup();
  bits.skip_to(3);
  bits.decodeRaw(4);
  EXPECT_EQ(sent(bits), "0001");
}

TEST(Bits, SerialWordsHaveAStartBitAndStopBits) {
  struct {
    const char* what;
    std::vector<float> durations;
    int words;
    bool accepted;
    const char* bits;  // a space is a one
  } const cases[] = {
      {"start, 1011, stop", {100, 100, 100, 300}, 1, true, "1011"},
      {"edges a little off", {110, 85, 108, 290}, 1, true, "1011"},
      {"the last stop bit is the gap", {300, 100, 100}, 1, true, "0010"},
      {"two words", {100, 100, 100, 300, 200, 400}, 2, true, "10110111"},
      {"the second after a pause", {100, 500, 200, 777, 500}, 2, true, "11110111"},
      {"a mark in the stop bit", {600, 100}, 1, false, ""},
      {"an edge inside a bit", {100, 150, 100, 250}, 1, false, ""},
      {"no second word", {100, 500}, 2, false, ""},
  };
  for (const auto& c : cases) {
    bit_buffer bits;
    EXPECT_EQ(bits.decodeAsync(c.durations.data(), static_cast<int>(c.durations.size()), c.words,
                               100, 0.2, 4, 1),
              c.accepted)
        << c.what;
    if (c.accepted) {
      EXPECT_EQ(sent(bits), c.bits) << c.what;
    }
  }
}

TEST(Bits, BufferIsFilledToItsEndAndNoFurther) {
  bit_buffer bits = over(kBursts);
  bits.decodeX(128);
  EXPECT_EQ(bits.getLsb(96, 32), 0xAAAAAAAAU);
  const std::string start = "lib/ir/DecodeIR: ";
  const std::string text = "nBit\\+nCount <= sizeof\\(cBits\\)\\*8";
  EXPECT_DEATH(bits.decodeX(1), start + "decodeX: .*" + text);
  EXPECT_DEATH(bits.decodeX2(1), start + "decodeX2: .*" + text);
  EXPECT_DEATH(bits.checkDecodeX(0, 1, 500, 1500, 60),
               start + "checkDecodeX: .*nBit\\+count <= sizeof\\(cBits\\)\\*8");
  EXPECT_DEATH(bits.decodeAsync(kBursts.data(), 2, 1, 500, 0.2, 1, 1), "decodeAsync: ");
  EXPECT_DEATH(bits.append(true), "nBit");
  bits.cleanup();
  EXPECT_EQ(bits.size(), 0);
  EXPECT_EQ(bits.getLsb(0, 32), 0U);
  EXPECT_DEATH(bits.decodeRaw(128),
               start + "decodeRaw: .*nBit\\+bitsRequested < sizeof\\(cBits\\)\\*8");
  bits.decodeRaw(127);
}

}  // namespace
