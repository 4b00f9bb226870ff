// SPDX-License-Identifier: GPL-3.0-or-later
// The forms of other tools: what is read of each, and the faults of each.
#include <gtest/gtest.h>

#include "tests/support/capture.h"
#include "tests/support/companion_run.h"
#include "tests/support/pattern_text.h"

namespace {

struct text_case {
  const char* text;
  const char* patterns;  // as read_all shows them
};

void expect_all(std::initializer_list<text_case> cases) {
  for (const auto& [text, patterns] : cases) EXPECT_EQ(read_all(text), patterns) << text;
}

TEST(Forms, RemoteFiles) {
  const std::string head =
      "\xEF\xBB\xBF"
      "Filetype: IR signals file\nVersion: 1\n";
  expect_all({
      {"Filetype: IR signals file\nVersion: 1\n# \nname: Vol up\ntype: raw\nfrequency: 38000\n"
       "duty_cycle: 0.330000\ndata: 9024 4512 564 39756\n#\nname: Mute\r\ntype: raw\r\n\ndata: 5 "
       "6\n",
       "4: ir \"Vol up\" 9024 4512 564 39756 38000 Hz\n10: ir \"Mute\" 5 6\n"},
      {"Filetype: IR library file\nname: A\ntype: parsed\nprotocol: SIRC\naddress: 01 00 00 00\n"
       "command: 15\nname: B\ntype: raw\ndata: 7\n",
       "2: ir \"A\" 2400 600 1200 600 600 600 1200 600 600 600 1200 600 600 600 600 600 1200 600 "
       "600 600 600 600 600 600 600 25800 40000 Hz held\n7: ir \"B\" 7\n"},
      {"Filetype:\nname: A\ntype: raw\ndata: 9 1073741641\ndata: x\nname: B\ntype: raw\n#\n"
       "name: C\n#\nname: D\ntype: parsed\nprotocol: RC5\naddress: 3F 00 00 00\ncommand: 0C\n#\n"
       "name: E\ntype: cooked\n#\ntype: parsed\nprotocol: X\naddress: 0x00\n#\nnonsense\n#\n"
       "type: raw\nfrequency: y\n#\ntype: raw\nduty_cycle: 33\n",
       "4: column 9: \"1073741641\" is no duration of 0 to 16777215\n"
       "6: column 1: expected data\n"
       "9: column 1: a signal without its type\n"
       "11: column 1: RC5 does not hold this address and command: RC5: A=63 is not in 0..31\n"
       "18: column 7: \"cooked\" is no type: raw or parsed\n"
       "22: column 10: \"0x00\" is no four bytes in hexadecimal digits\n"
       "24: column 1: expected a key and a colon\n"
       "27: column 12: \"y\" is no frequency in Hz\n"
       "30: column 13: \"33\" is no duty cycle of 0.01 to 1\n"},
  });
  EXPECT_EQ(read_all(head + "name: A\ntype: raw\ndata: 1\n"), "3: ir \"A\" 1\n");
}

TEST(Forms, EveryParsedProtocolIsWhatTheDecodersName) {
  struct row {
    const char *protocol, *address, *command, *answer;
  };
  const row rows[] = {
      {"NEC", "04 00 00 00", "08 00 00 00", "NEC 4 null 8"},
      {"NECext", "04 F0 00 00", "08 F7 00 00", "NEC 4 240 8"},
      {"NEC42", "54 06 00 00", "08 00 00 00", "Aiwa 84 6 8"},
      {"Samsung32", "07 00 00 00", "02 00 00 00", "NECx 7 7 2"},
      {"RC5", "05 00 00 00", "0C 00 00 00", "RC5 5 null 12"},
      {"RC5X", "05 00 00 00", "0C 00 00 00", "RC5 5 null 76"},
      {"RC6", "04 00 00 00", "0C 00 00 00", "RC6 4 null 12"},
      {"SIRC", "01 00 00 00", "15 00 00 00", "Sony12 1 null 21"},
      {"SIRC15", "97 00 00 00", "15 00 00 00", "Sony15 151 null 21"},
      {"SIRC20", "5A 0E 00 00", "15 00 00 00", "Sony20 26 114 21"},
      {"Kaseikyo", "80 02 20 00", "D0 03 00 00", "Panasonic 128 0 61"},
      {"Kaseikyo", "41 54 32 00", "0C 00 00 00", "Denon-K 4 1 12"},
      {"RCA", "0F 00 00 00", "54 00 00 00", "RCA 15 null 42"},
      {"Pioneer", "A5 00 00 00", "1C 00 00 00", "NEC 165 null 28"},
  };
  std::string file = "Filetype: IR signals file\nVersion: 1\n";
  std::string wanted;
  for (const row& one : rows) {
    file += std::string("#\nname: ") + one.answer + "\ntype: parsed\nprotocol: " + one.protocol +
            "\naddress: " + one.address + "\ncommand: " + one.command + '\n';
    wanted += std::string(one.answer) + '\n';
  }
  std::istringstream lines(run(VANTREL_JSON, {}, file).out);
  std::string answers;
  for (std::string line; std::getline(lines, line);) {
    const auto best = nlohmann::json::parse(line).at("analysis").at(0);
    answers += best.at("protocol").get<std::string>() + ' ' + best.at("device").dump() + ' ' +
               best.at("subdevice").dump() + ' ' + best.at("obc").dump() + '\n';
  }
  EXPECT_EQ(answers, wanted);
  // What was parsed stays so.
  EXPECT_EQ(run(VANTREL_CONVERT, {"--to", "ir"}, file).out, file);
}

/// The remotes of these tests, all of one bit shape.
std::string remote(const std::string& parameters, const std::string& codes) {
  return "begin remote\n name R\n one 20 60\n zero 20 20\n" + parameters + "begin codes\n" + codes +
         "end codes\nend remote\n";
}

TEST(Forms, CodesOfLircd) {
  const std::pair<std::string, const char*> cases[] = {
      {remote("flags SPACE_ENC|CONST_LENGTH\nbits 2 # two\nheader 90 45\nptrail 20\nrepeat 90 22\n"
              "gap 1000\nfrequency 36000\nduty_cycle 33\n",
              "KEY_1 0xFE # was 1\n"),
       "14: lircd R/\"KEY_1\" 90 45 20 60 20 20 20 725 repeat 90 22 20 868 36000 Hz\n"},
      {remote("flags SPACE_ENC | REVERSE | NO_HEAD_REP\nbits 2\nheader 90 45\nfoot 7 5\ngap 900\n"
              "pre_data_bits 1\npre_data 1\npre 8 9\npost_data_bits 1\npost_data 0\npost 3 4\n"
              "plead 2\nptrail 1\n",
              "K 2\n"),
       "19: lircd R/\"K\" 90 45 22 60 8 9 20 20 20 60 3 4 20 20 1 5 7 900 "
       "repeat 22 60 8 9 20 20 20 60 3 4 20 20 1 5 7 900\n"},
      {remote("flags SPACE_ENC\nbits 2\ngap 900\n", "K 2 1\n"),
       "9: lircd R/\"K\" 20 60 20 900 20 20 20 900 held\n"},
      {remote("flags SPACE_FIRST\nbits 2\nptrail 1\n", "K 2\n"),
       "9: lircd R/\"K\" 20 20 21 held\n"},
      {remote("flags RC5\nbits 3\nplead 20\n", "K 5\n"), "9: lircd R/\"K\" 20 60 40 80 20 held\n"},
      {remote("flags RC6\nbits 3\nrc6_mask 2\n", "K 2\n"), "9: lircd R/\"K\" 20 140 60 20 held\n"},
      {remote("flags RCMM\nbits 4\ntwo 1 2\nthree 3 4\nptrail 5\n", "K 0xB\n"),
       "11: lircd R/\"K\" 1 2 3 4 5 held\n"},
      {remote("flags XMP\nbits 8\nptrail 5\n", "K 0x12\n"),
       "9: lircd R/\"K\" 20 80 20 140 5 held\n"},
      {"begin\n prog = x\nend\ninclude \"x\"\nbegin remote\nname A\nflags RAW_CODES\ngap 90\n"
       "begin raw_codes\nname K\n1 2\n3\nname L\n4 5\nend raw_codes\nend remote\n",
       "10: lircd A/\"K\" 1 2 3 90\n13: lircd A/\"L\" 4 5\n"},
      {remote("flags GRUNDIG\nbits 2\n", "K 2\n"),
       "8: column 1: the flags name a coding that is not known here\n"},
      {remote("bits 65\n", "K 2\nL x\nM\n"),
       "7: column 1: a field of over 64 bits\n8: column 3: \"x\" is no code\n"
       "9: column 1: a key without a code\n"},
      {"begin remote\nheader 1\ngap -5\nfrequency 99999999\nbegin raw_codes\nname\nname K\nx\n"
       "end remote\nnonsense\nbegin remote\nbegin codes\nK 1\nend remote\n",
       "2: column 9: expected a number\n3: column 5: \"-5\" is no number of 0 to 16777215\n"
       "4: column 11: \"99999999\" is no number of 0 to 10000000\n6: column 5: expected a name\n"
       "8: column 1: \"x\" is no duration of 0 to 16777215\n10: column 1: expected begin remote\n"
       "13: column 1: the remote tells no lengths of bits\n"},
  };
  for (const auto& [text, patterns] : cases) EXPECT_EQ(read_all(text), patterns) << text;
}

TEST(Forms, PacketsOfBroadlink) {
  expect_all({
      {"2600070000012894130d05000000\n1,2\n",
       "1: broadlink-hex 9014 4507 579 396 152\n2: comma 1 2\n"},
      {"26 00 07 00 00 01\n28 94 00 0D 05\n", "1: broadlink-hex 9014 4507 101502\n"},
      {"\"JgAHAAABKJQADQU=\",\n", "1: broadlink 9014 4507 101502\n"},
      {"JgAHAAAB\nKJQADQU\n", "1: broadlink 9014 4507 101502\n"},
      {"JgAHAAABKJQA\n", "1: broadlink 9014 4507\n"},
      {"2600000000\n", "1: column 1: a packet without durations\n"},
      {"26000300000000\n", "1: column 1: a duration of 0\n"},
  });
}

TEST(Forms, ListsOfTasmota) {
  expect_all({
      {"12:00 {\"IrReceived\":{\"RawData\":\"+9025-4510+565cCd\"}}\n",
       "1: column 49: \"d\" is no known length\n"},
      {"{\"IrReceived\":{\"RawData\":\"+9025-4510+565cCbA\",\"RawDataInfo\":[1]}}\n",
       "1: tasmota 9025 4510 565 565 565 4510 9025\n"},
      {"{\"IrReceived\":{\"RawData\":[+9025-4510+565c]}}\n", "1: tasmota 9025 4510 565 565\n"},
      {"{\"IrReceived\":{\"RawData\":[9024, 4512,564]}}\n", "1: tasmota 9024 4512 564\n"},
      {"IRsend1 40,9024,4512,564\n", "1: tasmota 9024 4512 564 40000 Hz\n"},
      {"irsend 0,+9024-4512+564b\n", "1: tasmota 9024 4512 564 4512\n"},
      {"IRSend raw,0,500,011\n", "1: tasmota 500 1000 1000\n"},
      {"IRSend raw,36000,500,3,01\n", "1: tasmota 500 1500 36000 Hz\n"},
      {"IRSend raw,0,500,900,01\n", "1: tasmota 500 900\n"},
      {"IRSend raw,0,90,45,5,6,7,01\n", "1: tasmota 90 45 5 6 5 7 5\n"},
      {"IRSend {\"Protocol\":\"NEC\",\"Bits\":32}\n",
       "1: column 8: a command by protocol, which holds no durations\n"},
      {"{\"IrReceived\":{\"Protocol\":\"NEC\"}}\n",
       "1: column 1: received without RawData, so without durations\n"},
      {"IRSend raw,0,5,6,7,01\n", "1: column 8: expected 1, 2 or 5 lengths and the bits\n"},
      {"IRSend 0\n", "1: column 7: expected a carrier and durations\n"},
      {"IRSend x,1\n", "1: column 8: \"x\" is no carrier\n"},
  });
}

TEST(Forms, LogsAndActionsOfEsphome) {
  expect_all({
      {"[12:00:00][D][remote.raw:028]: Received Raw: 9024, -4512, 564,\n"
       "\x1b[0;36m[12:00:00][D][remote.raw:041]:   -564, 564\x1b[0m\n"
       "[12:00:00][D][remote.nec:070]: Received NEC: address=0xFB04\n"
       "[12:00:01][D][remote.raw:028]: Received Raw: -9024, 4512, -564\n",
       "1: esphome 9024 4512 564 564 564\n4: esphome 9024 4512 564\n"},
      {"- remote_transmitter.transmit_raw:\n    carrier_frequency: 38kHz\n    code: [9024, -4512,\n"
       "      564]\n    repeat:\n- remote_transmitter.transmit_raw:\n    code: [-99999, 5, -6]\n",
       "3: esphome 9024 4512 564 38000 Hz\n7: esphome 5 6 0 Hz\n"},
      {"Received Raw: x\ncode: [1\n",
       "1: column 15: \"x\" is no duration of 0 to 16777215\n"
       "2: column 1: a list without its closing bracket\n"},
  });
}

TEST(Forms, ArraysInC) {
  expect_all({
      {"// a sketch\nconst uint16_t PROGMEM Power_1[] = {9024u, 4512, /* 1, */ 564, // 7\n 8, 9};\n"
       "void f() { send(1, 2); }\nunsigned int x[2] = { 5000, 7 }; int y[]={3};\n",
       "2: c \"Power_1\" 9024 4512 564 8 9\n5: c \"x\" 7\n5: c \"y\" 3\n"},
      {"uint8_t t[] =\n{180, 90, 11};\n", "2: c \"t\" 9000 4500 550\n"},
      {"uint16_t a[] = {1, \"x\", 2};\nuint16_t b[] = {};\nint c[1] = {99999999};\nint d[] = {1,\n",
       "1: column 20: \"\"\" is no duration\n2: column 1: an array without durations\n"
       "3: column 13: \"99999999\" is no duration of 0 to 16777215\n"
       "4: column 1: an array without its closing brace\n"},
  });
}

TEST(Forms, LinesOfJson) {
  expect_all({
      {"{\"name\":\"A\",\"remote\":\"R\",\"carrier_hz\":38000,\"elapsed_ms\":4,\"durations\":[9,-8,"
       "7],"
       "\"repeat\":[6,-5,4],\"other\":[[]]}\n",
       "1: json R/\"A\" 9 8 7 repeat 6 5 4 after 4 38000 Hz\n"},
      {"{\"once_pairs\":0,\"durations\":[9]}\n", "1: json 9 held\n"},
      {"[9024,-4512,-8,564]\n[9024, 4512, 564]\n",
       "1: json 9024 4520 564\n2: json 9024 4512 564\n"},
      {"{\"error\":\"no pattern\"}\n", "1: column 1: no signal but an error: no pattern\n"},
      {"{\"durations\":[1.5]}\n{\"durations\":[1,99999999]}\n[[1]]\n",
       "1: column 1: expected a list of durations of up to 16777215\n"
       "2: column 1: expected a list of durations of up to 16777215\n"
       "3: column 1: expected a list of durations of up to 16777215\n"},
      {"{\"durations\":[1,}\n", "1: column 17: expected JSON\n"},
      {"{\"durations\":[1e999]}\n", "1: column 1: expected JSON with numbers that fit\n"},
  });
  EXPECT_EQ(read_all("{\"durations\":" + repeated("[", 100'000)).substr(0, 10), "1: column ");
}

}  // namespace
