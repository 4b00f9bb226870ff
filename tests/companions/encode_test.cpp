// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/encode.h"

#include <gtest/gtest.h>

#include <fstream>

#include "companions/decoders.h"
#include "companions/formats/reader.h"
#include "companions/supported.h"
#include "tests/support/companion_run.h"
#include "tests/support/contract.h"

namespace {

using nlohmann::json;

// NEC, device 4, function 8, as it is printed everywhere.
constexpr const char* kNec =
    "+9024 -4512 +564 -564 +564 -564 +564 -1692 +564 -564 +564 -564 +564 -564 +564 -564 +564 -564 "
    "+564 -1692 +564 -1692 +564 -564 +564 -1692 +564 -1692 +564 -1692 +564 -1692 +564 -1692 +564 "
    "-564 +564 -564 +564 -564 +564 -1692 +564 -564 +564 -564 +564 -564 +564 -564 +564 -1692 +564 "
    "-1692 +564 -1692 +564 -564 +564 -1692 +564 -1692 +564 -1692 +564 -1692 +564\n";

process_result encode(std::vector<std::string> arguments, std::string_view input = {},
                      std::vector<std::string> env = {}) {
  return run(VANTREL_ENCODE, std::move(arguments), input, std::move(env));
}

/// The words of a shell line, without quotes.
std::vector<std::string> words(const std::string& line) {
  std::istringstream in(line);
  return {std::istream_iterator<std::string>(in), {}};
}

std::string without_newline(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

std::vector<std::string> with_device() {
  return {std::string("LD_LIBRARY_PATH=") + FAKE_LIBRARY_DIR, "FAKE_USB=device version=4.8.2"};
}

TEST(VantrelEncode, RendersThePublishedExample) {
  const auto result = encode({"NEC1", "D=4", "F=8", "--to", "raw"});
  EXPECT_EQ(result.out, kNec);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(encode({"nec1", "D=0x04", "F=0x8", "S=251"}).out, kNec);
}

TEST(VantrelEncode, HoldsAKey) {
  const std::pair<const char*, const char*> kCases[] = {
      {"NEC1 D=4 F=8 -n1 -t csv", ",564,39756,9024,2256,564\n"},
      {"NEC1 D=4 F=8 -t pronto", "0016 05F6 015A 0057 0016 0E6B\n"},
      {"RC5 D=1 F=2 -n1 -t pronto", "0020 0040 0040 0CCC\n"},
      {"DirecTV_3FG D=1 F=2 -t csv", ",30000,3000\n"},  // not the lead-in alone
  };
  for (const auto& [line, tail] : kCases) {
    const std::string out = encode(words(line)).out;
    EXPECT_TRUE(out.ends_with(tail)) << line << ": " << out;
  }
}

TEST(VantrelEncode, WritesWhatSendirAndDecodeTake) {
  for (const char* code : {"NEC1 D=4 F=8", "Sony12 D=1 F=21", "NRC17 D=9 F=5", "RCA D=15 F=42"}) {
    for (const char* form : {"raw", "csv", "pronto"}) {
      auto arguments = words(code);
      arguments.insert(arguments.end(), {"--to", form});
      const auto made = encode(arguments);
      if (made.status != 0) {
        EXPECT_NE(made.err.find("Pronto hex can hold it"), std::string::npos) << made.err;
        continue;
      }
      const std::string text = without_newline(made.out);
      const std::string option = "--" + std::string(form) + "=" + text;
      const auto sent = run(VANTREL_PROGRAM, {"sendir", option}, {}, with_device());
      EXPECT_EQ(sent.status, 0) << option;
      EXPECT_EQ(sent.err.find("rror"), std::string::npos) << sent.err;
      EXPECT_TRUE(sent.out.ends_with("Done!\n")) << option << sent.out;
      // The same again in one step.
      arguments.emplace_back("--send");
      EXPECT_EQ(encode(arguments, {}, with_device()).out, sent.out);
    }
  }
  const auto decoded = run(VANTREL_PROGRAM, {"decode", "--raw=" + without_newline(kNec)});
  EXPECT_NE(decoded.out.find(":: DECODEIR :: NEC           - scancode: 0x00EF  D:0x0004"),
            std::string::npos);
}

TEST(VantrelEncode, WritesEveryForm) {
  for (const companions::form* const to : companions::forms()) {
    const auto made = encode({"NEC1", "D=4", "F=8", "-n1", "--to", std::string(to->name)});
    EXPECT_EQ(made.status, 0) << to->name;
    std::istringstream text(made.out);
    const auto found = companions::pattern_reader(text, to).next();
    ASSERT_TRUE(found && std::holds_alternative<companions::pattern>(found->what)) << to->name;
    const auto& signal = std::get<companions::pattern>(found->what);
    std::vector<int> sent = irp::protocol("NEC1").render({{"D", 4}, {"F", 8}}).whole();
    const size_t once = signal.repeat.empty() ? 71 : 68;  // and the silence, where it is held
    ASSERT_GE(signal.durations.size(), once) << to->name;
    for (size_t i = 0; i < once; ++i) EXPECT_NEAR(signal.durations[i], sent[i], 16) << to->name;
    EXPECT_EQ(signal.carrier_hz.has_value(), to->holds.carrier) << to->name;
    EXPECT_EQ(signal.name.empty(), to->holds.spell == nullptr) << to->name;
  }
}

TEST(VantrelEncode, SaysThatTheCarrierIsNotSent) {
  const std::pair<const char*, const char*> kCases[] = {
      {"RC5 D=1 F=2", "RC5 needs a carrier of 36000 Hz"},
      {"Sony12 D=1 F=2", "Sony12 needs a carrier of 40000 Hz"},
      {"TDC-56 D=1 S=1 F=2", "TDC-56 needs a carrier of 56300 Hz"},
      {"Archer F=2", "Archer needs no carrier"},
  };
  for (const auto& [code, note] : kCases) {
    EXPECT_EQ(encode(words(code)).err, std::string("vantrel-encode: ") + note +
                                           ", but sendir cannot tell the device the carrier\n");
  }
}

TEST(VantrelEncode, SaysWhatIsWrong) {
  const std::pair<const char*, const char*> kCases[] = {
      {"", "which protocol? --list shows them all"},
      {"None D=4", "no protocol 'None', --list shows them all"},
      {"NEC1 D=4", "NEC1 needs F (0..255)"},
      {"NEC1 D=4 F=256", "NEC1: F=256 is not in 0..255"},
      {"NEC1 D=4 F=8 X=1", "NEC1 has no parameter X"},
      {"NEC1 D=4 F", "'F' is not NAME=NUMBER"},
      {"NEC1 D=4 =8", "'=8' is not NAME=NUMBER"},
      {"NEC1 D=4 F=8x", "'F=8x' is not NAME=NUMBER"},
      {"NEC1 D=4 F=8 -n2",
       "a gap of 96156 us is too long for the lists of sendir, Pronto hex can hold it"},
      {"NEC1 D=4 F=8 --json", "--json goes with --list only"},
      {"NEC1 D=4 F=8 --send --to ir",
       "--send goes with the forms of sendir only: raw, csv and pronto"},
      {"--from-json --send", "--send goes with a protocol and its numbers only"},
      {"NEC1 D=4 D=5 F=8", "D is given twice"},
      {"--list NEC1", "--list goes without a protocol"},
      {"--from-json /", "/: Is a directory"},
      {"NEC1 --definitions /nowhere", "/nowhere: No such file or directory"},
  };
  for (const auto& [line, fault] : kCases) {
    const auto result = encode(words(line));
    EXPECT_EQ(result.err, std::string("vantrel-encode: ") + fault + "\n") << line;
    EXPECT_EQ(result.status, 1) << line;
    EXPECT_EQ(result.out, "") << line;
  }
  EXPECT_EQ(encode({"NEC1", "D=4", "F=8", "--to", "xml"}).status, 1);
}

TEST(VantrelEncode, ReadsFurtherDefinitions) {
  const std::string path = testing::TempDir() + "encode_test.irp";
  std::ofstream(path) << "# mine\nMine\t{38k,100}<1,-1|1,-3>(F:2,1)[F:0..3]\nBad\t{38k}(1\n"
                      << "NEC1\t{38k,100}(1,-2,3)\n";
  const auto mine = encode({"Mine", "F=1", "--definitions", path});
  EXPECT_EQ(mine.out, "+100 -300 +100 -100 +100\n");
  EXPECT_EQ(mine.err, "vantrel-encode: " + path + ":3:12: expected ')', found the end\n");
  EXPECT_EQ(mine.status, 1);
  EXPECT_EQ(encode({"NEC1", "-d", path}).out, "+100 -200 +300\n");
}

TEST(VantrelEncode, ListsWhoKnowsAProtocol) {
  const auto text = encode({"--list"});
  const auto as_json = encode({"--list", "--json"});
  EXPECT_EQ(text.status, 0);
  for (const char* line :
       {"NEC1\tD:0..255 S:0..255=255-D F:0..255\tZARVO NEC32; DECODEIR NEC; ARDUINO NEC\n",
        "\nLG2\tD:0..255 F:0..65535\t"}) {
    EXPECT_NE(text.out.find(line), std::string::npos) << line;
  }
  std::istringstream lines(text.out), objects(as_json.out);
  size_t count = 0;
  for (std::string line, object; std::getline(lines, line) && std::getline(objects, object);) {
    const json one = json::parse(object);
    EXPECT_TRUE(line.starts_with(one.at("protocol").get<std::string>() + "\t")) << line;
    EXPECT_EQ(line.ends_with("message"), one.at("message").get<bool>()) << line;
    for (const auto& name : one.at("analysis")) {
      EXPECT_NE(line.find("DECODEIR " + name.get<std::string>()), std::string::npos) << line;
    }
    ++count;
  }
  EXPECT_EQ(count, irp::protocols().all().size());
}

TEST(VantrelEncode, TheReadmeShowsTheListAsItIs) {
  const std::string list = "\n" + encode({"--list"}).out;
  std::ifstream readme(README);
  size_t shown = 0;
  for (std::string line; std::getline(readme, line);) {
    if (line.find("\tZARVO ") == std::string::npos) continue;
    EXPECT_NE(list.find("\n" + line.substr(line.find_first_not_of(' ')) + "\n"), std::string::npos)
        << line;
    ++shown;
  }
  EXPECT_GT(shown, 0U);
}

TEST(VantrelEncode, SendsWhatWasDecoded) {
  const char* const kCodes[] = {"NEC2 D=4 F=8",
                                "RC5 D=1 F=66 T=1",
                                "Sony20 D=1 S=2 F=3",
                                "Zenith5 S=1 F=9",
                                "RC6-M-24 D=1 S=2 F=3 M=6",
                                "Kaseikyo D=1 S=2 F=3 E=4 M=5 N=6",
                                "XMP D=1 S=2 F=770",
                                "Digivision D=1 Dev2=2 Dev3=3 F=4",
                                "Whynter F=0xF2345678",
                                "RC6-M-32 OEM1=1 OEM2=2 D=3 F=4 M=6"};
  for (const char* code : kCodes) {
    const std::string sent = encode(words(code)).out;
    const std::string decoded = run(VANTREL_JSON, {}, sent).out;
    const auto again = encode({"--from-json"}, decoded);
    EXPECT_EQ(again.status, 0) << code << again.err;
    const json first = json::parse(decoded),
               second = json::parse(run(VANTREL_JSON, {}, again.out).out);
    for (const char* key : {"protocol", "device", "subdevice", "obc"}) {
      EXPECT_EQ(first.at("analysis").at(0).at(key), second.at("analysis").at(0).at(key)) << code;
    }
  }
}

TEST(VantrelEncode, SaysWhichRecordCannotBeSent) {
  const std::string input =
      "{\"message\":{\"name\":\"Fujitsu-AC-56\",\"fields\":{\"F\":2},\"check\":true}}\n"
      "{]\n\n{}\n{\"analysis\":[]}\n"
      "{\"analysis\":[{\"protocol\":\"Gap-1\",\"device\":1,\"subdevice\":null,\"obc\":7,\"misc\":"
      "\"\"}]}\n"
      "{\"message\":{\"name\":\"Nothing\",\"fields\":{}}}\n"
      "{\"message\":{\"name\":\"Fujitsu-AC-56\",\"fields\":{\"F\":\"2\"}}}\n"
      "{\"analysis\":[{\"protocol\":\"Keeprite\",\"device\":3,\"subdevice\":5,\"obc\":18,\"misc\":"
      "\"\"}]}\n"
      "{\"analysis\":[{\"protocol\":\"Pioneer\",\"device\":165,\"subdevice\":null,\"obc\":5,"
      "\"misc\":"
      "\"\"}]}\n";
  const auto result = encode({"--from-json", "-"}, input);
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.out.starts_with("+3280 -1640 +410 -410 ")) << result.out;
  EXPECT_NE(result.out.find("\n+9024 -4512 +564 -1692 "), std::string::npos) << result.out;
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2);
  EXPECT_EQ(
      result.err,
      "vantrel-encode: -:2: column 2: no JSON\n"
      "vantrel-encode: -:4: no decoded signal\n"
      "vantrel-encode: -:5: a signal of no known protocol\n"
      "vantrel-encode: -:6: no definition sends Gap-1\n"
      "vantrel-encode: -:7: no protocol Nothing\n"
      "vantrel-encode: -:8: no record of vantrel-json\n"
      "vantrel-encode: -:9: no definition sends Keeprite without A, B, C, E, G, H\n"
      "vantrel-encode: Pioneer needs a carrier of 40000 Hz, but sendir cannot tell the device "
      "the carrier\n");
}

