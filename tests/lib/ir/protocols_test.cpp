// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/protocols.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/contract.h"
#include "tests/support/frames.h"
#include "tests/support/own_decoders.h"
#include "tests/support/receiver.h"

namespace {

using contract::frame;
using frames::Durations;
using Decoders = FreshAnalyzers;

/// The decoder that claims a protocol, or the catch-all.
const IR_PROTOCOL_HANDLER& decoder_of(uint32_t protocol_number) {
  const IR_PROTOCOL_HANDLER* found = nullptr;
  for (const protocol* p : decoders()) {
    const auto* handler = static_cast<const IR_PROTOCOL_HANDLER*>(p->iface);
    if ((handler->protocols >> protocol_number & 1) != 0) return *handler;
    if (handler->protocols == 0) found = handler;
  }
  return *found;
}

struct FrameCase {
  const char* what;
  Durations durations;
  const char *name, *scancode;
  const char* tail = "";
};

// One row per decoder and variant: what it reads from an exact frame, and what it says.
std::vector<FrameCase> frame_cases() {
  Durations sony12_with_space = frame("Sony12", {{"D", 17}, {"F", 21}});
  sony12_with_space.push_back(600);
  return {
      {"NEC: both complements", frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}}), "NEC32",
       "EF10FF00"},
      {"NEC: only the address's",
       frame("NEC1-f16", {{"D", 4}, {"S", 0xFB}, {"F", 0x10}, {"E", 0x11}}), "NEC", "1110FB04"},
      {"NEC: neither", frame("NEC1-f16", {{"D", 4}, {"S", 9}, {"F", 0x10}, {"E", 0x11}}), "NECX",
       "11100904"},
      {"NEC: Apple's second byte", frame("NEC1", {{"D", 238}, {"S", 0x87}, {"F", 2}}),
       "NEC32 {Apple}", "FD0287EE"},
      {"NECX: the short lead", frame("NECx1", {{"D", 7}, {"S", 7}, {"F", 0x0B}}), "NEC32",
       "F40B0707"},
      {"Sony: the last bit needs a space", frame("Sony12", {{"D", 17}, {"F", 21}}), "SONY",
       "00010015"},
      {"Sony with that space", sony12_with_space, "SONY", "00110015"},
      {"Sony, 15 bits", frame("Sony15", {{"D", 0x54}, {"F", 0x2D}}), "SONY", "0054002D"},
      {"Sony, 20 bits", frame("Sony20", {{"D", 0x1A}, {"S", 0x49}, {"F", 0x2D}}), "SONY",
       "001A492D"},
      {"RC5", frame("RC5", {{"D", 5}, {"F", 53}}), "RC5", "00000535"},
      {"RC5, toggled", frame("RC5", {{"D", 5}, {"F", 53}, {"T", 1}}), "RC5", "00000535"},
      {"RC5, 7-bit commands", frame("RC5-7F", {{"D", 5}, {"F", 0x5A}, {"T", 1}}), "RC5-SZ",
       "000022DA"},
      {"RC5, 20 bits", frames::rc5(0x20000 | 5 << 12 | 0x2A << 6 | 0x15, 18), "RC5X", "00052A15"},
      {"RC6", frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}}), "MCE", "800F040D"},
      {"RC6, toggled", frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}, {"T", 1}}), "MCE", "800F840D"},
      {"XMP", frames::xmp(0x13FF4415, 0x1D0F1200), "XMP", "151F1200"},
      {"Nokia, 12 bits", frames::nokia(0xA53, 12), "NOKIA12", "00000A53"},
      {"Nokia, 24 bits", frames::nokia(0xA5C3F0, 24), "NOKIA", "00A5C3F0"},
      {"Nokia32 leaves its toggle out", frames::nokia(0xA5C3F01B, 32), "NOKIA32", "A5C3701B"},
      {"TDC", frames::tdc(0xA35B), "TDC", "000146B6"},
      {"ZARVO", frames::zarvo(0x2A, 1, 0x35), "ZARVO-Plex", "00054135",
       " :: {ID: 0x54  Device: 0x01  Command: 0x35}"},
      {"ZARVO, the longest name", frames::zarvo(0x7F, 4, 0xFF), "ZARVO-PS3/PS4", "000FE4FF",
       " :: {ID: 0xFE  Device: 0x04  Command: 0xFF}"},
      {"ZARVO, no name", frames::zarvo(0, 10, 0x81), "ZARVO-", "00000A81",
       " :: {ID: 0x00  Device: 0x0A  Command: 0x81}"},
  };
}

