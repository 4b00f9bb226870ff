// SPDX-License-Identifier: GPL-3.0-or-later
// decode, and the printers that it and listen share. Only the lines of the program's own decoders
// are looked at; the other families have tests of their own.
#include "src/cmds/decode.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "lib/ir/analyzer.h"
#include "lib/libcmds/cmds.h"
#include "lib/liblog/logging.h"
#include "src/appdata.h"
#include "src/common.h"
#include "tests/support/capture.h"

namespace {

namespace fs = std::filesystem;

std::string without_other_families(const std::string& text) {
  static const std::regex line("(^|\n):: (DECODEIR|ARDUINO) [^\n]*(?=\n)");
  return std::regex_replace(text, line, "");
}

template <class Code>
printed own_output(Code code) {
  printed result = capture(code);
  result.out = without_other_families(result.out);
  return result;
}

class Decode : public testing::Test {
 protected:
  void SetUp() override {
    reset_analyzer();
    reset_analyzer();
    set_loglevel(2);
    set_elapsed_flag(0);
  }

  void TearDown() override {
    set_loglevel(1);
    set_elapsed_flag(0);
    if (!path_.empty()) fs::remove(path_);
  }

  // What `decode` with one option prints; expects it to end with `result`.
  static printed decode(const std::string& option, int result = 0) {
    const char* argv[] = {option.c_str()};
    return own_output([&] {
      EXPECT_EQ(run_cmd("decode", option.empty() ? 0 : 1, argv, &apppriv), result) << option;
    });
  }

  printed read(const std::string& text) {
    path_ = fs::temp_directory_path() / ("vantrel-decode-" + std::to_string(getpid()));
    std::ofstream(path_, std::ios::binary) << text;
    return decode("--read=" + path_.string());
  }