/// The answers that are right for one of the frames of a press.
std::vector<contract::Expected> wanted(const irp::Protocol& protocol, const irp::Parameters& of) {
  std::vector<contract::Expected> found;
  for (const char* frame : {"1", "2"}) {
    if (auto one = contract::expected(protocol, of, frame, false)) found.push_back(*one);
  }
  return found;
}

/// Whether one of the frames of a press, as a receiver delivers it, gets a right answer.
bool answered(const irp::Protocol& protocol, const irp::Parameters& parameters,
              const std::vector<contract::Expected>& right, Random& random) {
  const auto sent = companions::render_press(protocol, parameters, 0).whole;
  const auto seen = receive(sent, random, {}, protocol.carrier() > 0);
  for (const auto& piece : companions::received_pieces(seen)) {
    if (piece.size() > companions::kMostDurations) continue;
    for (const auto& said : companions::ask_analysis(piece)) {
      const contract::Answer answer{said.protocol, said.device, said.subdevice, said.obc};
      const auto is_it = [&](const auto& one) { return contract::mismatch(one, answer).empty(); };
      if (std::ranges::any_of(right, is_it)) return true;
    }
  }
  return false;
}

TEST(VantrelEncode, WhatItSendsIsDecodedToTheSameNumbers) {
  constexpr int kPresses = 4;
  for (const std::string& name : contract::protocols()) {
    // The spaces of one end a signal at the receiver; the other has random numbers that are no
    // codes.
    if (name == "pid-0083" || name == "Lutron") continue;
    const irp::Protocol& protocol = irp::protocol(name);
    Random random(16, name);
    for (int i = 0; i < kPresses; ++i) {
      irp::Parameters given;
      for (const irp::Parameter& parameter : protocol.parameters()) {
        if (!parameter.preset)
          given[parameter.name] = random.between(parameter.low, parameter.high);
      }
      const irp::Parameters full = protocol.complete(given);
      std::string what = name;
      for (const auto& [field, value] : full) what += " " + field + "=" + std::to_string(value);
      const auto right = wanted(protocol, full);
      EXPECT_TRUE(right.empty() || answered(protocol, full, right, random)) << what;
    }
  }
}

}  // namespace