TEST_F(Decoders, ReadFramesAsSentAndAsReceived) {
  for (const FrameCase& c : frame_cases()) {
    const std::string line = own_line(c.name, c.scancode, c.tail);
    EXPECT_EQ(decoded(c.durations).lines, line) << c.what;
    Random random(1, c.what);
    for (int copy = 0; copy < 20; ++copy) {
      const Durations seen = receive(c.durations, random, fixed_receiver(20, 0.02));
      EXPECT_EQ(decoded(seen).lines, line) << c.what << ": " << irp::csv(seen);
    }
  }
}

// The last two bits choose the variant (a definition's number counts frames, not bits); the
// complemented command is put right, the address comes out one place too high. The hash of the
// frame follows the scancode.
TEST_F(Decoders, TellDenonFromSharp) {
  const std::pair<const char*, const char*> kCases[] = {{"Denon{1}", "DENON{1}"},
                                                        {"Denon{2}", "DENON{2}"},
                                                        {"Sharp{1}", "SHARP{2}"},
                                                        {"Sharp{2}", "SHARP{1}"}};
  for (const auto& [protocol, name] : kCases) {
    const Durations clean = frame(protocol, {{"D", 0x0C}, {"F", 0x0F}});
    Random random(2, protocol);
    for (const Durations& durations : {clean, receive(clean, random, fixed_receiver(20, 0.02))}) {
      const std::string line = own_line(name, "0000180F", " : 0x" + hash_text(durations));
      EXPECT_EQ(decoded(durations).lines, line) << protocol;
    }
  }
}

TEST_F(Decoders, SeeAPacketsFirst200Durations) {
  const ir_packet packet = packet_of(Durations(250, 560), 108);
  ir_t event = ir_event_of(packet);
  EXPECT_EQ(event.count, 200);
  EXPECT_EQ(event.buf[199], 560);
  EXPECT_EQ(event.te, 108);
  EXPECT_EQ(ir_event_of(packet_of({1, 2, 3})).count, 3);

  ir_t counted = event;
  counted.count = 255;
  ir_decode_packet(&event);
  ir_decode_packet(&counted);
  EXPECT_EQ(counted.p.scancode, event.p.scancode);
  counted.count = 201;
  ir_decode(&counted, RC_PROTO_UNKNOWN, &counted.p);
  EXPECT_EQ(counted.p.scancode, event.p.scancode);
}

TEST_F(Decoders, FillTheResult) {
  const struct {
    const char* what;
    Durations durations;
    uint32_t matched, protocol, scancode, bits, reported_bits;
    std::optional<int> returned = {};  // the scancode where nothing else is said
  } kCases[] = {
      {"NEC", frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}}), RC_PROTO_NEC, RC_PROTO_NEC32,
       0xEF10FF00, 99, 32},
      {"NEC repeat: nothing", {9024, 2256, 564}, RC_PROTO_NEC, 77, 88, 99, 0, 0},
      {"Sony", frame("Sony15", {{"D", 1}, {"F", 2}}), RC_PROTO_SONY12, RC_PROTO_SONY15, 0x10002, 99,
       15},
      {"RC6 leaves the protocol", frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}}), RC_PROTO_RC6_MCE,
       77, 0x800F040D, 32, 32},
      {"Nokia leaves the protocol", frames::nokia(0xA53, 12), RC_PROTO_NOKIA, 77, 0xA53, 12, 12,
       31},
      {"TDC calls itself ZARVO", frames::tdc(0xA35B), RC_PROTO_TDC, RC_PROTO_ZARVO, 0x146B6, 99,
       17},
      {"ZARVO", frames::zarvo(0x2A, 1, 0x35), RC_PROTO_ZARVO, RC_PROTO_ZARVO, 0x54135, 11, 11},
      {"unknown: its hash", {14000}, RC_PROTO_UNKNOWN, RC_PROTO_UNKNOWN, 5381 * 33 + 'G', 99, 0, 0},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ir_t event = event_of(c.durations);
    event.p = {.protocol = static_cast<rc_proto>(77), .scancode = 88, .hash = 0, .bits = 99};
    int matched = -1;
    const Reported found = reported([&] { matched = ir_decode_packet(&event); });
    EXPECT_EQ(matched, static_cast<int>(c.matched));
    EXPECT_EQ(event.p.protocol, c.protocol);
    EXPECT_EQ(event.p.scancode, c.scancode);
    EXPECT_EQ(event.p.bits, c.bits);
    EXPECT_EQ(found.bits, c.reported_bits);
    EXPECT_EQ(found.scancode, found.name == "NEC Repeat" ? 0 : c.scancode);
    reported([&] {
      EXPECT_EQ(decoder_of(c.matched).decode(&event, &event.p),
                c.returned.value_or(static_cast<int>(c.scancode)));
    });
  }
}

