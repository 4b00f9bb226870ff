// SPDX-License-Identifier: GPL-3.0-or-later
// The entry: lines, limits and the hash.
#include "lib/ir/arduino/arduino.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "tests/support/irrecv_call.h"
#include "tests/support/receiver.h"
#include "tests/support/results.h"

namespace {

using irrecv::answer;
using irrecv::sent;

Reported decode(const std::vector<int>& durations, size_t len) {
  ir_packet packet = packet_of(durations);
  return reported([&] { arduino_decode(&packet, len); });
}

TEST(ArduinoDecode, PrintsOneLine) {
  const std::vector<int> nec = sent("NEC1", {{"D", 4}, {"S", 251}, {"F", 8}});
  EXPECT_EQ(decode(nec, nec.size()).lines,
            ":: ARDUINO  :: NEC           - scancode: 0x20DF10EF {32}\n");
  EXPECT_EQ(decode({9000, 2250, 560}, 3).lines,
            ":: ARDUINO  :: NEC           - scancode: 0xFFFFFFFF {0}\n");
  EXPECT_EQ(decode({300, 300, 300, 300, 300, 300}, 6).lines.substr(0, 30),
            ":: ARDUINO  :: UNKNOWN       -");
}

TEST(ArduinoDecode, SaysNothingToShortPatterns) {
  const std::vector<int> pattern(5, 560);
  for (size_t len = 0; len <= pattern.size(); ++len) {
    const Reported found = decode(pattern, len);
    EXPECT_EQ(found.lines + found.log, "") << len;
  }
}

TEST(ArduinoDecode, HoldsTwoHundredDurations) {
  const std::vector<int> pattern(256, 560);
  EXPECT_NE(decode(pattern, 200).lines, "");
  for (const size_t len : {size_t{201}, size_t{256}}) {
    const Reported found = decode(pattern, len);
    EXPECT_EQ(found.lines, "");
    EXPECT_EQ(found.log, "[E] arduino_decode(#): IR code too long. length: " + std::to_string(len) +
                             ", overflow: " + std::to_string(len - 200) + "\n");
  }
  const std::vector<uint16_t> longer(203, 560);
  arduino_result result;
  EXPECT_FALSE(IRrecv::decode(longer, result));
  EXPECT_EQ(result.overflow, 3U);
  EXPECT_EQ(result.type, nullptr);
}

TEST(ArduinoHash, StaysUnderJitterWhereSymbolsDifferByTwo) {
  Random random(3);
  for (int signal = 0; signal < 200; ++signal) {
    std::vector<int> clean;
    for (int i = 0; i < 43; ++i) clean.push_back(random.between(0, 1) != 0 ? 1000 : 500);
    const std::string expected = answer(clean);
    for (int press = 0; press < 20; ++press) {
      std::vector<int> jittered;
      for (const int us : clean) jittered.push_back(int(us * random.uniform(0.9, 1.1)));
      EXPECT_EQ(answer(jittered), expected) << irp::csv(jittered);
    }
  }
}

TEST(ArduinoHash, TellsKeysApartAndLeavesTheGapOut) {
  std::set<std::string> hashes;
  for (int key = 0; key < 256; ++key) hashes.insert(answer(sent("Bose", {{"F", key}})));
  EXPECT_EQ(hashes.size(), 256U);

  std::vector<int> frame = sent("Bose", {{"F", 1}});
  const std::string expected = answer(frame);
  frame.push_back(9000);
  EXPECT_EQ(answer(frame), expected);
}

}  // namespace
