// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/json_record.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/irp.h"

namespace {

using namespace companions;
using nlohmann::json;

const irp::MessageReader& definitions() {
  static const irp::MessageReader reader(irp::protocols());
  return reader;
}

/// The record of the first pattern or fault of a text.
record record_of(const std::string& text) {
  std::istringstream stream(text);
  pattern_reader reader(stream);
  return make_record({.source = "a", .read = *reader.next(), .position = 0, .live = false},
                     definitions());
}

/// Everything that a protocol sends at once, as one pattern.
json of_signal(const char* protocol, const irp::Parameters& given) {
  const auto sent = irp::protocol(protocol).render(given).whole();
  return json::parse(record_of(irp::csv(sent)).json);
}

TEST(JsonRecord, SplitsASignalIntoFramesAtItsGaps) {
  const std::vector<int> nec = {9024, 4512, 564, 564, 564, 1692, 564};
  std::string text = irp::csv(nec) + ",40000," + irp::csv(nec) + ",14000,564,14001";
  const json found = json::parse(record_of(text).json);
  const json& frames = found.at("frames");
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].at("entry"), 1);
  EXPECT_EQ(frames[0].at("count"), 7);
  EXPECT_EQ(frames[0].at("gap"), 40000);
  EXPECT_EQ(frames[1].at("entry"), 9);
  EXPECT_EQ(frames[1].at("count"), 9);
  EXPECT_EQ(frames[1].at("gap"), 14001);
  EXPECT_EQ(found.at("program"), frames[0].at("program"));
  EXPECT_EQ(found.at("arduino"), frames[0].at("arduino"));
  EXPECT_EQ(found.at("durations").size(), 18U);
}

TEST(JsonRecord, AsksOnlyFamiliesThatTakeTheFrame) {
  std::string longer;
  for (int i = 0; i < 256; ++i) longer += "500,";
  const std::pair<std::string, bool> cases[] = {
      {longer + "500", false}, {longer.substr(8) + "500", true}, {"500,500,14001", false}};
  for (const auto& [text, taken] : cases) {
    const json found = json::parse(record_of(text).json);
    EXPECT_EQ(found.at("program").is_null(), !taken) << text.size();
    EXPECT_TRUE(taken || found.at("arduino").is_null()) << text.size();
    EXPECT_TRUE(found.contains("coding"));
  }
}

TEST(JsonRecord, TellsTheCodingOfTheWhole) {
  const json nec = of_signal("NEC1", {{"D", 4}, {"F", 8}}).at("coding");
  EXPECT_EQ(nec.at("kind"), "pulse distance");
  EXPECT_EQ(nec.at("unit"), 564);
  const json& section = nec.at("sections").at(0);
  EXPECT_EQ(section.at("lead_in"), json({9024, -4512}));
  EXPECT_EQ(section.at("bits"), 32);
  EXPECT_EQ(section.at("lsb"), "04FB08F7");
  EXPECT_EQ(section.at("msb"), "20DF10EF");
  EXPECT_EQ(json::parse(record_of("500,500").json).at("coding"),
            json({{"kind", "unknown"},
                  {"unit", nullptr},
                  {"bits_per_symbol", 1},
                  {"sections",
                   {{{"lead_in", json::array()},
                     {"bits", 0},
                     {"lsb", ""},
                     {"msb", ""},
                     {"gap", nullptr}}}}}));
}

TEST(JsonRecord, NamesMessagesWhoseCheckHolds) {
  const irp::Parameters fields = {{"A", 0xA1}, {"B", 0xA0}, {"C", 0x65}, {"D", 0xFF}, {"E", 0xFF}};
  EXPECT_EQ(of_signal("Midea", fields).at("message"),
            json({{"name", "Midea"},
                  {"fields", {{"A", 161}, {"B", 160}, {"C", 101}, {"D", 255}, {"E", 255}}},
                  {"check", true},
                  {"sections", {1, 2}}}));
  irp::Parameters state;
  for (int i = 0; i < 12; ++i) state["A" + std::to_string(i)] = i == 0 ? 0xC3 : 7 * i;
  EXPECT_EQ(of_signal("AUX-104", state).at("message").at("name"), "AUX-104");
  // Two neighbouring bits of the second byte change places: the sum no longer holds.
  auto sent = irp::protocol("AUX-104").render(state).whole();
  std::swap(sent[2 + 2 * 10 + 1], sent[2 + 2 * 11 + 1]);
  const json changed = json::parse(record_of(irp::csv(sent)).json).at("message");
  EXPECT_TRUE(changed.is_null() || changed.at("name").is_null()) << changed;
}

TEST(JsonRecord, WritesAnyBytesAsOneLineOfJson) {
  for (const char* text : {"9000,\"\\\n", "9000,\xFF\xC3\n", "\x01,2\n", "1,2,\x7F\n"}) {
    const record made = record_of(text);
    EXPECT_TRUE(made.fault);
    const json found = json::parse(made.json);
    EXPECT_EQ(found.at("schema"), 1);
    EXPECT_EQ(found.at("line"), 1);
    EXPECT_TRUE(found.contains("column"));
  }
}

}  // namespace