/// What the decoder of a protocol reports and leaves as the scancode, which was 88: "RC5 00000535".
std::string read(rc_proto protocol, const Durations& durations, int* returned = nullptr) {
  ir_t event = event_of(durations);
  event.p.scancode = 88;
  const Reported found = reported([&] {
    const int code = decoder_of(protocol).decode(&event, &event.p);
    if (returned != nullptr) *returned = code;
  });
  char scancode[16];
  std::snprintf(scancode, sizeof scancode, " %08X", event.p.scancode);
  return found.name + scancode;
}

// Every bit of a frame, in the order it is sent, has one place in the scancode, or none.
TEST_F(Decoders, PutEveryBitInItsPlace) {
  constexpr int kNone = -1;
  const struct {
    const char* what;
    rc_proto protocol;
    std::function<Durations(uint64_t)> frame_of;
    std::vector<int> places;
  } kCases[] = {
      {"NEC",
       RC_PROTO_NECX,
       [](uint64_t bits) { return frames::nec(static_cast<uint32_t>(bits)); },
       {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
        16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31}},
      {"Sony, 12 bits",
       RC_PROTO_SONY12,
       [](uint64_t bits) { return frames::sony(static_cast<uint32_t>(bits), 12); },
       {0, 1, 2, 3, 4, 5, 6, 16, 17, 18, 19, 20}},
      {"Sony, 15 bits",
       RC_PROTO_SONY15,
       [](uint64_t bits) { return frames::sony(static_cast<uint32_t>(bits), 15); },
       {0, 1, 2, 3, 4, 5, 6, 16, 17, 18, 19, 20, 21, 22, 23}},
      {"Sony, 20 bits",
       RC_PROTO_SONY20,
       [](uint64_t bits) { return frames::sony(static_cast<uint32_t>(bits), 20); },
       {0, 1, 2, 3, 4, 5, 6, 16, 17, 18, 19, 20, 8, 9, 10, 11, 12, 13, 14, 15}},
      {"Denon, whose device loses its highest bit",
       RC_PROTO_DENON,
       [](uint64_t bits) { return frames::denon(static_cast<uint32_t>(bits) << 2); },
       {9, 10, 11, 12, kNone, 0, 1, 2, 3, 4, 5, 6, 7}},
      {"RC5, 11 bits",
       RC_PROTO_RC5,
       [](uint64_t bits) { return frames::rc5(static_cast<uint32_t>(bits), 11); },
       {12, 11, 10, 9, 8, 5, 4, 3, 2, 1, 0}},
      {"RC5, its toggle left out",
       RC_PROTO_RC5,
       [](uint64_t bits) { return frames::rc5(static_cast<uint32_t>(bits), 12); },
       {kNone, 12, 11, 10, 9, 8, 5, 4, 3, 2, 1, 0}},
      {"RC5-SZ",
       RC_PROTO_RC5,
       [](uint64_t bits) { return frames::rc5(static_cast<uint32_t>(bits), 13); },
       {kNone, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0}},
      {"RC5X",
       RC_PROTO_RC5,
       [](uint64_t bits) { return frames::rc5(static_cast<uint32_t>(bits), 18); },
       {kNone, 20, 19, 18, 17, 16, 13, 12, 11, 10, 9, 8, 5, 4, 3, 2, 1, 0}},
      {"XMP, the first half",
       RC_PROTO_XMP,
       [](uint64_t bits) { return frames::xmp(static_cast<uint32_t>(bits), 0); },
       {23,    22,    21,    20,    kNone, kNone, kNone, kNone, 19,    18,    17,
        16,    kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone,
        kNone, kNone, 31,    30,    29,    28,    27,    26,    25,    24}},
      {"XMP, the second half",
       RC_PROTO_XMP,
       [](uint64_t bits) { return frames::xmp(0, static_cast<uint32_t>(bits)); },
       {kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone,
        kNone, kNone, kNone, kNone, kNone, 15,    14,    13,    12,    11,    10,
        9,     8,     7,     6,     5,     4,     3,     2,     1,     0}},
      {"ZARVO",
       RC_PROTO_ZARVO,
       [](uint64_t bits) {
         const auto all = static_cast<uint32_t>(bits);
         return frames::zarvo(all >> 12, all >> 8 & 0xF, all & 0xFF);
       },
       {19, 18, 17, 16, 15, 14, 13, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0}},
      {"Nokia32, its toggle left out",
       RC_PROTO_NOKIA,
       [](uint64_t bits) { return frames::nokia(bits, 32); },
       {31,    30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16,
        kNone, 14, 13, 12, 11, 10, 9,  8,  7,  6,  5,  4,  3,  2,  1,  0}},
  };
  for (const auto& c : kCases) {
    const auto scancode_of = [&c](uint64_t bits) {
      ir_t event = event_of(c.frame_of(bits));
      reported([&] { ir_decode(&event, c.protocol, &event.p); });
      return event.p.scancode;
    };
    const uint32_t none_set = scancode_of(0);
    for (size_t bit = 0; bit < c.places.size(); ++bit) {
      const uint32_t place = c.places[bit] == kNone ? 0 : uint32_t{1} << c.places[bit];
      EXPECT_EQ(scancode_of(uint64_t{1} << (c.places.size() - 1 - bit)), none_set ^ place)
          << c.what << ", bit " << bit;
    }
  }
}

