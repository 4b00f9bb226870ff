// SPDX-License-Identifier: GPL-3.0-or-later
// The entry: lines, limits and the hash.
#include "lib/ir/arduino/arduino.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "lib/ir/result.h"
#include "tests/lib/ir/arduino/frames.h"
#include "tests/support/receiver.h"

namespace {

struct Output {
  std::string lines, log;
};

Output decode(const std::vector<int>& durations, size_t len) {
  ir_packet packet = {};
  std::copy(durations.begin(), durations.end(), packet.buf);
  Output output;
  set_result_sink([](const ir_result& r, void* to) { static_cast<Output*>(to)->lines += r.line; },
                  &output);
  testing::internal::CaptureStderr();
  arduino_decode(&packet, len);
  output.log = testing::internal::GetCapturedStderr();
  set_result_sink(nullptr, nullptr);
  return output;
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
    const Output output = decode(pattern, len);
    EXPECT_EQ(output.lines + output.log, "") << len;
  }
}

TEST(ArduinoDecode, HoldsTwoHundredDurations) {
  const std::vector<int> pattern(256, 560);
  EXPECT_NE(decode(pattern, 200).lines, "");
  for (const size_t len : {size_t{201}, size_t{256}}) {
    const Output output = decode(pattern, len);
    EXPECT_EQ(output.lines, "");
    EXPECT_EQ(output.log.find("[E] arduino_decode("), 0U);
    const std::string tail = "): IR code too long. length: " + std::to_string(len) +
                             ", overflow: " + std::to_string(len - 200) + "\n";
    EXPECT_NE(output.log.find(tail), std::string::npos) << output.log;
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
