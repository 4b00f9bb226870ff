// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/protocols.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "lib/ir/analyzer.h"
#include "lib/ir/ir_hash.h"
#include "lib/ir/result.h"
#include "lib/liblog/logging.h"
#include "tests/lib/ir/frames.h"
#include "tests/support/irp.h"
#include "tests/support/receiver.h"

namespace {

using frames::Durations;

ir_packet packet_of(const Durations& durations) {
  ir_packet packet = {};
  std::copy(durations.begin(), durations.end(), packet.buf);
  packet.len = static_cast<uint8_t>(durations.size());
  return packet;
}

ir_t event_of(const Durations& durations) {
  return ir_event_of(packet_of(durations));
}

/// A frame as it arrives: from the first mark to the last.
Durations frame(const char* name, const irp::Parameters& parameters) {
  Durations out = irp::protocol(name).render(parameters).parts.front().durations;
  if (out.size() % 2 == 0) out.pop_back();
  return out;
}

// Collects what the decoders report; logs are captured without their source lines.
class Decoders : public testing::Test {
 protected:
  void SetUp() override {
    reset_analyzer();
    reset_analyzer();
    set_result_sink(
        [](const ir_result& result, void* self) {
          auto* test = static_cast<Decoders*>(self);
          test->lines_ += result.line;
          test->bits_ = result.bits;
        },
        this);
    set_loglevel(3);
    testing::internal::CaptureStderr();
  }

  void TearDown() override {
    testing::internal::GetCapturedStderr();
    set_loglevel(1);
    set_result_sink(nullptr, nullptr);
  }

  std::string taken_lines() { return std::exchange(lines_, {}); }

  static std::string taken_logs() {
    const std::string text = testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    return std::regex_replace(text, std::regex(R"(\(\d+\): )"), "(): ");
  }

  std::string lines_;
  uint32_t bits_ = 0;
};

std::string own_line(const char* name, const std::string& scancode) {
  std::string line = ":: ZARVO    :: ";
  line += name;
  line.resize(std::max(line.size(), size_t{15 + 13}), ' ');
  return line + " - scancode: 0x" + scancode + "\n";
}

std::string hash_text(const Durations& durations) {
  const ir_t event = event_of(durations);
  char text[16];
  std::snprintf(text, sizeof text, "%08X", ir_hash(event.buf, event.count, kHashMaxEdgeUs));
  return text;
}

struct FrameCase {
  const char* what;
  Durations durations;
  std::string line;
};

// One row per decoder and variant: what it reads from an exact frame, and what it says.
std::vector<FrameCase> frame_cases() {
  Durations sony12_with_space = frame("Sony12", {{"D", 17}, {"F", 21}});
  sony12_with_space.push_back(600);
  return {
      {"NEC: both complements right", frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}}),
       own_line("NEC32", "EF10FF00")},
      {"NEC: only the address's",
       frame("NEC1-f16", {{"D", 4}, {"S", 0xFB}, {"F", 0x10}, {"E", 0x11}}),
       own_line("NEC", "1110FB04")},
      {"NEC: neither", frame("NEC1-f16", {{"D", 4}, {"S", 9}, {"F", 0x10}, {"E", 0x11}}),
       own_line("NECX", "11100904")},
      {"NEC: Apple's second byte", frame("NEC1", {{"D", 238}, {"S", 0x87}, {"F", 2}}),
       own_line("NEC32 {Apple}", "FD0287EE")},
      {"NECX: the short lead", frame("NECx1", {{"D", 7}, {"S", 7}, {"F", 0x0B}}),
       own_line("NEC32", "F40B0707")},
      {"Sony, 12 bits: the last bit needs the final space", frame("Sony12", {{"D", 17}, {"F", 21}}),
       own_line("SONY", "00010015")},
      {"Sony, 12 bits with the final space", sony12_with_space, own_line("SONY", "00110015")},
      {"Sony, 15 bits", frame("Sony15", {{"D", 0x54}, {"F", 0x2D}}), own_line("SONY", "0054002D")},
      {"Sony, 20 bits", frame("Sony20", {{"D", 0x1A}, {"S", 0x49}, {"F", 0x2D}}),
       own_line("SONY", "001A492D")},
      {"RC5", frame("RC5", {{"D", 5}, {"F", 53}}), own_line("RC5", "00000535")},
      {"RC5, toggled", frame("RC5", {{"D", 5}, {"F", 53}, {"T", 1}}), own_line("RC5", "00000535")},
      {"RC5 with 7-bit commands", frame("RC5-7F", {{"D", 5}, {"F", 0x5A}, {"T", 1}}),
       own_line("RC5-SZ", "000022DA")},
      {"RC5 with 20 bits", frames::rc5x(0x20000 | 5 << 12 | 0x2A << 6 | 0x15),
       own_line("RC5X", "00052A15")},
      {"RC6", frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}}), own_line("MCE", "800F040D")},
      {"RC6, toggled", frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}, {"T", 1}}),
       own_line("MCE", "800F840D")},
      {"XMP", frames::xmp(0x13FF4415, 0x1D0F1200), own_line("XMP", "151F1200")},
      {"Nokia, 12 bits", frames::nokia(0xA53, 12), own_line("NOKIA12", "00000A53")},
      {"Nokia, 24 bits", frames::nokia(0xA5C3F0, 24), own_line("NOKIA", "00A5C3F0")},
      {"Nokia, 32 bits: the toggle is left out", frames::nokia(0xA5C3F01B, 32),
       own_line("NOKIA32", "A5C3701B")},
      {"TDC", frames::tdc(0xA35B), own_line("TDC", "000146B6")},
      {"ZARVO", frames::zarvo(0x2A, 1, 0x35),
       ":: ZARVO    :: ZARVO-Plex    - scancode: 0x00054135 :: "
       "{ID: 0x54  Device: 0x01  Command: 0x35}\n"},
      {"ZARVO: the longest profile name", frames::zarvo(0x7F, 4, 0xFF),
       ":: ZARVO    :: ZARVO-PS3/PS4 - scancode: 0x000FE4FF :: "
       "{ID: 0xFE  Device: 0x04  Command: 0xFF}\n"},
      {"ZARVO: a profile without a name", frames::zarvo(0, 10, 0x81),
       ":: ZARVO    :: ZARVO-        - scancode: 0x00000A81 :: "
       "{ID: 0x00  Device: 0x0A  Command: 0x81}\n"},
  };
}