// Where a decoder tells one symbol from another: the last duration of one, the first of the next.
TEST_F(Decoders, SplitSymbolsAtTheirLimits) {
  const Durations nec = frames::nec(0);
  const Durations sony = frames::sony(0, 12);
  const Durations denon = frames::denon(0);
  const Durations rc5 = frames::rc5(0, 12);
  const Durations mce = frame("MCE", {{"D", 0}, {"S", 0}, {"F", 0}});
  const Durations tdc = frames::tdc(0x1FFFF);
  const Durations zarvo = frames::zarvo(0, 0, 0);
  const Durations xmp = frames::xmp(0, 0);
  const Durations nokia = frames::nokia(0, 12);
  const struct {
    const char* what;
    rc_proto protocol;
    const Durations& frame;
    size_t index;
    int duration;
    const char* text;
  } kCases[] = {
      {"NEC, the longest 0", RC_PROTO_NEC, nec, 3, 1128, "NECX 00000000"},
      {"NEC, the shortest 1", RC_PROTO_NEC, nec, 3, 1129, "NECX 00000001"},
      {"NEC, the lead's space is no bit", RC_PROTO_NEC, nec, 1, 564, "NECX 00000000"},
      {"Sony, the longest 0", RC_PROTO_SONY12, sony, 2, 900, "SONY 00000000"},
      {"Sony, the shortest 1", RC_PROTO_SONY12, sony, 2, 901, "SONY 00000001"},
      {"Denon, the longest 0", RC_PROTO_DENON, denon, 1, 1584, "DENON{1} 00000000"},
      {"Denon, the shortest 1", RC_PROTO_DENON, denon, 1, 1585, "DENON{1} 00000200"},
      {"Denon, the longest 1", RC_PROTO_DENON, denon, 1, 2111, "DENON{1} 00000200"},
      {"Denon, too long for a 1", RC_PROTO_DENON, denon, 1, 2112, "DENON{1} 00000000"},
      {"RC5, the shortest two halves", RC_PROTO_RC5, rc5, 2, 1334, "RC5 00000000"},
      {"RC5, the longest half", RC_PROTO_RC5, rc5, 3, 1333, "RC5 00000000"},
      {"RC6, the shortest two halves", RC_PROTO_RC6_MCE, mce, 11, 667, "MCE 80000000"},
      {"RC6, the longest half", RC_PROTO_RC6_MCE, mce, 15, 666, "MCE 80000000"},
      {"TDC, the shortest two halves", RC_PROTO_TDC, tdc, 0, 473, "TDC 0003FFFE"},
      {"TDC, the longest half", RC_PROTO_TDC, tdc, 1, 472, "TDC 0003FFFE"},
      {"ZARVO, the longest 1", RC_PROTO_ZARVO, zarvo, 3, 1259, "ZARVO-Kodi 00080000"},
      {"ZARVO, the shortest 0", RC_PROTO_ZARVO, zarvo, 3, 1260, "ZARVO-Kodi 00000000"},
      {"ZARVO, the longest space of a low profile", RC_PROTO_ZARVO, zarvo, 17, 4900,
       "ZARVO-Kodi 00000000"},
      {"ZARVO, the longest half", RC_PROTO_ZARVO, zarvo, 19, 1260, "ZARVO-Kodi 00000000"},
      {"XMP, the longest 0", RC_PROTO_XMP, xmp, 1, 835 + 135 - 210, "XMP 00000000"},
      {"XMP, the shortest 1", RC_PROTO_XMP, xmp, 1, 835 + 136 - 210, "XMP 00100000"},
      {"XMP, the shortest gap", RC_PROTO_XMP, xmp, 17, 11000, "XMP 00000000"},
      {"XMP, a symbol of 10999", RC_PROTO_XMP, xmp, 15, 10999, "XMP 0C000000"},
      {"Nokia, the longest 0", RC_PROTO_NOKIA, nokia, 3, 272 + 168 - 164, "NOKIA12 00000000"},
      {"Nokia, the shortest 1", RC_PROTO_NOKIA, nokia, 3, 272 + 169 - 164, "NOKIA12 00000400"},
  };
  for (const auto& c : kCases) {
    Durations durations = c.frame;
    durations[c.index] = c.duration;
    EXPECT_EQ(read(c.protocol, durations), c.text) << c.what;
  }
}

