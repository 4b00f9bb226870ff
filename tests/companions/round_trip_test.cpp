// SPDX-License-Identifier: GPL-3.0-or-later
// What vantrel prints of a signal, in each of its forms, read back by the companion programs.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <regex>

#include "companions/plot.h"
#include "tests/support/companion_run.h"

namespace {

using nlohmann::json;

TEST(RoundTrip, EveryFormGivesTheDurationsAndAnswersOfDecode) {
  const std::pair<const char*, const char*> forms[] = {{"--raw", "--raw="},
                                                       {"--comma", "--time="},
                                                       {"--analysir", "--time="},
                                                       {"--pronto", "--pronto="}};
  const std::vector<int> frames[] = {frame("NEC1", {{"D", 4}, {"F", 8}}),
                                     frame("Sony12", {{"D", 1}, {"F", 18}})};
  for (const auto& sent : frames) {
    for (const auto& [form, option] : forms) {
      SCOPED_TRACE(form);
      const std::string text = heard(form, sent);
      const auto result = run(VANTREL_JSON, {}, text);
      ASSERT_EQ(result.status, 0) << text << result.err;
      const json record = json::parse(result.out);

      // The pattern itself: the last line that holds no decoder's answer.
      const std::string pattern = text.substr(text.rfind('\n', text.size() - 2) + 1);
      const auto decoded = run(VANTREL_PROGRAM, {"decode", option + pattern});
      EXPECT_EQ(decoded.out.substr(0, decoded.out.find('\n')), raw_of(record));
      const size_t answers = decoded.out.find(":: DECODEIR");
      EXPECT_EQ(decoded.out.substr(answers, decoded.out.find("++++") - answers), lines_of(record));
      EXPECT_EQ(record.contains("elapsed_ms"), std::string(form) != "--pronto");
    }
  }
}

TEST(VantrelJson, ReportsFaultsAndReadsOn) {
  const auto result = run(VANTREL_JSON, {"-"}, "# noise\n9000,x\n\n+500 -500 +500 \n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "");
  const size_t second = result.out.find('\n') + 1;
  json fault = json::parse(result.out.substr(0, second));
  const std::string time = fault.at("time");
  EXPECT_TRUE(std::regex_match(time, std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z)")))
      << time;
  fault.erase("time");
  EXPECT_EQ(fault, json({{"schema", 1},
                         {"source", "-"},
                         {"line", 2},
                         {"column", 6},
                         {"error", "\"x\" is no duration of 0 to 16777215"}}));
  EXPECT_EQ(json::parse(result.out.substr(second)).at("analysis"), json::array());
}

TEST(VantrelJson, ShowsItsProgressBetweenRecordsOnly) {
  process program({.argv = {VANTREL_JSON}, .one_screen = true});
  usleep(600'000);  // it shows nothing of what is done within half a second
  program.send("500,500,500\n");
  EXPECT_TRUE(program.wait_for("1 patterns, "));
  program.send("500,x\n500,500,500\n");
  const std::string out = program.finish().out;
  const std::regex whole(R"((\{[^\x1b\n]*\}\r\n|\r\x1b\[K(\d+ patterns, \d+ a second)?)*)");
  EXPECT_TRUE(std::regex_match(out, whole)) << out;
  EXPECT_TRUE(out.ends_with("\x1b[K")) << out;
}

TEST(VantrelJson, FilesHaveNoTime) {
  const std::string path = testing::TempDir() + "pattern.csv";
  std::ofstream(path) << "500,500,500\n";
  const auto result = run(VANTREL_JSON, {path});
  EXPECT_FALSE(json::parse(result.out).contains("time"));
}

TEST(VantrelJson, FirstStopsAtANamedPattern) {
  const std::string nec = irp::csv(frame("NEC1", {{"D", 4}, {"F", 8}}));
  const auto found = run(VANTREL_JSON, {"--first"}, "bad\n1,2,3\n" + nec + "\n1,2,3\n");
  EXPECT_EQ(found.status, 0);
  EXPECT_EQ(std::count(found.out.begin(), found.out.end(), '\n'), 3);
  EXPECT_EQ(run(VANTREL_JSON, {"--first"}, "1,2,3\n").status, 1);
}

TEST(Companions, SayWhatTheyCannotDo) {
  for (const char* program : {VANTREL_CONVERT, VANTREL_EXPLAIN, VANTREL_JSON, VANTREL_PLOT}) {
    EXPECT_EQ(run(program, {"--help"}).status, 0);
    EXPECT_EQ(run(program, {"--version"}).out.substr(0, 8), "vantrel-");
    EXPECT_EQ(run(program, {"--nonsense"}).status, 1);
    EXPECT_EQ(run(program, {"/nowhere"}).err, "/nowhere: No such file or directory\n");
    EXPECT_EQ(run(program, {"/"}).err, "/: Is a directory\n");
    process_options full{.argv = {program}, .stdout_file = "/dev/full"};
    const auto result = run_process(full, "500,500,500\n");
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("could not write to standard output"), std::string::npos);
  }
}

TEST(VantrelPlot, DrawsToScaleAndFolds) {
  const auto result = run(VANTREL_PLOT, {}, "300,300,300,600,900,900,300\n", {"COLUMNS=20"});
  EXPECT_EQ(result.out,
            ":: DECODEIR :: UNKNOWN       -\n"
            "███▁▁▁███▁▁▁▁▁▁█████\n"
            "┬─────────┬─────────\n"
            "0         1000\n"
            "████▁▁▁▁▁▁▁▁▁███\n"
            "┬─────────┬─────\n"
            "2000      3000\n\n");
}

TEST(VantrelPlot, RoundsScalesOfAnyLength) {
  EXPECT_EQ(companions::round_up_nicely(0.3), 1);
  EXPECT_EQ(companions::round_up_nicely(21), 50);
  EXPECT_EQ(companions::round_up_nicely(6e11), 1'000'000'000'000);
}

TEST(VantrelPlot, WritesTheBitsAndTheResultLineIntoTheSvg) {
  const std::string sony = irp::csv(frame("Sony12", {{"D", 1}, {"F", 18}}));
  const auto result = run(VANTREL_PLOT, {"--svg", "-"}, sony + "\n" + sony + "\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find(">:: DECODEIR :: Sony12        - scancode: 0x0024  D:0x0001"),
            std::string::npos);
  std::string bits;
  constexpr std::string_view kBit = "class=\"bit\"";
  for (size_t at = 0; (at = result.out.find(kBit, at)) != std::string::npos; at++) {
    bits += result.out[result.out.find('>', at) + 1];
  }
  EXPECT_EQ(bits, "010010010000010010010000");
  EXPECT_TRUE(result.out.ends_with("</svg>\n"));
}

TEST(VantrelPlot, DrawsBitsWhereTheAnalysisSays) {
  const struct {
    const char* protocol;
    irp::Parameters parameters;
    size_t lead, part;  // durations of the lead-in and of bits, and one each in the legend
  } cases[] = {
      {"XMP", {{"D", 115}, {"S", 138}, {"F", 770}}, 0, 33},  // sixteen symbols ...
      {"XMP", {{"D", 0}, {"S", 17}, {"F", 4369}}, 0, 33},    // ... and few of them
      {"DirecTV_P0", {{"D", 3}, {"F", 9}}, 3, 17},           // four, of marks and of spaces
  };
  for (const auto& c : cases) {
    const std::string text = irp::csv(frame(c.protocol, c.parameters));
    const std::string out = run(VANTREL_PLOT, {"--svg", "-"}, text + "\n").out;
    const auto count = [&](const std::string& style) {
      size_t found = 0;
      for (size_t at = 0; (at = out.find("<" + style, at)) != std::string::npos; at++) ++found;
      return found;
    };
    EXPECT_EQ(count("rect class=\"lead\" x"), c.lead) << c.protocol;
    EXPECT_EQ(count("rect class=\"part\" x"), c.part) << c.protocol;
    EXPECT_EQ(count("text class=\"bit\""), 0U) << c.protocol;
  }
}

TEST(VantrelPlot, CountsLengthsOfAnyNumberOfPatternsAndDrawsAThousand) {
  std::string many;
  for (int i = 0; i < 1001; ++i) many += "500,199999,502\n";
  EXPECT_EQ(run(VANTREL_PLOT, {"--histogram"}, many, {"COLUMNS=30"}).out,
            "marks\n"
            "  about 501 us: 2002\n"
            "     500..549     2002 ██████\n"
            "spaces\n"
            "  about 200000 us: 1001\n"
            "  200000..209999  1001 ██████\n"
            "bursts\n"
            "  about 200500 us: 1001\n"
            "  200000..219999  1001 ██████\n");
  for (const char* option : {"--bytes", "--svg=/dev/null"}) {
    const auto result = run(VANTREL_PLOT, {option}, many);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "-:1001: one picture takes 1000 patterns and 1000000 durations; this pattern and the "
              "rest are left out\n");
  }
}

TEST(VantrelPlot, MarksTheBytesThatDiffer) {
  const auto midea = [](int64_t temperature) {
    const irp::Parameters state = {
        {"A", 0xA1}, {"B", 0xA0}, {"C", temperature}, {"D", 1}, {"E", 2}};
    return irp::csv(irp::protocol("Midea").render(state).whole()) + "\n";
  };
  const auto result = run(VANTREL_PLOT, {"--bytes", "--msb"}, midea(0x65) + midea(0x67));
  EXPECT_EQ(result.out,
            "section 1\n"
            "  -:1 A1 A0 65 01 02 08  (48 bits)\n"
            "  -:2 A1 A0 67 01 02 0B  (48 bits)\n"
            "            ^^       ^^\n"
            "  byte 3: 01100101 01100111\n"
            "  byte 6: 00001000 00001011\n"
            "section 2\n"
            "  -:1 5E 5F 9A FE FD F7  (48 bits)\n"
            "  -:2 5E 5F 98 FE FD F4  (48 bits)\n"
            "            ^^       ^^\n"
            "  byte 3: 10011010 10011000\n"
            "  byte 6: 11110111 11110100\n");
  EXPECT_EQ(run(VANTREL_PLOT, {"--bytes", "--histogram"}).status, 1);
}

}  // namespace