  fs::path path_;
};

/// The block of a pattern: signed list, what the decoder says (twice), Pronto.
std::string block(const std::string& raw, const std::string& line, const std::string& pronto) {
  return raw + "\n" + line + pronto + "\n" + line + "++++\n\n";
}

std::string repeat_block() {
  return block("+9045 -4456 +560 ", "NEC Repeat\n", "0000 006D 0002 0000 015B 00AB 0015 0000");
}

constexpr const char* kNecText =
    "9024,4512,564,564,564,564,564,564,564,564,564,564,564,564,564,564,564,564,564,1692,564,1692,"
    "564,1692,564,1692,564,1692,564,1692,564,1692,564,1692,564,564,564,564,564,564,564,564,564,"
    "1692,564,564,564,564,564,564,564,1692,564,1692,564,1692,564,1692,564,564,564,1692,564,1692,"
    "564,1692,564";

TEST_F(Decode, PrintsANecFrameWithItsRepeatFrame) {
  const std::string line = ":: ZARVO    :: NEC32         - scancode: 0xEF10FF00\n";
  std::string pronto = "0000 006D 0022 0002 015B 00AD ";
  for (const char bit : std::string("00000000111111110000100011110111")) {
    pronto += bit == '1' ? "0015 0041 " : "0015 0015 ";
  }
  const printed result = decode(std::string("--time=") + kNecText);
  EXPECT_EQ(result.out.substr(result.out.find('\n') + 1),
            line + pronto + "0015 05F1 0156 0056 0015 0E4A\n" + line + "++++\n\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(Decode, TakesAPatternInEveryForm) {
  const std::string once =
      block("+9048 -4446 +572 ", "NEC Repeat\n", "0000 006D 0002 0000 015C 00AB 0016 0000");
  const std::string nothing = block("", "", "0000 006D 0001 0000 0000");
  const struct {
    const char* what;
    const char* option;
    std::string out;
  } kCases[] = {
      {"comma list", "--time=9045,4456,560", repeat_block()},
      {"the leading 0 is dropped", "--time=0,9045,4456,560", repeat_block()},
      {"blanks and a comma at the end", "--time=0, 9045, 4456, 560,", repeat_block()},
      {"nothing but zeroes", "--time=0,0", nothing},
      {"signed list", "--raw=+9045 -4456 +560", repeat_block()},
      {"with the blank that print_raw leaves", "--raw=+9045 -4456 +560 ", repeat_block()},
      {"with commas and a leading 0", "--raw=+0,+9045,-4456,+560", repeat_block()},
      {"a sign without a number ends it", "--raw=+9045 -4456 +560 -", repeat_block()},
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
       block("+0 -0 ", ":: ZARVO    :: XMP           - scancode: 0x00A00000\n",
             "0000 006D 0002 0000 0000 0000 0000") +
           block("+0 -0 ", ":: ZARVO    :: XMP           - scancode: 0x00A00000\n",
                 "0000 006D 0002 0000 0000 0000 0000")},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    SetUp();
    EXPECT_EQ(decode(c.option).out, c.out);
  }
}

TEST_F(Decode, SaysWhatIsWrong) {
  const struct {
    const char* option;
    int result;
    const char* out;
    const char* err;
  } kCases[] = {
      {"", 1, "Error: must specify an option\n", ""},
      {"--elapsed", 1, "Error: must specify an option\n", ""},
      {"--listen", 1, "", "[E] decode(#): Error: version >= 4.7.x required\n"},
      {"--read", 1, "", "[E] decode(#): invalide file path\n"},
      {"--raw=", 1, "", "[E] decode(#): invalide file path\n"},
      {"--pronto=", 1, "", "[E] decode(#): invalide file path\n"},
      {"-t", 1, "", "[E] decode(#): invalide file path\n"},
      {"--read=/nonexistent", 0, "", "could not open script file: No such file or directory\n"},
      {"--time=9000", 0, "", "[E] csv_to_buf(#): worst CSV ever, not a single comma\n"},
      {"--time=14001,600", 0, "+14001 -600 \nerror: invalid packet\nerror: invalid packet\n", ""},
      {"--pronto=0000 006D 0001 0000 015C", 0, "",
       "[E] pronto_buf_to_raw(#): Pronto Hex is invalid, invalid size\n"},
      {"--pronto= ", 0, "", "[E] pronto_buf_to_raw(#): Pronto Hex is invalid, invalid size\n"},
      {"--pronto=0000 006D FFFF FFFF 1", 0, "",
       "[E] pronto_buf_to_raw(#): Pronto Hex is invalid, invalid size\n"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.option);
    SetUp();
    const printed result = decode(c.option, c.result);
    EXPECT_EQ(result.out, c.out);
    EXPECT_EQ(result.err, c.err);
  }
}

// What is cut leaves a pattern of a hundred durations, and a warning.
TEST_F(Decode, CutsLongPatterns) {
  std::string csv, raw, once = "0000 006D 0040 0000", repeat = "0000 006D 0040 0001";
  for (int i = 0; i < 128; ++i) {
    csv += "600,";
    raw += "+600 ";
    once += " 0017";
    repeat += " 0017";
  }
  const struct {
    std::string option;
    const char* function;
    const char* durations;
    int blocks;
  } kCases[] = {
      {"--time=" + csv, "csv_to_buf", "600 ", 1},
      {"--raw=" + raw, "decode_raw", "600 ", 1},
      {"--pronto=" + once, "pronto_buf_to_raw", "598 ", 2},
      {"--pronto=" + repeat + " 1 1", "pronto_buf_to_raw", "598 ", 2},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.function);
    const printed result = decode(c.option);
    EXPECT_EQ(result.err.substr(0, result.err.find('\n')),
              std::string("[W] ") + c.function + "(#): more than 100 entries, the rest is cut");
    const std::string first = result.out.substr(0, result.out.find('\n'));
    EXPECT_EQ(first.size(), 100 * std::string("+600 ").size());
    EXPECT_EQ(first.substr(first.size() - 4), c.durations);
    size_t blocks = 0;
    for (size_t at = 0; (at = result.out.find("++++\n\n", at)) != std::string::npos; ++at) ++blocks;
    EXPECT_EQ(blocks, static_cast<size_t>(c.blocks));
  }
}