// Frames that are too short, too long, or just right.
TEST_F(Decoders, CountTheDurations) {
  const Durations nec = frames::nec(0x80000000);
  const Durations sony = frames::sony(0x80000, 20);
  const Durations denon = frames::denon(1 << 9);
  const Durations nokia = frames::nokia(0x10000001, 32);
  const auto hash = [](Durations durations) { return "NOKIA-?? " + hash_text(durations); };
  const auto first = [](Durations durations, size_t count) {
    durations.resize(count);
    return durations;
  };
  const auto rc5 = [](int bits) { return frames::rc5(0x15555U >> (18 - bits), bits); };
  const struct {
    rc_proto protocol;
    Durations durations;
    std::string text;
    std::optional<int> returned = {};  // the scancode where nothing else is said
  } kCases[] = {
      {RC_PROTO_NEC, first(nec, 2), " 00000058", 0},
      {RC_PROTO_NEC, first(nec, 3), "NEC Repeat 00000058", 0},
      {RC_PROTO_NEC, first(nec, 4), " 00000058", 0},
      {RC_PROTO_NEC, first(nec, 66), " 00000058", 0},
      {RC_PROTO_NEC, nec, "NECX 00000001"},
      {RC_PROTO_NEC, first(nec, 68), " 00000058", 0},
      {RC_PROTO_SONY12, first(sony, 24), " 00000058", 0},
      {RC_PROTO_SONY12, first(sony, 25), "SONY 00000001"},
      {RC_PROTO_SONY12, first(sony, 26), "SONY 00000001"},
      {RC_PROTO_SONY12, first(sony, 31), "SONY 00000001"},
      {RC_PROTO_SONY12, first(sony, 41), "SONY 00000001"},
      {RC_PROTO_SONY12, first(sony, 43), " 00000058", 0},
      {RC_PROTO_DENON, first(denon, 30), " 00000000"},
      {RC_PROTO_DENON, denon, "DENON{1} 00000001"},
      {RC_PROTO_DENON, first(denon, 32), " 00000000"},
      {RC_PROTO_RC5, {889, 889}, " 00000058"},
      {RC_PROTO_RC5, rc5(10), " 00000058"},
      {RC_PROTO_RC5, rc5(14), " 00000058"},
      {RC_PROTO_RC5, rc5(17), " 00000058"},
      {RC_PROTO_TDC, first(frames::tdc(0x1FFFF), 31), " 00000000"},
      {RC_PROTO_TDC, frames::tdc(0x1FFFF), "TDC 0003FFFE"},
      {RC_PROTO_NOKIA, first(nokia, 3), hash(first(nokia, 3)), 31},
      {RC_PROTO_NOKIA, first(nokia, 13), hash(first(nokia, 13)), 31},
      {RC_PROTO_NOKIA, first(nokia, 14), "NOKIA12 00000400", 31},
      {RC_PROTO_NOKIA, first(nokia, 15), "NOKIA12 00000100", 31},
      {RC_PROTO_NOKIA, first(nokia, 16), hash(first(nokia, 16)), 31},
      {RC_PROTO_NOKIA, first(nokia, 26), "NOKIA 00400000", 31},
      {RC_PROTO_NOKIA, nokia, "NOKIA32 10000001", 31},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::to_string(c.protocol) + ' ' + std::to_string(c.durations.size()));
    int returned = 0;
    const std::string text = read(c.protocol, c.durations, &returned);
    EXPECT_EQ(text, c.text);
    const auto scancode = std::stoul(text.substr(text.rfind(' ')), nullptr, 16);
    EXPECT_EQ(returned, c.returned.value_or(static_cast<int>(scancode)));
  }
}

