// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/protocols.h"

#include <gtest/gtest.h>

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
      {"RC5, 20 bits", frames::rc5x(0x20000 | 5 << 12 | 0x2A << 6 | 0x15), "RC5X", "00052A15"},
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

TEST_F(Decoders, FillTheResult) {
  const struct {
    const char* what;
    Durations durations;
    uint32_t matched, protocol, scancode, bits, reported_bits;
  } kCases[] = {
      {"NEC", frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}}), RC_PROTO_NEC, RC_PROTO_NEC32,
       0xEF10FF00, 99, 32},
      {"NEC repeat: nothing", {9024, 2256, 564}, RC_PROTO_NEC, 77, 88, 99, 0},
      {"Sony", frame("Sony15", {{"D", 1}, {"F", 2}}), RC_PROTO_SONY12, RC_PROTO_SONY15, 0x10002, 99,
       15},
      {"RC6 leaves the protocol", frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}}), RC_PROTO_RC6_MCE,
       77, 0x800F040D, 32, 32},
      {"Nokia leaves the protocol", frames::nokia(0xA53, 12), RC_PROTO_NOKIA, 77, 0xA53, 12, 12},
      {"TDC calls itself ZARVO", frames::tdc(0xA35B), RC_PROTO_TDC, RC_PROTO_ZARVO, 0x146B6, 99,
       17},
      {"ZARVO", frames::zarvo(0x2A, 1, 0x35), RC_PROTO_ZARVO, RC_PROTO_ZARVO, 0x54135, 11, 11},
      {"unknown: its hash", {14000}, RC_PROTO_UNKNOWN, RC_PROTO_UNKNOWN, 5381 * 33 + 'G', 99, 0},
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
  EXPECT_TRUE(found.lines.starts_with(":: ZARVO    :: UNKNOWN")) << found.lines;
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
