// SPDX-License-Identifier: GPL-3.0-or-later
// Every row of the pulse-distance table, with frames of the definitions that the tests know.
#include "lib/ir/DecodeIR/protocols/rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "lib/ir/DecodeIR/explain.h"
#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/recognisers.h"
#include "tests/support/decode_ir_call.h"

namespace {

using namespace analysis;

std::vector<float> with_gap(const std::vector<int>& sent) {
  std::vector<float> bursts(sent.begin(), sent.end());
  if (bursts.size() % 2 == 1) bursts.push_back(50000);
  return bursts;
}

/// By what fraction a frame is off from what its row says: in clock, marks, symbols and lead-in.
float distance_from_row(const pulse_distance& wire, const frame& seen, const distance_fit& fit) {
  float off = std::max(
      {std::abs(fit.scale - 1), std::abs(fit.skew), std::abs(fit.bias) / (wire.mark * wire.unit)});
  if (wire.has_lead()) {
    off = std::max({off, std::abs(seen.on(0) / (wire.lead.on * wire.unit) - 1),
                    std::abs(seen.off(0) / (wire.lead.off * wire.unit) - 1)});
  }
  return off;
}

/// The rows that take a frame, in the order in which they are asked.
std::vector<const row*> takers(const std::vector<int>& sent,
                               std::map<const row*, float>* nearest = nullptr) {
  const std::vector<float> bursts = with_gap(sent);
  const frame seen(bursts);
  std::vector<const row*> found;
  for (const row* const candidate : distance_rows(seen.length)) {
    const pulse_distance& wire = *candidate->wire.distance();
    reading fitted{seen, candidate, {}, {}};
    if (seen.trailing_gap >= wire.min_gap && seen.gap_before <= wire.max_before &&
        read_pulse_distance(wire, seen.first, &fitted.bits, &fitted.fit) && fitted.checks_hold() &&
        fitted.read()) {
      found.push_back(candidate);
      if (nearest == nullptr) continue;
      const float off = distance_from_row(wire, seen, fitted.fit);
      const auto [place, is_first] = nearest->try_emplace(candidate, off);
      place->second = std::min(place->second, off);
    }
  }
  return found;
}

std::map<std::string, std::vector<int>> frames(std::string_view member = "tryGap") {
  std::map<std::string, std::vector<int>> found;
  for (const std::string& protocol : contract::protocols(member)) {
    const contract::Counts counts{.clean = 5, .received = 0, .repeated = 0};
    int number = 0;
    for (const contract::Sample& sample : contract::samples(protocol, 3, counts)) {
      found[protocol + ' ' + std::to_string(++number)] = sample.durations;
    }
  }
  for (const contract::Frame& one : contract::frames()) {
    found[one.what] = decode_ir::broken(one.definition);
  }
  return found;
}

// These follow another frame closely; alone they look like what they are not.
bool is_continuation(const row& one) {
  return one.wire.distance()->max_before < kAnyUs;
}

TEST(Rows, EachTakesAFrameOfSomeDefinition) {
  std::set<const row*> taken;
  for (const auto& [name, sent] : frames()) {
    for (const row* const one : takers(sent)) taken.insert(one);
  }
  for (const row* const one : distance_rows()) {
    EXPECT_TRUE(taken.contains(one) || is_continuation(*one))
        << one->name << " of " << one->wire.bits() << " bits, unit " << one->wire.distance()->unit;
  }
}

// A length of a row that is a twentieth off still reads the frames that it is for.
TEST(Rows, AreWhatTheirDefinitionsSend) {
  constexpr float kMostOff = 0.02F;
  // Lengths of remotes that differ from the definition.
  const std::map<std::string_view, float> others = {{"Gree", 0.11F},     {"JVC", 0.16F},
                                                    {"RECS80", 0.99F},   {"RCA", 0.04F},
                                                    {"SharpDVD", 0.06F}, {"Fujitsu-AC-56", 0.04F}};
  std::map<const row*, float> nearest;
  for (const auto& [name, sent] : frames()) takers(sent, &nearest);
  for (const auto& [one, off] : nearest) {
    const auto other = others.find(one->name);
    EXPECT_LE(off, other != others.end() ? other->second : kMostOff)
        << one->name << " of " << one->wire.bits() << " bits, unit " << one->wire.distance()->unit;
  }
}

// Of rows that take a frame the one that verifies most wins; among equals only their order in the
// table would decide, which is nothing to rely on.
TEST(Rows, NoTwoTakeAFrameWithEqualProof) {
  for (const auto& [name, sent] : frames()) {
    const std::vector<const row*> found = takers(sent);
    if (found.size() < 2 || found[0]->redundancy() > found[1]->redundancy()) continue;
    EXPECT_STREQ(found[0]->name, found[1]->name) << name << ": " << irp::csv(sent);
  }
}

const std::span<const row> kTables[] = {kAdNotamRows, kBrystonRows, kCanalSatRows,        kF12Rows,
                                        kGxbRows,     kMcir2Rows,   kSingleBurstSizeRows, kSonyRows,
                                        kSunfireRows, kTdcRows};

TEST(Rows, EachOfPulseWidthAndBiPhaseReadsAFrame) {
  std::set<const row*> taken;
  for (const auto& [name, sent] : frames({})) {
    const std::vector<float> bursts = with_gap(sent);
    if (bursts.size() > 2 * frame::kMostBursts) continue;
    for (const std::span<const row> table : kTables) {
      for (const row& one : table) {
        if (read_rows({&one, 1}, frame(bursts))) taken.insert(&one);
      }
    }
  }
  for (const std::span<const row> table : kTables) {
    for (const row& one : table) EXPECT_TRUE(taken.contains(&one)) << one.name;
  }
}

TEST(Rows, AreSoundOnlyWhenTheyMeanWhatTheySay) {
  static constexpr pulse_distance kWire{500, {16, 8}, 1, 1, 3, 20};
  constexpr auto check = [](const reading&) { return true; };
  constexpr row kWhole{.name = "whole", .wire = &kWire, .function = {12, 8}};
  EXPECT_TRUE(is_sound(kWhole));
  const std::pair<const char*, row> cases[] = {
      {"field outside", {.name = "", .wire = &kWire, .function = {60, 8}}},
      {"constant too wide", {.name = "", .wire = &kWire, .constants = {{0, 4, 16}}}},
      {"mirror in itself", {.name = "", .wire = &kWire, .mirrors = {{0, 4, 8}}}},
      {"mirror outside", {.name = "", .wire = &kWire, .mirrors = {{0, 16, 8}}}},
      {"check that proves nothing", {.name = "", .wire = &kWire, .check = +check}},
      {"proof without a check", {.name = "", .wire = &kWire, .check_bits = 4}},
  };
  for (const auto& [what, broken] : cases) EXPECT_FALSE(is_sound(broken)) << what;
}

/// What stopped the reading of one protocol.
refusal why(const explanation& told, std::string_view protocol) {
  for (const attempt& one : told.attempts) {
    if (one.protocol == protocol) return one.why;
  }
  return {};
}

TEST(Explain, TellsWhatStoppedAReading) {
  struct {
    const char *what, *protocol;
    std::vector<size_t> at;
    float factor;
    reason why;
    int burst;
  } const cases[] = {
      {"two spaces between the symbols", "NEC", {35, 43}, 1.6F, reason::symbol, 21},
      {"another lead-in", "JVC", {0}, 1.5F, reason::lead_in, 0},
      {"a damaged lead-in, and no check", "JVC", {0}, 1.25F, reason::damage, -1},
  };
  for (const auto& c : cases) {
    const std::vector<int> sent = decode_ir::frame(c.protocol, {{"D", 4}, {"F", 8}});
    std::vector<float> bursts(sent.begin(), sent.end());
    bursts.push_back(50000);
    for (const size_t i : c.at) bursts[i] *= c.factor;
    const refusal found = why(explain(frame(bursts)), c.protocol);
    EXPECT_EQ(found.why, c.why) << c.what << ": " << text_of(found.why);
    EXPECT_EQ(found.burst, c.burst) << c.what;
    EXPECT_TRUE(c.burst < 0 || found.found < found.least || found.found > found.most) << c.what;
  }
}

TEST(Explain, TellsTheNearestFirstBesideTheName) {
  const std::vector<int> sent =
      decode_ir::broken("{37k,432}<1,-1|1,-3>(8,-4,2:8,32:8,5:8,6:8,7:8,5:8,1,-74m)");
  std::vector<float> bursts(sent.begin(), sent.end());
  bursts.push_back(50000);
  const explanation told = explain(frame(bursts));
  EXPECT_TRUE(told.found->name.view().starts_with("Gap-48-"));
  EXPECT_EQ(why(told, "Panasonic").why, reason::check);
  EXPECT_EQ(why(told, "NEC").why, reason::bursts);
  EXPECT_EQ(why(told, "RC5").why, reason::bursts);
  for (size_t i = 1; i < told.attempts.size(); ++i) {
    EXPECT_GE(told.attempts[i - 1].why.why, told.attempts[i].why.why);
  }
}

}  // namespace
