// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "tests/support/capture.h"
#include "tests/support/pattern_text.h"

namespace {

TEST(PatternReader, TellsTheFormsApart) {
  const std::pair<const char*, const char*> cases[] = {
      {"9045,4456,610\n", "1: comma 9045 4456 610\n"},
      {"9045,4456,610,\r\n", "1: comma 9045 4456 610\n"},
      {"40 ms\n9000,4500,560\n", "2: comma 9000 4500 560 after 40\n"},
      {":e:45\n0,9000, 4500, 560\n", "2: analysir 9000 4500 560 after 45\n"},
      {"+40000\n+9000 -4500 +560 \n", "2: raw 9000 4500 560 after 40\n"},
      {"+560 \n", "1: raw 560\n"},
      {"0000 006D 0002 0000 015A 00AD 0015 0602\n", "1: pronto 9098 4549 552 40443 38029 Hz\n"},
      {"0000,006d,0000,0002,015A,0056,0015,0E4A\n",
       "1: pronto 9098 2261 552 96190 38029 Hz held\n"},
      {"0100 006D 0002 0002 015A 00AD 0015 05F1 0156 0056 0015 0E4A\n",
       "1: pronto 9098 4549 552 39996 repeat 8993 2261 552 96190 0 Hz\n"},
      {"# a comment\n\n1000,2000\n", "3: comma 1000 2000\n"},
      {"0000,1111\n", "1: column 1: a Pronto text of fewer than 4 words\n"},
      {"error, disconnecting\nZarvo tessarin found version: 4.8.0 0x0 [x]\n1,2\n",
       "3: comma 1 2\n"},
      {"0000 006D 0001 0001 0157\n0020\n0157 0020\n",
       "1: pronto 9019 841 repeat 9019 841 38029 Hz\n"},
      {"40 ms\n", ""},
      {"Using driver default on device /dev/lirc0\nspace 9999\npulse 9000\r\nspace 4500\n"
       "pulse 560\nspace 20000\ntimeout 105000\npulse 100\n# a comment\npulse 20\nspace 125000\n"
       "space 5\ncarrier 38000\npulse 300\n\npulse 400\n",
       "3: mode2 9000 4500 560 125000\n8: mode2 120 125000\n14: mode2 300 38000 Hz\n"
       "16: mode2 400 38000 Hz\n"},
      {"+9000 -4500 +560 # timeout 125000, carrier 38000\n",
       "1: ir-ctl 9000 4500 560 125000 38000 Hz\n"},
      {"  5000 9000 4500 560\n", "1: ir-ctl 5000 9000 4500 560\n"},
      {"Received Raw: 9000000, 9000000, -500, 560\n", "1: esphome 16777215 500 560\n"},
      {"-5000 +9000 -4500 -10 +560 # timeout 2\n", "1: ir-ctl 9000 4510 560 2\n"},
  };
  for (const auto& [text, patterns] : cases) EXPECT_EQ(read_all(text), patterns) << text;
}

TEST(PatternReader, PlacesTheFaultAndReadsOn) {
  const std::pair<const char*, const char*> cases[] = {
      {"9000,x,560", "column 6: \"x\" is no duration of 0 to 16777215"},
      {"9000,16777216,560", "column 6: \"16777216\" is no duration of 0 to 16777215"},
      {"9000,-4500", "column 6: \"-4500\" is no duration of 0 to 16777215"},
      {"9,99999999999999999999",
       "column 3: \"99999999999999999999\" is no duration of 0 to 16777215"},
      {"9000,,560", "column 6: an empty field"},
      {"9000", "column 1: no signal in a form that is known here"},
      {"scancode nec:0x408", "column 1: a scancode, which holds no durations"},
      {"   ", "column 1: a line of blanks"},
      {"+9000 +4500 -560", "column 7: expected a duration that begins with -"},
      {"+9000 -", "column 7: \"-\" is no duration of 0 to 16777215"},
      {"0000 006D 0001 0000 015A",
       "column 11: the pair counts do not fit the number of Pronto words"},
      {"0000 006D 0001 0000 015A 00G0", "column 26: \"00G0\" is no Pronto word"},
      {"5000 0000 0000 0001 0005 0023", "column 1: a Pronto format that holds no durations"},
      {"900A 006D 0000 0001 04FB 08F7", "column 1: a Pronto format that holds no durations"},
      {"0000 0000 0001 0000 0157 00AC", "column 6: a carrier of 0, the unit of all"},
      {"pulse ", "column 7: expected a number"},
      {"pulse x", "column 7: \"x\" is no duration of 0 to 16777215"},
      {"0000 FFFF 0002 0000 FFFF 0001 0001 0001", "column 21: a duration over 16777215 us"},
  };
  for (const auto& [line, fault] : cases) {
    EXPECT_EQ(read_all(std::string(line) + "\n1,2\n"),
              "1: " + std::string(fault) + "\n2: comma 1 2\n");
  }
  // A signal without one of its lines would be another signal.
  EXPECT_EQ(read_all("pulse 1\nspace x\npulse 5\n\npulse 7\n"),
            "2: column 7: \"x\" is no duration of 0 to 16777215\n5: mode2 7\n");
}

TEST(PatternReader, LongAndBinaryLinesAreFaults) {
  const std::string huge(10'000'000, '1');
  EXPECT_EQ(read_all(huge + "\n1,2"),
            "1: column 4194305: a line of over 4194304 characters\n2: comma 1 2\n");
  EXPECT_EQ(read_all(repeated("1,", 1'000'001) + "\n1,2"),
            "1: column 1: a signal of over 1000000 durations\n2: comma 1 2\n");
  EXPECT_EQ(read_all(std::string("1,\0,2\n1,2", 9)).substr(0, 13), "1: column 3: ");
}

}  // namespace
