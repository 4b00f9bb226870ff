// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/message.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/irp.h"

namespace {

using Sections = std::vector<irp::Section>;

/// "0110 1" -> bits
std::vector<bool> bits(std::string_view text) {
  std::vector<bool> found;
  for (const char c : text) {
    if (c != ' ') found.push_back(c == '1');
  }
  return found;
}

/// Bytes as bits, least significant first or most.
enum class Order { kLsb, kMsb };
std::vector<bool> bytes(Order order, std::initializer_list<int> values) {
  std::vector<bool> found;
  for (const int value : values) {
    for (int i = 0; i < 8; ++i)
      found.push_back((value >> (order == Order::kLsb ? i : 7 - i) & 1) != 0);
  }
  return found;
}

std::string text(const std::optional<irp::Message>& message) {
  if (!message) return "none";
  if (!message->check) return "check fails";
  std::string found = message->name;
  for (const auto& [name, value] : message->fields) {
    found += " " + name + "=" + std::to_string(value);
  }
  return found;
}

std::string read(const Sections& signal) {
  static const irp::MessageReader reader(irp::protocols());
  return text(reader.read(signal));
}

const auto kCoolix = bytes(Order::kMsb, {0xB2, 0x4D, 0x3F, 0xC0, 0x00, 0xFF});
const auto kGree1 = bits("11010100 10110000 00000110 00001010 010");
const auto kGree2 = bits("00000000 00000010 00000000 00000110");
const auto kAux = bytes(Order::kLsb, {0xC3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0x05});

TEST(Message, ReadsDefinitionsBackwards) {
  const auto inverted = [](std::vector<bool> of) {
    of.flip();
    return of;
  };
  const auto midea = bytes(Order::kMsb, {0xA1, 0xA0, 0x65, 0xFF, 0xFF, 0x4B});
  const struct {
    const char* what;
    Sections signal;
    const char* message;
  } kCases[] = {
      {"copies",
       {{{4400, 4400}, kCoolix, 5200}, {{4380, 4410}, kCoolix, 0}},
       "Coolix48 D=178 F=0 S=63"},
      {"the copy was cut",
       {{{4400, 4400}, kCoolix, 5200}, {{4380, 4410}, bits("1011"), 0}},
       "Coolix48 D=178 F=0 S=63"},
      {"the lead-in was missed", {{{}, kCoolix, 0}}, "Coolix48 D=178 F=0 S=63"},
      {"a copy that is none",
       {{{4400, 4400}, kCoolix, 5200}, {{4400, 4400}, bytes(Order::kMsb, {1, 2, 3, 4, 5, 6}), 0}},
       "none"},
      {"an inverse",
       {{{4400, 4400}, midea, 5200}, {{4400, 4400}, inverted(midea), 0}},
       "Midea A=161 B=160 C=101 D=255 E=255"},
      {"a sum of nibbles over two sections",
       {{{9000, 4500}, kGree1, 20000}, {{}, kGree2, 0}},
       "Gree A=11 B=2 C=13 D=0 E=96 G=80 H=0 I=0 J=64 L=0 M=0"},
      {"a spike in the gap",
       {{{9000, 4500}, kGree1, 8000}, {{200}, {}, 11400}, {{}, kGree2, 0}},
       "Gree A=11 B=2 C=13 D=0 E=96 G=80 H=0 I=0 J=64 L=0 M=0"},
      {"behind something else",
       {{{4350, 4450}, bits("0101"), 40000}, {{9000, 4500}, kGree1, 20000}, {{}, kGree2, 0}},
       "Gree A=11 B=2 C=13 D=0 E=96 G=80 H=0 I=0 J=64 L=0 M=0"},
      {"half of it", {{{9000, 4500}, kGree1, 0}}, "none"},
      {"another gap", {{{9000, 4500}, kGree1, 5000}, {{}, kGree2, 0}}, "none"},
      {"another lead-in", {{{4500, 4500}, kGree1, 20000}, {{}, kGree2, 0}}, "none"},
      {"a sum that is wrong", {{{9000, 4500}, inverted(kAux), 0}}, "none"},
      {"constants, but a complement that is wrong",
       {{{3280, 1640}, bytes(Order::kLsb, {0x14, 0x63, 0x00, 0x10, 0x10, 0x02, 0x02}), 0}},
       "check fails"},
      {"a code that the decoders name",
       {{{9000, 4500}, bytes(Order::kLsb, {4, 251, 8, 247}), 0}},
       "none"},
      {"nothing", {}, "none"},
      {"marks alone", {{{9000, 4500}, {}, 20000}, {{560}, {}, 0}}, "none"},
  };
  for (const auto& test : kCases) EXPECT_EQ(read(test.signal), test.message) << test.what;
}

TEST(Message, EveryBitOfASumCounts) {
  const auto name = [](const std::vector<bool>& of) {
    return read({{{9000, 4500}, of, 0}}).substr(0, 7);
  };
  ASSERT_EQ(name(kAux), "AUX-104");
  for (size_t i = 0; i < kAux.size(); ++i) {
    auto changed = kAux;
    changed[i] = !changed[i];
    EXPECT_EQ(name(changed), "none") << i;
  }
}

TEST(Message, GapAndLeadInTellTwinsApart) {
  const auto first = bytes(Order::kLsb, {2, 32, 224, 4, 0, 0, 0, 6});
  auto second = bytes(Order::kLsb, {2, 32, 224, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 6});
  const auto pair = [&](int gap_us) {
    return read({{{3440, 1720}, first, gap_us}, {{3440, 1720}, second, 0}}).substr(0, 9);
  };
  EXPECT_EQ(pair(10000), "Panasonic");
  EXPECT_EQ(pair(29000), "Daikin-64");

  const auto message = bytes(Order::kLsb, {35, 203, 38, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 21});
  EXPECT_EQ(read({{{3440, 1720}, message, 0}}).substr(0, 10), "TCL-112 A1");
  EXPECT_EQ(read({{{3228, 1705}, message, 0}}).substr(0, 10), "TCL-112 A1");
  EXPECT_EQ(read({{{3080, 1580}, message, 0}}).substr(0, 11), "TCL-112-490");
}

TEST(Message, ANewDefinitionIsANewMessage) {
  irp::Protocols protocols;
  std::istringstream text(
      "#!decoded\nOld\t{38k,400}<1,-1|1,-3>(8,-4,7:8,X:8,~X:8,1,-100m)*[X:0..255]\n"
      "#!messages\nNew\t{38k,400,msb}<1,-1|1,-3>(8,-4,7:8,X:4:4,X:-4,(X^5):8,1,-100m)*[X:0..255]"
      "\n");
  ASSERT_TRUE(protocols.add(text).empty());
  const irp::MessageReader reader(protocols);
  EXPECT_EQ(::text(reader.read(Sections{{{3200, 1600}, bits("00000111 1010 0011 10101001"), 0}})),
            "New X=172");
  EXPECT_EQ(::text(reader.read(Sections{{{3200, 1600}, bytes(Order::kLsb, {7, 1, 254}), 0}})),
            "none");
}

}  // namespace