TEST_F(Decode, ReadsAFileLineByLine) {
  const std::string pattern = "9045,4456,560\n";
  const struct {
    const char* what;
    std::string text;
    std::string out;
  } kCases[] = {
      {"comments and empty lines", "# NEC\n\n9045,4456,560\n", repeat_block()},
      {"no end of line at the end", "9045,4456,560", repeat_block()},
      {"line ends of every kind", "\r\n#\r9045,4456,560\n\r\r\n", repeat_block()},
      {"a NUL ends its line", std::string("9045,4456,560") + '\0' + "1,2\n" + pattern,
       repeat_block() + repeat_block()},
      {"a line that is none", "hello\n" + pattern, repeat_block()},
      {"a long comment: what follows its cut is a line",
       "#" + std::string(1022, 'x') + "!" + pattern, repeat_block()},
      {"nothing", "", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    SetUp();
    EXPECT_EQ(read(c.text).out, c.out);
  }
  EXPECT_EQ(decode("--read=" + fs::temp_directory_path().string()).out, "") << "a folder";
}

// From line to line the analyzers remember the frame before: a short lead space makes a repeat
// frame only after a frame, and for one decode after it. Every pattern is decoded twice.
TEST_F(Decode, RemembersFromPatternToPattern) {
  const std::string frame = std::string(kNecText) + "\n";
  const std::string repeat = "9024,2256,564\n";
  const std::string other = "889,889,1778,889,889\n";
  const auto repeats = [this](const std::string& text) {
    const std::string out = read(text).out;
    size_t found = 0;
    for (size_t at = 0; (at = out.find("NEC Repeat\n", at)) != std::string::npos; ++at) ++found;
    return found;
  };
  EXPECT_EQ(repeats(repeat), 0U);
  EXPECT_EQ(repeats(frame + repeat + repeat), 4U);
  EXPECT_EQ(repeats(frame + other + repeat), 0U);
}

ir_packet packet_of(std::vector<uint16_t> durations, uint16_t elapsed = 40) {
  ir_packet packet = {};
  std::copy(durations.begin(), durations.end(), packet.buf);
  packet.len = static_cast<uint8_t>(durations.size());
  packet.elapsed = elapsed;
  return packet;
}

TEST_F(Decode, HasAPrinterForEveryFormat) {
  const struct {
    const char* what;
    void (*print)(ir_packet*);
    ir_packet packet;
    const char* out;
    const char* elapsed;  // what stands before it when the elapsed time is shown
  } kCases[] = {
      {"raw", print_raw, packet_of({9000, 4500, 560}), "+9000 -4500 +560 \n", "+40000\n"},
      {"comma", print_comma_delim, packet_of({9000, 4500, 560}), "9000,4500,560\n", "40 ms\n"},
      {"AnalysIR", print_analysir, packet_of({9000, 4500, 560}), "0,9000, 4500, 560\n", ":e:40\n"},
      {"raw, nothing", print_raw, packet_of({}), "\n", "+40000\n"},
      {"comma, nothing", print_comma_delim, packet_of({}), "0\n", "40 ms\n"},
      {"comma, one", print_comma_delim, packet_of({65535}, 65535), "65535\n", "65535 ms\n"},
      {"AnalysIR, one", print_analysir, packet_of({7}), "0,7\n", ":e:40\n"},
      {"raw, the longest gap", print_raw, packet_of({1}, 65535), "+1 \n", "+65535000\n"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ir_packet packet = c.packet;
    set_elapsed_flag(0);
    EXPECT_EQ(capture([&] { c.print(&packet); }).out, c.out);
    set_elapsed_flag(1);
    EXPECT_EQ(capture([&] { c.print(&packet); }).out, std::string(c.elapsed) + c.out);
  }
}

TEST_F(Decode, PrintsProntoInCarrierPeriods) {
  const struct {
    const char* what;
    ir_packet packet;
    const char* out;
  } kCases[] = {
      {"the gap before a signal that is not NEC ends it", packet_of({9000, 4500, 560}),
       "NEC Repeat\n0000 006D 0002 0000 015A 00AD 0015 0602\n"},
      {"an even number of entries counts one pair more", packet_of({14000, 14000}),
       ":: ZARVO    :: UNKNOWN       - scancode: 0x005973B3\n"
       "0000 006D 0002 0000 021A 021A 0602\n"},
      {"the longest gap needs more digits", packet_of({14000}, 65535),
       ":: ZARVO    :: UNKNOWN       - scancode: 0x0002B5EC\n"
       "0000 006D 0001 0000 021A 267600\n"},
      {"too long", packet_of({560, 14001}), "error: invalid packet\n"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ir_packet packet = c.packet;
    set_elapsed_flag(1);
    EXPECT_EQ(capture([&] { print_pronto(&packet); }).out, c.out);
  }
}

// A packet from the device can be longer than the decoders' events: they see its beginning.
TEST_F(Decode, TakesTheLongestPacket) {
  ir_packet packet = packet_of(std::vector<uint16_t>(255, 600), 1);
  const printed result = own_output([&packet] {
    print_raw(&packet);
    print_pronto(&packet);
    decodeit(&packet);
  });
  EXPECT_EQ(result.out.substr(0, 10), "+600 -600 ");
  EXPECT_NE(result.out.find("\n0000 006D 0080 0000 0017 "), std::string::npos);
  EXPECT_EQ(result.out.substr(result.out.size() - 6), "++++\n\n");
}

}  // namespace