// Programs that use the library hold the numbers, not the names.
TEST(Protocols, KeepTheirNumbers) {
  constexpr rc_proto kByNumber[] = {
      RC_PROTO_UNKNOWN,   RC_PROTO_OTHER,     RC_PROTO_RC5,       RC_PROTO_RC5X_20,
      RC_PROTO_RC5_SZ,    RC_PROTO_JVC,       RC_PROTO_SONY12,    RC_PROTO_SONY15,
      RC_PROTO_SONY20,    RC_PROTO_NEC,       RC_PROTO_NECX,      RC_PROTO_NEC32,
      RC_PROTO_SANYO,     RC_PROTO_MCIR2_KBD, RC_PROTO_MCIR2_MSE, RC_PROTO_RC6_0,
      RC_PROTO_RC6_6A_20, RC_PROTO_RC6_6A_24, RC_PROTO_RC6_6A_32, RC_PROTO_RC6_MCE,
      RC_PROTO_SHARP,     RC_PROTO_XMP,       RC_PROTO_CEC,       RC_PROTO_IMON,
      RC_PROTO_RCMM12,    RC_PROTO_RCMM24,    RC_PROTO_RCMM32,    RC_PROTO_ORTEK,
      rc_proto{28},       RC_PROTO_DENON,     RC_PROTO_ZARVO,     RC_PROTO_NOKIA,
      RC_PROTO_TDC,       RC_PROTO_AMINO};
  for (uint32_t number = 0; number < std::size(kByNumber); ++number) {
    EXPECT_EQ(kByNumber[number], number);
  }
}

// What a user of the registry reads from it.
TEST_F(Decoders, AreRegisteredWithWhatTheyClaim) {
  const struct {
    const char* name;
    std::vector<unsigned> claims;
    uint32_t carrier, min_timeout;
  } kCases[] = {
      {"XMP", {21}, 38000, 20000},    {"SONY", {6, 7, 8}, 38000, 0},  {"DENON", {20, 29}, 38000, 0},
      {"NEC", {9, 10, 11}, 38000, 0}, {"ir_prot_none", {}, 38000, 0}, {"RC5", {2}, 36000, 0},
      {"RC6", {19}, 36000, 1554},     {"ZARVO", {30}, 36000, 25000},  {"NOKIA", {31}, 38000, 0},
      {"ZARVO", {32}, 36000, 89000},
  };
  const std::vector<const protocol*> found = decoders();
  ASSERT_EQ(found.size(), std::size(kCases));
  for (size_t i = 0; i < found.size(); ++i) {
    const auto& handler = *static_cast<const IR_PROTOCOL_HANDLER*>(found[i]->iface);
    uint64_t mask = 0;
    for (const unsigned number : kCases[i].claims) mask |= uint64_t{1} << number;
    EXPECT_STREQ(found[i]->name, kCases[i].name);
    EXPECT_EQ(handler.protocols, mask) << kCases[i].name;
    EXPECT_EQ(handler.carrier, kCases[i].carrier) << kCases[i].name;
    EXPECT_EQ(handler.min_timeout, kCases[i].min_timeout) << kCases[i].name;
  }
}

