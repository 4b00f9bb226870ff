// SPDX-License-Identifier: GPL-3.0-or-later
// Which frames the matchers name, and with what bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "tests/support/irrecv_call.h"

namespace {

using namespace irrecv;
using Durations = std::vector<int>;

const Durations kNec = sent("NEC1", {{"D", 4}, {"S", 251}, {"F", 8}});
const Durations kNecPlain = sent("NEC1-f16", {{"D", 4}, {"S", 251}, {"F", 8}, {"E", 9}});
const Durations kJvc = sent("JVC", {{"D", 0x43}, {"F", 0x1D}});
const Durations kSony = sent("Sony12", {{"D", 1}, {"F", 21}});
const Durations kRc5 = sent("RC5", {{"D", 0}, {"F", 12}, {"T", 0}});
const Durations kDish = sent("Dish_Network", {{"F", 42}, {"S", 3}, {"D", 1}});

TEST(Matchers, ReadFramesAsSentAndAsReceived) {
  const struct {
    Durations frame;
    const char* expected;
  } cases[] = {
      {kNec, "NEC 20DF10EF {32}"},
      {{9000, 2250, 560}, "NEC FFFFFFFF {0}"},
      {sent("Pioneer", {{"D", 165}, {"S", 90}, {"F", 1}}), "NEC A55A807F {32}"},
      {kSony, "SONY 00000A90 {12}"},
      {sent("Sony15", {{"D", 0x97}, {"F", 1}}), "SONY 000040E9 {15}"},
      {sent("Sony20", {{"D", 26}, {"S", 0x92}, {"F", 1}}), "SONY 00080B49 {20}"},
      {kRc5, "RC5 0000100C {13}"},
      {sent("RC5", {{"D", 5}, {"F", 0x6A}, {"T", 1}}), "RC5 0000096A {13}"},
      {sent("RC6", {{"D", 0}, {"F", 12}, {"T", 1}}), "RC6 0001000C {20}"},
      {sent("RC6-6-20", {{"D", 1}, {"S", 2}, {"F", 3}, {"T", 0}}), "RC6 00C01203 {24}"},
      {sent("Replay", {{"D", 1}, {"S", 2}, {"F", 3}, {"T", 1}}), "RC6 0D010203 {28}"},
      {sent("MCE", {{"D", 4}, {"S", 15}, {"F", 13}}), "RC6 800F040D {36}"},
      {kDish, "DISH 0000AB10 {16}"},
      {sent("Sharp{1}", {{"D", 1}, {"F", 0x68}}), "SHARP 0000405A {15}"},
      {sent("Sharp{2}", {{"D", 1}, {"F", 0x68}}), "SHARP 000043A5 {15}"},
      {sent("Denon{1}", {{"D", 2}, {"F", 3}}), "DENON 00002300 {15}"},
      {sent("Denon{2}", {{"D", 2}, {"F", 3}}), "DENON 000020FF {15}"},
      {kJvc, "JVC 0000C2B8 {16}"},
      {sent("JVC{2}", {{"D", 0x43}, {"F", 0x1D}}), "JVC 0000C2B8 {16}"},
      {sent("Aiwa", {{"D", 0x2A}, {"S", 5}, {"F", 0x10}}), "SANYO 956B08F7 {42}"},
      {sent("Aiwa", {{"D", 0x91}, {"S", 31}, {"F", 1}}), "AIWA_RC_T501 EEC0807F {42}"},
      {sent("NECx2", {{"D", 7}, {"S", 7}, {"F", 2}}), "SAMSUNG E0E040BF {32}"},
      {sent("Whynter", {{"F", 0x87654321}}), "WHYNTER 87654321 {32}"},
      {sent("Mitsubishi", {{"D", 0x47}, {"F", 2}}), "MITSUBISHI 0000E240 {16}"},
      {sent("Panasonic", {{"D", 128}, {"S", 0}, {"F", 0x3D}}), "PANASONIC 0100BCBD {48}"},
      {sent_lg(0x88C0051), "LG 088C0051 {28}"},
  };
  constexpr int kReceivers = 40;
  for (const auto& [frame, expected] : cases) {
    EXPECT_EQ(answer(frame), expected) << irp::csv(frame);
    Random random(7, expected);
    for (int i = 0; i < kReceivers; ++i) {
      const Durations received =
          receive(frame, random, i % 2 == 0 ? Receiver{} : Receiver{.first_mark = {0, 0.25}});
      EXPECT_EQ(answer(received), expected) << irp::csv(received);
    }
  }
}

// What the frames of the whole table are, if they are not UNKNOWN.
const std::pair<const char*, std::vector<std::string_view>> kTypes[] = {
    {"DENON", {"Denon", "Denon{1}", "Denon{2}"}},
    {"DISH", {"Dish_Network"}},
    {"JVC", {"JVC", "JVC-short", "JVC{2}"}},
    {"MITSUBISHI", {"Mitsubishi"}},
    {"NEC", {"NEC", "NEC1", "NEC2", "NEC-Yamaha", "NEC1-Yamaha", "NEC-f16", "NEC1-f16"}},
    {"NEC", {"NEC2-f16", "NEC1-rnc", "Apple", "Pioneer", "Pioneer-2Part", "Roku", "Tivo"}},
    {"NEC", {"Ortek_NEClike"}},
    {"PANASONIC", {"Panasonic"}},
    {"RC5", {"RC5"}},
    {"RC6", {"RC6", "RC6-6-20", "RC6-M-16", "RC6-M-24", "RC6-M-28", "RC6-M-32"}},
    {"RC6", {"Replay", "MCE"}},
    {"SAMSUNG", {"NECx", "NECx1", "NECx2", "NECx-f16", "NECx1-f16", "NECx2-f16"}},
    {"SANYO", {"Aiwa", "Aiwa2"}},
    {"SHARP", {"Sharp", "Sharp{1}", "Sharp{2}"}},
    {"SONY", {"Sony12", "Sony15", "Sony20"}},
    {"WHYNTER", {"Whynter"}},
};

// A fourth byte that is one bit away from the complement of the third reads as damage.
bool looks_damaged(const contract::Sample& sample) {
  const auto last = sample.parameters.find("E");
  if (last == sample.parameters.end()) return false;
  const auto wrong = static_cast<uint8_t>(sample.parameters.at("F") ^ ~last->second);
  return std::has_single_bit(wrong);
}

TEST(Matchers, LeaveEveryOtherProtocolAlone) {
  constexpr contract::Counts kSingleFrames = {.clean = 5, .received = 12, .repeated = 0};
  size_t named = 0;
  for (const std::string& protocol : contract::protocols()) {
    const auto own = std::ranges::find_if(
        kTypes, [&](const auto& row) { return std::ranges::count(row.second, protocol) != 0; });
    const std::string type = own != std::end(kTypes) ? own->first : "UNKNOWN";
    for (const contract::Sample& sample : contract::samples(protocol, 11, kSingleFrames)) {
      if (sample.set != contract::Set::kClean && sample.set != contract::Set::kReceived) continue;
      if (type != "UNKNOWN" && looks_damaged(sample)) continue;
      const std::string found = type_of(sample.durations);
      EXPECT_EQ(found.empty() ? "UNKNOWN" : found, type) << contract::describe(sample);
      if (type != "UNKNOWN") ++named;
    }
  }
  EXPECT_GT(named, std::size(kTypes));
}

TEST(Matchers, ForgiveWhatTheRestOfTheFrameVouchesFor) {
  const struct {
    const char* what;
    Durations frame;
    const char* expected;
  } cases[] = {
      {"lead-in mark of another protocol", with(kNec, 0, 4500), "SAMSUNG"},
      {"odd lead-in space", with(kNec, 1, 2250), "UNKNOWN"},
      {"last mark three times as long, complement holds", with(kNec, 66, 1670), "NEC"},
      {"the same, nothing to vouch for it", with(kNecPlain, 66, 1670), "UNKNOWN"},
      {"last mark cut", with(kJvc, 34, 260), "JVC"},
      {"mark long, its space short", with(with(kJvc, 6, 700), 7, kJvc[7] - 173), "JVC"},
      {"one space odd, complement holds", with(kNec, 5, kNec[5] + 200), "NEC"},
      {"one space odd, few symbols, no check", with(kJvc, 5, kJvc[5] + 300), "UNKNOWN"},
      {"one space between two symbols", with(kNec, 5, kNec[5] + 500), "UNKNOWN"},
      {"last mark of Sony too long", with(kSony, 24, 900), "UNKNOWN"},
      {"lead-in mark of Sony too long", with(kSony, 0, 3600), "UNKNOWN"},
  };
  for (const auto& [what, frame, expected] : cases) {
    EXPECT_EQ(type_of(frame), expected) << what << ": " << irp::csv(frame);
  }
}

TEST(Matchers, RefuseFramesWhoseChecksFail) {
  const Durations panasonic = sent("Panasonic", {{"D", 128}, {"S", 0}, {"F", 0x3D}});
  const Durations sanyo = sent("Aiwa", {{"D", 0x2A}, {"S", 5}, {"F", 0x10}});
  const Durations rc6 = sent("RC6", {{"D", 0}, {"F", 12}, {"T", 1}});
  const struct {
    const char* what;
    Durations frame;
  } cases[] = {
      {"Panasonic with another check byte", with(panasonic, 97, 432)},
      {"Panasonic with another maker", with(panasonic, 3, 1296)},
      {"Sanyo whose custom code lost its complement", with(sanyo, 3, 1650)},
      {"Sanyo whose key lost its complement", with(sanyo, 55, 1650)},
      {"LG with a wrong sum", sent_lg(0x88C0052)},
      {"NEC without its last symbol", cut(kNec, 65)},
      {"Sony with 11 bits", cut(kSony, 23)},
      {"RC5 with a half that has no counterpart", with(kRc5, 4, 1778)},
      {"RC6 that lost its end", cut(rc6, 29)},
      {"RC6 with a lead-in of NEC", with(rc6, 0, 4500)},
      {"JVC with the unit of NEC", sent("Dgtec", {{"D", 1}, {"F", 2}})},
      {"NEC repeat with the space of a frame", {9000, 4500, 560, 560, 560, 560, 560}},
      {"lamp", Durations(67, 300)},
      {"nothing but zeros", Durations(23, 0)},
  };
  for (const auto& [what, frame] : cases) {
    EXPECT_EQ(type_of(frame), "UNKNOWN") << what << ": " << irp::csv(frame);
  }
}

TEST(Matchers, WantAnEndAfterTheLastMark) {
  for (const Durations& frame : {kNec, kJvc, kSony, kRc5, kDish}) {
    EXPECT_NE(type_of(followed_by(frame, 12000)), "UNKNOWN") << irp::csv(frame);
    EXPECT_EQ(type_of(followed_by(frame, 600)), "UNKNOWN") << irp::csv(frame);
  }
  EXPECT_EQ(type_of({9000, 2250, 560, 12000}), "NEC");
  EXPECT_EQ(type_of({9000, 2250, 560, 600}), "");
}

TEST(Matchers, TakeCopiesOfADishFrameForOne) {
  Durations copies = kDish;
  for (int i = 0; i < 3; ++i) copies.insert(copies.end(), kDish.begin() + 1, kDish.end());
  EXPECT_EQ(answer(copies), "DISH 0000AB10 {16}");
  copies[37] = copies[37] > 2000 ? 1624 : 2842;  // one bit of the second copy
  EXPECT_EQ(type_of(copies), "UNKNOWN");
}

}  // namespace
