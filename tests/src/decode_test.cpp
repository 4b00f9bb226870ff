// SPDX-License-Identifier: GPL-3.0-or-later
// decode, and the printers that it and listen share.
#include "src/cmds/decode.h"

#include "tests/support/contract.h"
#include "tests/support/decode_test.h"

namespace {

class Decode : public DecodeTest {};

const std::string kRepeatBlock =
    block("+9045 -4456 +560 ", "NEC Repeat\n", "0000 006D 0002 0000 015B 00AB 0015 0000");

constexpr const char* kNecBits = "00000000111111110000100011110111";

/// A frame of these bits in the comma form.
std::string nec_text() {
  std::string text = "9024,4512,564";
  for (const char bit : std::string(kNecBits)) text += bit == '1' ? ",1692,564" : ",564,564";
  return text;
}

TEST_F(Decode, PrintsANecFrameWithItsRepeatFrame) {
  const std::string line = ":: ZARVO    :: NEC32         - scancode: 0xEF10FF00\n";
  std::string pronto = "0000 006D 0022 0002 015B 00AD ";
  for (const char bit : std::string(kNecBits)) {
    pronto += bit == '1' ? "0015 0041 " : "0015 0015 ";
  }
  const printed result = decode("--time=" + nec_text());
  EXPECT_EQ(result.out.substr(result.out.find('\n') + 1),
            line + pronto + "0015 05F1 0156 0056 0015 0E4A\n" + line + "++++\n\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(Decode, TakesAPatternInEveryForm) {
  const std::string once =
      block("+9048 -4446 +572 ", "NEC Repeat\n", "0000 006D 0002 0000 015C 00AB 0016 0000");
  const std::string nothing = block("", "", "0000 006D 0001 0000 0000");
  const std::string xmp = block("+0 -0 ", ":: ZARVO    :: XMP           - scancode: 0x00A00000\n",
                                "0000 006D 0002 0000 0000 0000 0000");
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"blanks and a comma at the end", "--time=0, 9045, 4456, 560,", kRepeatBlock},
      {"nothing but zeroes", "--time=0,0", nothing},
      {"with the blank that print_raw leaves", "--raw=+9045 -4456 +560 ", kRepeatBlock},
      {"with commas and a leading 0", "--raw=+0,+9045,-4456,+560", kRepeatBlock},
      {"a sign without a number ends it", "--raw=+9045 -4456 +560 -", kRepeatBlock},
      {"a sign alone", "--raw=+", nothing},
      {"numbers keep their low 16 bits", "--raw=+74581 -4456 +99999999999999999999 +560",
       "+9045 -4456 +65535 -560 \nerror: invalid packet\nerror: invalid packet\n"},
      {"Pronto, once: decoded twice", "--pronto=0000 006D 0002 0000 015C 00AB 0016 0ABC",
       once + once},
      {"Pronto, repeat only, with commas", "--pronto=0100,006D,0000,0002,015C,00AB,0016,0ABC",
       once},
      {"Pronto, a leading 0", "--pronto=0000 006D 0000 0003 0 015C 00AB 0016 1 2",
       block("+9048 -4446 +572 -26 ", "", "0000 006D 0003 0000 015C 00AB 0016 0001 0000")},
      {"Pronto, once and repeat", "--pronto=0000 006D 0001 0002 015C 0ABC 015C 0056 0016 0ABC",
       block("+9048 ", "", "0000 006D 0001 0000 015C 0000") +
           block("+9048 -2236 +572 ", "NEC Repeat\n", "0000 006D 0002 0000 015C 0056 0016 0000")},
      {"Pronto, nothing in it", "--pronto=0000 006D 0000 0000", nothing},
      {"Pronto of another format", "--pronto=0200 006D 0001 0000 015C 0ABC", ""},
      {"Pronto, a carrier without a period", "--pronto=0000 0000 0002 0000 015C 00AB 0016 0ABC",
       xmp + xmp},
  };
  for (const auto& [what, option, out] : cases) {
    SetUp();
    EXPECT_EQ(decode(option).out, out) << what;
  }
}