// Frames that a decoder refuses or doubts: what it logs, and whether a line follows.
TEST_F(Decoders, SayWhatIsWrongWithAFrame) {
  const auto cut = [](Durations durations, size_t entries) {
    durations.resize(entries);
    return durations;
  };
  const Durations sharp = frame("Sharp", {{"D", 12}, {"F", 15}});
  const Durations sony = frame("Sony15", {{"D", 1}, {"F", 2}});
  const Durations nokia = frames::nokia(0xA5C3F0, 24);
  const struct {
    const char* what;
    rc_proto protocol;
    Durations durations;
    std::string log, line;
  } kCases[] = {
      {"NEC, too short", RC_PROTO_NEC, Durations(66, 564),
       "[E] ir_nec_decode(#): length mismatch expected 67 != 66\n", ""},
      {"NEC repeat", RC_PROTO_NEC, {9024, 2256, 564}, "", "NEC Repeat\n"},
      {"Sony, 13 bits: the number of durations is shown", RC_PROTO_SONY12, cut(sony, 27),
       "[W] ir_sony_decode(#): Sony invalid bitcount 27\n", ""},
      {"Sony, nothing", RC_PROTO_SONY20, Durations(),
       "[W] ir_sony_decode(#): Sony invalid bitcount 0\n", ""},
      {"Sony", RC_PROTO_SONY15, sony,
       "[I] Device: 0x01     SubDevice: 0x00   Function: 0x02  ~Command: 0xFD  "
       "ScanCode: 0x00010002\n",
       own_line("SONY", "00010002")},
      {"Sharp, too short", RC_PROTO_SHARP, cut(sharp, 29),
       "[E] ir_denon_decode(#): invalid bit count, expect 31 != 29\n", ""},
      {"XMP, everything wrong", RC_PROTO_XMP, frames::xmp(0x12345678, 0x00000001),
       "[E] ir_xmp_decode(#): checksum errors sum1=0x3 sum2=0x0\n"
       "[W] ir_xmp_decode(#): subaddress nibbles mismatch 0x13 != 0x00\n"
       "[W] ir_xmp_decode(#): Warning: OEM nibbles 0x56. Expected 0x44\n",
       own_line("XMP", "78130001")},
      {"XMP, symbols out of range wrap",
       RC_PROTO_XMP,
       {210, 761, 210, 760 + 16 * 136, 0, 0, 900, 0},
       "[E] ir_xmp_decode(#): checksum errors sum1=0xA sum2=0xF\n"
       "[W] ir_xmp_decode(#): subaddress nibbles mismatch 0x1A != 0x00\n"
       "[W] ir_xmp_decode(#): Warning: OEM nibbles 0x00. Expected 0x44\n",
       own_line("XMP", "001A0000")},
      {"XMP as it should be", RC_PROTO_XMP, frames::xmp(0x13FF4415, 0x1D0F1200), "",
       own_line("XMP", "151F1200")},
      {"XMP, half of its maker", RC_PROTO_XMP, frames::xmp(0x13FF0455, 0x1D0F1200),
       "[W] ir_xmp_decode(#): Warning: OEM nibbles 0x04. Expected 0x44\n",
       own_line("XMP", "551F1200")},
      {"the other half", RC_PROTO_XMP, frames::xmp(0x13FF4055, 0x1D0F1200),
       "[W] ir_xmp_decode(#): Warning: OEM nibbles 0x40. Expected 0x44\n",
       own_line("XMP", "551F1200")},
      {"RC5, too short: silent", RC_PROTO_RC5, {889, 889, 889}, "", ""},
      {"RC6", RC_PROTO_RC6_MCE, frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}, {"T", 1}}),
       "[I] MCE:   OEM1: 0x80   S: 0x800F   D: 0x04   F: 0x0D   scancode: 0x0800F840D  T= 1\n",
       own_line("MCE", "800F840D")},
      {"Nokia, 22 bits: a hash", RC_PROTO_NOKIA, cut(nokia, 25), "",
       own_line("NOKIA-??", hash_text(cut(nokia, 25)))},
      {"Nokia, no symbols: a hash", RC_PROTO_NOKIA, cut(nokia, 3), "",
       own_line("NOKIA-??", "0B880050")},
      {"TDC, too short", RC_PROTO_TDC, cut(frames::tdc(0xA35B), 11),
       "[E] tdc_decode(#): invalid number of bits expected: 17 != 8\n", ""},
      {"TDC", RC_PROTO_TDC, frames::tdc(0xA35B), "[I] F: 0x36  SDevice: 0x06  Command: 0x0A\n",
       own_line("TDC", "000146B6")},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ir_t event = event_of(c.durations);
    const Reported found = reported([&] { EXPECT_EQ(ir_decode(&event, c.protocol, &event.p), 0); });
    EXPECT_EQ(found.log, c.log);
    EXPECT_EQ(found.lines, c.line);
  }
}