TEST_F(Decoders, ReadExactFrames) {
  for (const FrameCase& c : frame_cases()) {
    SCOPED_TRACE(c.what);
    ir_t event = event_of(c.durations);
    ir_decode_packet(&event);
    EXPECT_EQ(taken_lines(), c.line) << irp::csv(c.durations);
  }
}

TEST_F(Decoders, ReadFramesThroughAReceiver) {
  for (const FrameCase& c : frame_cases()) {
    SCOPED_TRACE(c.what);
    Random random(1, c.what);
    for (int copy = 0; copy < 20; ++copy) {
      const Durations seen = receive(c.durations, random, fixed_receiver(20, 0.02));
      ir_t event = event_of(seen);
      ir_decode_packet(&event);
      EXPECT_EQ(taken_lines(), c.line) << irp::csv(seen);
    }
  }
}

// The last two bits choose the variant (a definition's number counts frames, not bits); the
// complemented command is put right, the address comes out one place too high. The hash of the
// frame follows the scancode.
TEST_F(Decoders, TellDenonFromSharp) {
  const struct {
    const char* protocol;
    const char* name;
  } kCases[] = {
      {"Denon{1}", "DENON{1}"},
      {"Denon{2}", "DENON{2}"},
      {"Sharp{1}", "SHARP{2}"},
      {"Sharp{2}", "SHARP{1}"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.protocol);
    const Durations clean = frame(c.protocol, {{"D", 0x0C}, {"F", 0x0F}});
    Random random(2, c.protocol);
    for (const Durations& durations : {clean, receive(clean, random, fixed_receiver(20, 0.02))}) {
      ir_t event = event_of(durations);
      ir_decode_packet(&event);
      std::string line = own_line(c.name, "0000180F");
      line.replace(line.size() - 1, 1, " : 0x" + hash_text(durations) + "\n");
      EXPECT_EQ(taken_lines(), line);
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
    EXPECT_EQ(ir_decode_packet(&event), static_cast<int>(c.matched));
    EXPECT_EQ(event.p.protocol, c.protocol);
    EXPECT_EQ(event.p.scancode, c.scancode);
    EXPECT_EQ(event.p.bits, c.bits);
    EXPECT_EQ(bits_, c.reported_bits);
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
    std::string logs, line;
  } kCases[] = {
      {"NEC, too short", RC_PROTO_NEC, Durations(66, 564),
       "[E] ir_nec_decode(): length mismatch expected 67 != 66\n", ""},
      {"NEC repeat", RC_PROTO_NEC, {9024, 2256, 564}, "", "NEC Repeat\n"},
      {"Sony, 13 bits: the number of durations is shown", RC_PROTO_SONY12, cut(sony, 27),
       "[W] ir_sony_decode(): Sony invalid bitcount 27\n", ""},
      {"Sony, nothing at all",
       RC_PROTO_SONY20,
       {},
       "[W] ir_sony_decode(): Sony invalid bitcount 0\n",
       ""},
      {"Sony", RC_PROTO_SONY15, sony,
       "[I] Device: 0x01     SubDevice: 0x00   Function: 0x02  ~Command: 0xFD  "
       "ScanCode: 0x00010002\n",
       own_line("SONY", "00010002")},
      {"Sharp, too short", RC_PROTO_SHARP, cut(sharp, 29),
       "[E] ir_denon_decode(): invalid bit count, expect 31 != 29\n", ""},
      {"XMP, everything wrong", RC_PROTO_XMP, frames::xmp(0x12345678, 0x00000001),
       "[E] ir_xmp_decode(): checksum errors sum1=0x3 sum2=0x0\n"
       "[W] ir_xmp_decode(): subaddress nibbles mismatch 0x13 != 0x00\n"
       "[W] ir_xmp_decode(): Warning: OEM nibbles 0x56. Expected 0x44\n",
       own_line("XMP", "78130001")},
      {"XMP, symbols out of range wrap",
       RC_PROTO_XMP,
       {210, 761, 210, 760 + 16 * 136, 0, 0, 900, 0},
       "[E] ir_xmp_decode(): checksum errors sum1=0xA sum2=0xF\n"
       "[W] ir_xmp_decode(): subaddress nibbles mismatch 0x1A != 0x00\n"
       "[W] ir_xmp_decode(): Warning: OEM nibbles 0x00. Expected 0x44\n",
       own_line("XMP", "001A0000")},
      {"RC5, too short: silent", RC_PROTO_RC5, {889, 889, 889}, "", ""},
      {"RC6", RC_PROTO_RC6_MCE, frame("MCE", {{"D", 4}, {"S", 15}, {"F", 13}, {"T", 1}}),
       "[I] MCE:   OEM1: 0x80   S: 0x800F   D: 0x04   F: 0x0D   scancode: 0x0800F840D  T= 1\n",
       own_line("MCE", "800F840D")},
      {"Nokia, 22 bits: a hash", RC_PROTO_NOKIA, cut(nokia, 25), "",
       own_line("NOKIA-??", hash_text(cut(nokia, 25)))},
      {"Nokia, no symbols: a hash",
       RC_PROTO_NOKIA,
       {412, 276, 164},
       "",
       own_line("NOKIA-??", "0B880050")},
      {"TDC, too short", RC_PROTO_TDC, cut(frames::tdc(0xA35B), 11),
       "[E] tdc_decode(): invalid number of bits expected: 17 != 8\n", ""},
      {"TDC", RC_PROTO_TDC, frames::tdc(0xA35B), "[I] F: 0x36  SDevice: 0x06  Command: 0x0A\n",
       own_line("TDC", "000146B6")},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    ir_t event = event_of(c.durations);
    EXPECT_EQ(ir_decode(&event, c.protocol, &event.p), 0);
    EXPECT_EQ(taken_logs(), c.logs);
    EXPECT_EQ(taken_lines(), c.line);
  }
}

TEST_F(Decoders, LeaveWhatNobodyClaimsToTheCatchAll) {
  ir_t event = event_of({9000, 4500, 560, 560, 560, 1690, 560});
  ir_prot result = {};
  EXPECT_EQ(ir_decode(&event, RC_PROTO_RC6_0, &result), -1);
  EXPECT_EQ(taken_lines(), own_line("UNKNOWN", "08D19C0B"));
  EXPECT_EQ(result.scancode, event.hash);
  EXPECT_EQ(event.p.scancode, 0U) << "the result went elsewhere";
  EXPECT_EQ(ir_encode(RC_PROTO_NEC, 1, &event, 10), 0);
}

// Fed edge by edge, the analyzers see every index one higher: the lead of an exact NEC frame is
// judged as its lead space, so that the frame is nobody's.
TEST_F(Decoders, CountBareEdgesAfterTheyArrived) {
  const Durations nec = frame("NEC1", {{"D", 0}, {"S", 255}, {"F", 0x10}});
  const std::vector<uint16_t> bare(nec.begin(), nec.end());
  EXPECT_EQ(ir_decode_buf(bare.data(), static_cast<uint8_t>(bare.size())), RC_PROTO_UNKNOWN);
  EXPECT_EQ(taken_lines().substr(0, 22), ":: ZARVO    :: UNKNOWN");
  const uint16_t rc5[] = {1778, 889, 889, 889, 1778};
  EXPECT_EQ(ir_decode_buf(rc5, std::size(rc5)), RC_PROTO_RC5);
  const std::vector<uint16_t> longest(255, 1000);
  ir_decode_buf(longest.data(), 255);
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