TEST_F(Decode, SaysWhatIsWrong) {
  const std::string no_path = "[E] decode(#): invalide file path\n";
  const std::string no_pronto = "[E] pronto_buf_to_raw(#): Pronto Hex is invalid, invalid size\n";
  const std::tuple<const char*, int, const char*, std::string> cases[] = {
      {"", 1, "Error: must specify an option\n", ""},
      {"--elapsed", 1, "Error: must specify an option\n", ""},
      {"--read", 1, "", no_path},
      {"--pronto=", 1, "", no_path},
      {"-t", 1, "", no_path},
      {"--read=/nonexistent", 0, "", "could not open script file: No such file or directory\n"},
      {"--time=9000", 0, "", "[E] csv_to_buf(#): worst CSV ever, not a single comma\n"},
      {"--time=14001,600", 0, "+14001 -600 \nerror: invalid packet\nerror: invalid packet\n", ""},
      {"--pronto=0000 006D 0001 0000 015C", 0, "", no_pronto},
      {"--pronto= ", 0, "", no_pronto},
      {"--pronto=0000 006D FFFF FFFF 1", 0, "", no_pronto},
  };
  for (const auto& [option, status, out, err] : cases) {
    SetUp();
    const printed result = decode(option, status);
    EXPECT_EQ(result.out, out) << option;
    EXPECT_EQ(result.err, err) << option;
  }
}

// What is cut leaves a pattern of a hundred durations, and a message at the lowest level.
TEST_F(Decode, CutsLongPatterns) {
  const auto expect_cut = [](const std::string& option, const std::string& function,
                             const char* durations, size_t blocks) {
    SCOPED_TRACE(option);
    set_loglevel(1);
    const printed result = decode(option);
    EXPECT_EQ(result.err.substr(0, result.err.find('\n')),
              "[E] " + function + "(#): more than 100 entries, the rest is cut");
    const std::string first = result.out.substr(0, result.out.find('\n'));
    EXPECT_EQ(first.size(), 100 * std::string("+600 ").size());
    EXPECT_TRUE(first.ends_with(durations)) << first;
    EXPECT_EQ(occurrences(result.out, "++++\n\n"), blocks);
  };
  expect_cut("--time=" + repeated("600,", 128), "csv_to_buf", "600 ", 1);
  expect_cut("--raw=" + repeated("+600 ", 128), "decode_raw", "600 ", 1);
  const std::string words = repeated(" 0017", 128);
  expect_cut("--pronto=0000 006D 0040 0000" + words, "pronto_buf_to_raw", "598 ", 2);
  const std::string both = "--pronto=0000 006D 0040 0001" + words + " 1 1";
  expect_cut(both, "pronto_buf_to_raw", "598 ", 2);
  const std::string out = decode(both).out;
  const std::string second = out.substr(out.find("++++\n\n"));
  EXPECT_TRUE(second.starts_with("++++\n\n\n") &&
              occurrences(second, "\n0000 006D 0001 0000 0000\n") == 1)
      << "the first sequence leaves no room for the second" << second;
  for (const std::string& full : {"--raw=" + repeated("+600 ", 100),
                                  "--pronto=0000 006D 0032 0000" + repeated(" 0017", 100)}) {
    EXPECT_EQ(decode(full).err, "") << "it just fits";
  }
}

TEST_F(Decode, ReadsAFileLineByLine) {
  const std::string pattern = "9045,4456,560\n";
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"comments and empty lines", "# NEC\n\n9045,4456,560\n", kRepeatBlock},
      {"no end of line at the end", "9045,4456,560", kRepeatBlock},
      {"line ends of every kind", "\r\n#\r9045,4456,560\n\r\r\n", kRepeatBlock},
      {"a NUL ends its line", std::string("9045,4456,560") + '\0' + "1,2\n" + pattern,
       kRepeatBlock + kRepeatBlock},
      {"a line that is none", "hello\n" + pattern, kRepeatBlock},
      {"a byte-order mark", "\xEF\xBB\xBF" + pattern, kRepeatBlock},
      {"a byte-order mark before a comment", "\xEF\xBB\xBF# NEC\n" + pattern, kRepeatBlock},
      {"a long comment: what follows its cut is a line",
       "#" + std::string(1022, 'x') + "!" + pattern, kRepeatBlock},
  };
  for (const auto& [what, text, out] : cases) {
    SetUp();
    EXPECT_EQ(read(text), out) << what;
  }
  EXPECT_EQ(decode("--read=" + std::filesystem::temp_directory_path().string()).out, "")
      << "a folder";
}