TEST_F(Decoders, LeaveWhatNobodyClaimsToTheCatchAll) {
  ir_t event = event_of({9000, 4500, 560, 560, 560, 1690, 560});
  ir_prot result = {};
  const Reported found =
      reported([&] { EXPECT_EQ(ir_decode(&event, RC_PROTO_RC6_0, &result), -1); });
  EXPECT_EQ(found.lines, own_line("UNKNOWN", "08D19C0B"));
  EXPECT_EQ(result.scancode, event.hash);
  EXPECT_EQ(event.p.scancode, 0U) << "the result went elsewhere";
  EXPECT_EQ(ir_encode(RC_PROTO_NEC, 1, &event, 10), 0);
}

// Fed edge by edge, the analyzers see every index one higher: the lead of an exact NEC frame is
// judged as its lead space, so that the frame is nobody's.
TEST_F(Decoders, CountBareEdgesAfterTheyArrived) {
  const auto decode = [](const Durations& durations) {
    const std::vector<uint16_t> bare(durations.begin(), durations.end());
    return ir_decode_buf(bare.data(), static_cast<uint8_t>(bare.size()));
  };
  const Reported found = reported([&] {
    EXPECT_EQ(decode(frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}})), RC_PROTO_UNKNOWN);
  });
  EXPECT_EQ(found.lines,
            own_line("UNKNOWN", hash_text(frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}}))));
  reported([&] { EXPECT_EQ(decode({1778, 889, 889, 889, 1778}), RC_PROTO_RC5); });
  reported([&] { decode(Durations(255, 1000)); });  // the longest
}

TEST(Manchester, ReadsLongAndShortDurations) {
  const struct {
    const char* what;
    std::vector<uint16_t> durations;
    uint32_t bit_count, seed;
    uint32_t bits, collected;
    int end;
  } kCases[] = {
      {"nothing", {}, 8, 5, 5, 0, 0},
      {"no bits wanted", {889}, 0, 5, 5, 0, 0},
      {"long ones invert", {1778, 1778, 1778}, 8, 1, 0b1010, 3, 3},
      {"short pairs repeat", {889, 889, 889, 889}, 8, 1, 0b111, 2, 4},
      {"a short one that ends the list is no bit", {889, 889, 889}, 8, 1, 0b11, 1, 2},
      {"unless its index is odd", {1778, 889}, 8, 0, 0b11, 2, 3},
      {"exactly between is short", {1333, 1333, 1334}, 8, 0, 0b01, 2, 3},
      {"as many as wanted", {1778, 1778, 1778}, 2, 0, 0b10, 2, 2},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    uint32_t bits = c.seed;
    uint32_t collected = 99;
    EXPECT_EQ(manchester_decode(c.durations.data(), static_cast<int>(c.durations.size()),
                                c.bit_count, &bits, &collected, 1778, 889),
              c.end);
    EXPECT_EQ(bits, c.bits);
    EXPECT_EQ(collected, c.collected);
  }
}

}  // namespace
