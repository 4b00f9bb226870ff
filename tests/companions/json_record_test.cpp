// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/json_record.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/irp.h"
#include "tests/support/receiver.h"

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
}

/// The first two neighbouring bits behind half of the signal that differ, in each other's place.
std::vector<int> with_bits_swapped(std::vector<int> signal) {
  for (size_t i = signal.size() / 4 * 2 + 1; i + 2 < signal.size(); i += 2) {
    const int shorter = std::min(signal[i], signal[i + 2]);
    const int longer = std::max(signal[i], signal[i + 2]);
    if (longer < shorter * 3 / 2 || longer > shorter * 5) continue;
    std::swap(signal[i], signal[i + 2]);
    break;
  }
  return signal;
}

/// The bits of the sections that a message was read from, in hexadecimal.
std::vector<std::string> read_bits(const json& record) {
  std::vector<std::string> bits;
  const json& sections = record.at("coding").at("sections");
  const json& taken = record.at("message").at("sections");
  for (size_t i = taken[0]; i <= taken[1].get<size_t>(); ++i) {
    bits.push_back(sections.at(i - 1).at("msb"));
  }
  return bits;
}

TEST(JsonRecord, ReadsEveryMessageBackAndNoneFromOtherBits) {
  size_t read = 0;
  for (const auto& protocol : irp::protocols().all()) {
    if (!definitions().reads(*protocol)) continue;
    Random random(16, protocol->name());
    for (int i = 0; i < 4; ++i, ++read) {
      irp::Parameters given;
      for (const irp::Parameter& one : protocol->parameters()) {
        if (!one.preset) given[one.name] = random.between(one.low, one.high);
      }
      const auto sent = protocol->render(given).whole();
      const json whole = json::parse(record_of(irp::csv(sent)).json);
      EXPECT_EQ(whole.at("message").at("name"), protocol->name());
      EXPECT_EQ(whole.at("message").at("fields"), json(protocol->complete(given)));
      // What is still named is so by copies or fields that no check covers: it sends those bits.
      const json damaged = json::parse(record_of(irp::csv(with_bits_swapped(sent))).json);
      const json& message = damaged.at("message");
      if (message.is_null() || message.at("name").is_null()) continue;
      const std::string name = message.at("name");
      const json again = of_signal(name.c_str(), message.at("fields").get<irp::Parameters>());
      const auto bits = read_bits(damaged), those = read_bits(again);
      ASSERT_LE(bits.size(), those.size()) << name;
      EXPECT_TRUE(std::equal(bits.begin(), bits.end(), those.begin())) << name << damaged;
    }
  }
  EXPECT_GT(read, 0U);
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