TEST_F(Decode, SaysThatALineWasCut) {
  const auto messages = [&](const std::string& text) {
    read(text);
    return decode("--read=" + path().string()).err;
  };
  const std::string full = "#" + std::string(1022, 'x');
  EXPECT_EQ(messages(full + "\n9045,4456,560\n"), "") << "it just fits";
  EXPECT_EQ(messages("#\n" + full + "y\n"),
            "[E] decode_file(#): line #2 is longer than 1023 characters, the rest is a new line\n");
}

// From line to line the analyzers remember the frame before: a short lead space makes a repeat
// frame only after a frame, and for one decode after it. Every pattern is decoded twice.
TEST_F(Decode, RemembersFromPatternToPattern) {
  const std::string frame = nec_text() + "\n";
  const std::string repeat = "9024,2256,564\n";
  const std::string other = "889,889,1778,889,889\n";
  const auto repeats = [&](const std::string& text) {
    return occurrences(read(text), "NEC Repeat\n");
  };
  EXPECT_EQ(repeats(repeat), 0U);
  EXPECT_EQ(repeats(frame + repeat + repeat), 4U);
  EXPECT_EQ(repeats(frame + other + repeat), 0U);
}

TEST_F(Decode, HasAPrinterForEveryFormat) {
  // `head` stands before it when the elapsed time is shown.
  const auto expect = [](void (*print)(ir_packet*), ir_packet packet, const std::string& head,
                         const std::string& text) {
    set_elapsed_flag(0);
    EXPECT_EQ(capture([&] { print(&packet); }).out, text);
    set_elapsed_flag(1);
    EXPECT_EQ(capture([&] { print(&packet); }).out, head + text);
  };
  expect(print_analysir, packet_of({9000, 4500, 560}, 40), ":e:40\n", "0,9000, 4500, 560\n");
  expect(print_raw, packet_of({}, 40), "+40000\n", "\n");
  expect(print_comma_delim, packet_of({}, 40), "40 ms\n", "0\n");
  expect(print_comma_delim, packet_of({65535}, 65535), "65535 ms\n", "65535\n");
  expect(print_analysir, packet_of({7}, 40), ":e:40\n", "0,7\n");
  expect(print_raw, packet_of({1}, 65535), "+65535000\n", "+1 \n");
}

TEST_F(Decode, PrintsProntoInCarrierPeriods) {
  const auto expect = [](ir_packet packet, const std::string& text) {
    set_elapsed_flag(1);
    EXPECT_EQ(capture([&] { print_pronto(&packet); }).out, text);
  };
  const std::string unknown = ":: ZARVO    :: UNKNOWN       - scancode: ";
  // An even number of entries counts one pair more.
  expect(packet_of({14000, 14000}, 40),
         unknown + "0x005973B3\n0000 006D 0002 0000 021A 021A 0602\n");
  // The longest gap needs more digits.
  expect(packet_of({14000}, 65535), unknown + "0x0002B5EC\n0000 006D 0001 0000 021A 267600\n");
  expect(packet_of({560, 14001}), "error: invalid packet\n");

  // Every code of the NEC family ends in a repeat frame: NEC32, NEC, NECX.
  for (const int subdevice : {0xFB, 9}) {
    for (const int second : {~8 & 0xFF, 9}) {
      ir_packet packet = packet_of(
          contract::frame("NEC1-f16", {{"D", 4}, {"S", subdevice}, {"F", 8}, {"E", second}}));
      EXPECT_TRUE(
          capture([&] { print_pronto(&packet); }).out.ends_with(" 05F1 0156 0056 0015 0E4A\n"));
    }
  }
}

// A packet from the device can be longer than the decoders' events: they see its beginning.
TEST_F(Decode, TakesTheLongestPacket) {
  ir_packet packet = packet_of(std::vector<int>(255, 600), 1);
  const printed result = own_output([&packet] {
    print_raw(&packet);
    print_pronto(&packet);
    decodeit(&packet);
  });
  EXPECT_TRUE(result.out.starts_with("+600 -600 "));
  EXPECT_NE(result.out.find("\n0000 006D 0080 0000 0017 "), std::string::npos);
  EXPECT_TRUE(result.out.ends_with("++++\n\n"));
}

}  // namespace
