// SPDX-License-Identifier: GPL-3.0-or-later
// The pulse-distance protocols, from their public IRP definitions. Of the rows with the same
// number of bursts the one that verifies most stands first.
#include <algorithm>

#include "lib/ir/DecodeIR/recognisers/gap_engine.h"
#include "lib/ir/DecodeIR/recognisers/gap_rules.h"

namespace gap {
namespace {

// --- On the wire: unit in µs, lead-in, mark, spaces of zero and one, symbols ------------------
constexpr coding kNec{564, {16, 8}, 1, 1, 3, 32};
constexpr coding kNecx{564, {8, 8}, 1, 1, 3, 32};
constexpr coding kNec48{564, {16, 8}, 1, 1, 3, 48};
constexpr coding kNec24{550, {16, 8}, 1, 1, 3, 24};
constexpr coding kAiwa{555, {16, 8}, 1, 1, 3, 42};
constexpr coding kIodata{550, {16, 8}, 1, 1, 3, 40};
constexpr coding kKeeprite{570, {16, 8}, 1, 1, 3, 35};
constexpr coding kAnthem{605, {8000 / 605.0F, 4000 / 605.0F}, 1, 1, 3, 32};
constexpr coding kAkord{477, {18, 8}, 1, 1, 2, 32};
constexpr coding kLg{560, {15.2F, 7.6F}, 1, 1, 3, 28};
constexpr coding kLgShortLead{500, {6.4F, 19.5F}, 1, 1, 3, 28};
constexpr coding kCoolix{554, {8, 8}, 1, 1, 3, 48};
constexpr coding kJvc{.unit = 527,
                      .lead = {16, 8},
                      .mark = 1,
                      .zero = 1,
                      .one = 3,
                      .bits = 16,
                      .fastest = 0.93F,
                      .slowest = 1.04F};
constexpr coding kJvcRepeat{.unit = 527,
                            .mark = 1,
                            .zero = 1,
                            .one = 3,
                            .bits = 16,
                            .min_before = 9000,
                            .fastest = 0.93F,
                            .slowest = 1.04F};
constexpr coding kProton{500, {16, 8}, 1, 1, 3, 16, {8, {1, 8}}};
constexpr coding kBose{500, {2, 3}, 1, 1, 3, 16};
constexpr coding kKonka{500, {6, 6}, 1, 3, 5, 16, {16, {1, 8}}};
constexpr coding kBalboa{.unit = 500,
                         .lead = {9, 5},
                         .mark = 2,
                         .zero = 2,
                         .one = 4,
                         .bits = 16,
                         .min_gap = 4200,
                         .min_before = 4200};
constexpr coding kAmazonFan{520, {9, 9}, 1, 3, 5, 33, {17, {9, 9}}};
constexpr coding kGiCable{490, {18, 9}, 1, 4.5F, 9, 16};
constexpr coding kGi4dtv{992, {5, 2}, 1, 1, 3, 12};
constexpr coding kGiRg{1000, {5, 3}, 1, 1, 3, 16};
constexpr coding kEmerson{850, {4, 4}, 1, 1, 3, 24};
constexpr coding kPanasonicOld{833, {4, 4}, 1, 1, 3, 22};
constexpr coding kSamsung20{564, {8, 8}, 1, 1, 3, 20};
constexpr coding kSamsung36{560, {4500 / 560.0F, 4500 / 560.0F}, 1, 1, 3, 36, {16, {1, 9}}};
constexpr coding kSamsungSmtG{497, {4497 / 497.0F, 4497 / 497.0F}, 1, 1, 3,
                              36,  {16, {1, 4497 / 497.0F}}};
constexpr coding kKaseikyo{
    .unit = 425, .lead = {8, 4}, .mark = 1, .zero = 1, .one = 3, .bits = 48, .fastest = 0.87F};
constexpr coding kKaseikyo56{
    .unit = 425, .lead = {8, 4}, .mark = 1, .zero = 1, .one = 3, .bits = 56, .fastest = 0.87F};
constexpr coding kRca{
    .unit = 475, .lead = {8, 8}, .mark = 1, .zero = 2, .one = 4, .bits = 24, .min_gap = 5500};
constexpr coding kRcaOld{.unit = 475,
                         .lead = {40, 8},
                         .mark = 1,
                         .zero = 2,
                         .one = 4,
                         .bits = 24,
                         .stop = 2,
                         .min_gap = 5500};
constexpr coding kDigivision{182, {20, 10}, 3, 3, 6, 40, {24, {20, 10}}};
constexpr coding kDyson{770, {3, 1}, 1, 1, 2, 15};
constexpr coding kLogitech{127, {31, 36}, 3, 4, 8, 24};
constexpr coding kInterVideo{300, {10, 5}, 1, 1, 3, 17};
constexpr coding kSim2{400, {6, 7}, 3, 3, 7, 16};
constexpr coding kMetz19{106, {8, 22}, 4, 9, 16, 19};
constexpr coding kWhynter{750, {}, 1, 1, 3, 33, {1, {4, 4}}};
constexpr coding kLego{.unit = 158,
                       .lead = {1, 6.5F},
                       .mark = 1,
                       .zero = 1.66F,
                       .one = 3.5F,
                       .bits = 16,
                       .min_gap = 5000};
constexpr coding kPaceMss{630, {1, 5}, 1, 7, 11, 10, {0, {1, 5}}};
constexpr coding kBarco{10, {1, 25}, 1, 5, 15, 11, {11, {1, 25}}};
constexpr coding kRevox{15, {1, 29}, 1, 9, 19, 11, {11, {1, 29}}};
// The gap of these two is as long as the lead-in's space: the stop mark of one frame is the
// lead-in of the next, which then seems to begin without one.
constexpr coding kDish{
    .unit = 404, .lead = {1, 15}, .mark = 1, .zero = 7, .one = 4, .bits = 16, .min_gap = 5300};
constexpr coding kDishNext{.unit = 404,
                           .mark = 1,
                           .zero = 7,
                           .one = 4,
                           .bits = 16,
                           .min_gap = 5300,
                           .min_before = 5500,
                           .max_before = 6600};
constexpr coding kDishplayer{
    .unit = 535, .lead = {1, 11}, .mark = 1, .zero = 5, .one = 3, .bits = 13, .min_gap = 5100};
constexpr coding kDishplayerNext{.unit = 535,
                                 .mark = 1,
                                 .zero = 5,
                                 .one = 3,
                                 .bits = 13,
                                 .min_gap = 5100,
                                 .min_before = 5300,
                                 .max_before = 6400};

// Without a lead-in the gaps on both sides have to be real ones.
constexpr coding leadless(float unit, float mark, float zero, float one, int bits, float gap) {
  return {.unit = unit,
          .mark = mark,
          .zero = zero,
          .one = one,
          .bits = bits,
          .min_gap = gap,
          .min_before = gap};
}
constexpr coding kSharp = leadless(264, 1, 3, 7, 15, 12000);
constexpr coding kSharpOld = leadless(264, 1, 3, 7, 12, 12000);
constexpr coding kMitsubishi = leadless(300, 1, 3, 7, 16, 12000);
// Alike but for the marks.
constexpr coding kAkai{.unit = 289,
                       .mark = 1,
                       .zero = 2.6F,
                       .one = 6.3F,
                       .bits = 10,
                       .min_gap = 3600,
                       .min_before = 3600,
                       .fastest = 0.94F,
                       .slowest = 1.06F,
                       .longest_mark = 447};
constexpr coding kMatsui{.unit = 525,
                         .mark = 1,
                         .zero = 1,
                         .one = 3,
                         .bits = 10,
                         .min_gap = 7000,
                         .min_before = 7000,
                         .fastest = 0.94F,
                         .slowest = 1.06F,
                         .shortest_mark = 447};
constexpr coding kThomson = leadless(505, 1, 4, 9, 12, 13000);
constexpr coding kLumagen{.unit = 416,
                          .mark = 1,
                          .zero = 6,
                          .one = 12,
                          .bits = 12,
                          .min_gap = 9500,
                          .min_before = 9500,
                          .fastest = 0.95F,
                          .slowest = 1.06F};
constexpr coding kRecs80 = leadless(158, 1, 31, 47, 11, 15000);
constexpr coding kRecs80Slow = leadless(180, 1, 31, 47, 11, 15000);
constexpr coding kVelleman = leadless(700, 1, 5060 / 700.0F, 7590 / 700.0F, 11, 15000);
constexpr coding kViewstar = leadless(337, 1, 8, 5, 5, 5000);
constexpr coding kArcher = leadless(12, 1, 275, 4700 / 12.0F, 5, 9000);
constexpr coding kJerrold = leadless(44, 1, 7500 / 44.0F, 11500 / 44.0F, 5, 18000);
constexpr coding kPid0001 = leadless(24, 1, 9314 / 24.0F, 13486 / 24.0F, 5, 18000);
constexpr coding kPid0004 = leadless(12, 1, 130 / 12.0F, 31, 6, 15000);
constexpr coding kPid0083 = leadless(3000, 1, 3, 7, 10, 40000);

// --- Held keys -------------------------------------------------------------------------------
constexpr ditto kNecDitto{{16, 4}};
constexpr ditto kNecxDitto{{8, 8}, 1};
constexpr ditto kAiwaDitto{{16, 8}};
constexpr ditto kAkordDitto{{18, 5}};
constexpr ditto kAmazonFanDitto{{9074 / 520.0F, 5}};
constexpr ditto kDigivisionDitto{{20, 20}};
constexpr ditto kGiCableDitto{{18, 4.5F}};
constexpr ditto kTeacDitto{{8, 8}};
constexpr ditto kKathreinDitto{{16, 8}, 8};
constexpr ditto kDysonDitto{{3, 1}, 1};

// --- What the bits mean ------------------------------------------------------------------------
constexpr row kRows[] = {
    // 2 + 32 symbols, NEC and its relatives
    {.name = "NEC",
     .wire = &kNec,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {16, 8},
     .check_bits = 8,
     .finish = readNec,
     .repeat = &kNecDitto},
    {.name = "NECx",
     .wire = &kNecx,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {16, 8},
     .check_bits = 8,
     .finish = readNecx,
     .repeat = &kNecxDitto},
    {.name = "Akord",
     .wire = &kAkord,
     .msb = true,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {16, 8},
     .mirrors = {{16, 24, 8}},
     .repeat = &kAkordDitto},
    {.name = "Anthem",
     .wire = &kAnthem,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {16, 8},
     .check_bits = 8,
     .check = anthemSum,
     .finish = readAnthem},
    {.name = "48-NEC",
     .wire = &kNec48,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {16, 8},
     .second = {32, 8},
     .mirrors = {{16, 24, 8}, {32, 40, 8}},
     .finish = read48Nec,
     .extras = {{"E", {32, 8}}},
     .repeat = &kNecDitto},
    {.name = "Coolix48",
     .wire = &kCoolix,
     .msb = true,
     .device = {0, 8},
     .subDevice = {16, 8},
     .obc = {32, 8},
     .mirrors = {{0, 8, 8}, {16, 24, 8}, {32, 40, 8}}},
    {.name = "Aiwa",
     .wire = &kAiwa,
     .device = {0, 8},
     .subDevice = {8, 5},
     .obc = {26, 8},
     .mirrors = {{0, 13, 8}, {8, 21, 5}, {26, 34, 8}},
     .repeat = &kAiwaDitto},
    {.name = "Kathrein",
     .wire = &kNec24,
     .device = {0, 4},
     .obc = {8, 8},
     .mirrors = {{0, 4, 4}, {8, 16, 8}},
     .repeat = &kKathreinDitto},
    {.name = "Dgtec",
     .wire = &kNec24,
     .device = {0, 8},
     .obc = {8, 8},
     .mirrors = {{8, 16, 8}},
     .repeat = &kNecDitto},
    {.name = "IODATA",
     .wire = &kIodata,
     .device = {7, 7},
     .subDevice = {14, 7},
     .obc = {28, 8},
     .finish = readIodata},
    {.name = "Keeprite",
     .wire = &kKeeprite,
     .device = {0, 8},
     .subDevice = {8, 4},
     .obc = {12, 8},
     .constants = {{23, 9, 0xA0}, {32, 3, 2}}},
    {.name = "LG",
     .wire = &kLg,
     .msb = true,
     .device = {0, 8},
     .obc = {8, 16},
     .check_bits = 4,
     .check = lgSum,
     .repeat = &kNecDitto},
    {.name = "LG",
     .wire = &kLgShortLead,
     .msb = true,
     .device = {0, 8},
     .obc = {8, 16},
     .check_bits = 4,
     .check = lgSum},
    {.name = "JVC", .wire = &kJvc, .device = {0, 8}, .obc = {8, 8}, .variant = true},
    {.name = "JVC", .wire = &kJvcRepeat, .device = {0, 8}, .obc = {8, 8}},
    {.name = "Proton", .wire = &kProton, .device = {0, 8}, .obc = {8, 8}},

    // 48 and 56 bits that begin with a maker's code
    {.name = "Panasonic",
     .wire = &kKaseikyo,
     .device = {16, 8},
     .subDevice = {24, 8},
     .obc = {32, 8},
     .constants = {{0, 8, 2}, {8, 8, 32}},
     .check_bits = 8,
     .check = xorOfThree},
    {.name = "JVC-48",
     .wire = &kKaseikyo,
     .device = {16, 8},
     .subDevice = {24, 8},
     .obc = {32, 8},
     .constants = {{0, 8, 3}, {8, 8, 1}},
     .check_bits = 8,
     .check = xorOfThree},
    {.name = "Denon-K",
     .wire = &kKaseikyo,
     .device = {20, 4},
     .subDevice = {24, 4},
     .obc = {28, 12},
     .constants = {{0, 8, 84}, {8, 8, 50}, {16, 4, 0}},
     .check_bits = 8,
     .check = denonKXor},
    {.name = "SharpDVD",
     .wire = &kKaseikyo,
     .device = {20, 4},
     .subDevice = {24, 8},
     .obc = {32, 8},
     .constants = {{0, 8, 170}, {8, 8, 90}, {16, 4, 15}},
     .check_bits = 4,
     .check = sharpDvdXor,
     .extras = {{"E", {40, 4}}}},
    {.name = "Teac-K",
     .wire = &kKaseikyo,
     .device = {20, 4},
     .subDevice = {24, 8},
     .obc = {32, 8},
     .constants = {{0, 8, 67}, {8, 8, 83}},
     .check_bits = 8,
     .check = teacKSum,
     .extras = {{"X", {16, 4}}},
     .repeat = &kTeacDitto},
    {.name = "Mitsubishi-K",
     .wire = &kKaseikyo,
     .device = {20, 8},
     .subDevice = {28, 8},
     .obc = {36, 8},
     .constants = {{0, 8, 35}, {8, 8, 203}, {16, 4, 6}},
     .check_bits = 4,
     .check = mitsubishiKSum},
    {.name = "Fujitsu",
     .wire = &kKaseikyo,
     .device = {24, 8},
     .subDevice = {32, 8},
     .obc = {40, 8},
     .constants = {{0, 8, 20}, {8, 8, 99}, {16, 4, 0}},
     .extras = {{"E", {20, 4}}}},
    {.name = "Kaseikyo",
     .wire = &kKaseikyo,
     .device = {20, 4},
     .subDevice = {24, 8},
     .obc = {32, 8},
     .check_bits = 8,
     .check = kaseikyoXor,
     .finish = readKaseikyo,
     .extras = {{"E", {40, 4}}}},
    {.name = "Panasonic2",
     .wire = &kKaseikyo56,
     .device = {16, 8},
     .subDevice = {24, 8},
     .obc = {40, 8},
     .constants = {{0, 8, 2}, {8, 8, 32}},
     .check_bits = 8,
     .check = xorOfFour,
     .extras = {{"X", {32, 8}}}},
    {.name = "JVC-56",
     .wire = &kKaseikyo56,
     .device = {16, 8},
     .subDevice = {24, 8},
     .obc = {40, 8},
     .constants = {{0, 8, 3}, {8, 8, 1}},
     .check_bits = 8,
     .check = xorOfFour,
     .extras = {{"X", {32, 8}}}},
    {.name = "Fujitsu-56",
     .wire = &kKaseikyo56,
     .device = {24, 8},
     .subDevice = {32, 8},
     .obc = {48, 8},
     .constants = {{0, 8, 20}, {8, 8, 99}, {16, 4, 0}},
     .extras = {{"E", {20, 4}}, {"X", {40, 8}}}},
    {.name = "Kaseikyo56",
     .wire = &kKaseikyo56,
     .device = {20, 4},
     .subDevice = {24, 8},
     .obc = {40, 8},
     .check_bits = 4,
     .check = makerParity,
     .finish = readKaseikyo,
     .extras = {{"E", {32, 8}}, {"G", {48, 8}}}},

    // Halves that repeat or complement each other
    {.name = "GuangZhou",
     .wire = &kDigivision,
     .device = {2, 6},
     .subDevice = {16, 8},
     .obc = {8, 8},
     .constants = {{0, 2, 3}},
     .mirrors = {{0, 24, 2}, {2, 26, 6, true}, {8, 32, 8}},
     .repeat = &kDigivisionDitto},
    {.name = "Digivision",
     .wire = &kDigivision,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {24, 8},
     .mirrors = {{24, 32, 8}},
     .extras = {{"Dev3", {16, 8}}},
     .repeat = &kDigivisionDitto},
    {.name = "Amazon_Fan",
     .wire = &kAmazonFan,
     .msb = true,
     .device = {0, 8},
     .obc = {8, 8},
     .constants = {{16, 1, 0}},
     .mirrors = {{0, 17, 8, true}, {8, 25, 8, true}},
     .repeat = &kAmazonFanDitto},
    {.name = "Samsung36",
     .wire = &kSamsung36,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {20, 8},
     .mirrors = {{20, 28, 8}},
     .extras = {{"E", {16, 4}}}},
    // Its remotes often send a unit of 500 µs, as Samsung-SMT-G does.
    {.name = "Samsung36",
     .wire = &kSamsungSmtG,
     .device = {0, 8},
     .subDevice = {8, 8},
     .obc = {20, 8},
     .mirrors = {{20, 28, 8}},
     .extras = {{"E", {16, 4}}}},
    {.name = "Samsung-SMT-G",
     .wire = &kSamsungSmtG,
     .msb = true,
     .device = {0, 16},
     .subDevice = {16, 4},
     .obc = {20, 16}},
    {.name = "RCA",
     .wire = &kRca,
     .msb = true,
     .device = {0, 4},
     .obc = {4, 8},
     .mirrors = {{0, 12, 4}, {4, 16, 8}}},
    {.name = "RCA",
     .wire = &kRcaOld,
     .msb = true,
     .device = {0, 4},
     .obc = {4, 8},
     .mirrors = {{0, 12, 4}, {4, 16, 8}},
     .variant = true},
    {.name = "Emerson",
     .wire = &kEmerson,
     .device = {0, 6},
     .obc = {6, 6},
     .mirrors = {{0, 12, 6}, {6, 18, 6}}},
    {.name = "Sampo",
     .wire = &kEmerson,
     .device = {0, 6},
     .subDevice = {12, 6},
     .obc = {6, 6},
     .mirrors = {{6, 18, 6}}},
    {.name = "Logitech",
     .wire = &kLogitech,
     .device = {0, 4},
     .obc = {8, 8},
     .mirrors = {{0, 4, 4}, {8, 16, 8}}},
    {.name = "Old Panasonic",
     .wire = &kPanasonicOld,
     .device = {0, 5},
     .obc = {5, 6},
     .mirrors = {{0, 11, 5}, {5, 16, 6}}},
    {.name = "Metz19",
     .wire = &kMetz19,
     .msb = true,
     .device = {1, 3},
     .obc = {7, 6},
     .mirrors = {{1, 4, 3}, {7, 13, 6}},
     .extras = {{"T", {0, 1}}}},
    {.name = "Bose", .wire = &kBose, .msb = true, .obc = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "Balboa", .wire = &kBalboa, .obc = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "pid-0083",
     .wire = &kPid0083,
     .check_bits = 5,
     .check = pairsDiffer,
     .finish = readPid0083},

    // Check nibbles, parities and fixed bits
    {.name = "Lego",
     .wire = &kLego,
     .msb = true,
     .device = {2, 2},
     .obc = {4, 8},
     .check_bits = 4,
     .check = legoXor,
     .extras = {{"T", {0, 1}}, {"E", {1, 1}}}},
    {.name = "G.I.Cable",
     .wire = &kGiCable,
     .device = {8, 4},
     .obc = {0, 8},
     .check_bits = 4,
     .check = giCableSum,
     .repeat = &kGiCableDitto},
    {.name = "G.I.4DTV",
     .wire = &kGi4dtv,
     .device = {6, 2},
     .obc = {0, 6},
     .check_bits = 3,
     .check = gi4dtvParity,
     .finish = readGi4dtv},
    {.name = "InterVideo RC-201",
     .wire = &kInterVideo,
     .obc = {1, 6},
     .constants = {{0, 1, 0}, {7, 10, 768}}},
    {.name = "Lumagen",
     .wire = &kLumagen,
     .msb = true,
     .device = {0, 4},
     .obc = {5, 7},
     .check_bits = 1,
     .check = lumagenParity},
    {.name = "Denon", .wire = &kSharp, .device = {0, 5}, .obc = {5, 8}, .constants = {{13, 2, 0}}},
    {.name = "Denon",
     .wire = &kSharp,
     .device = {0, 5},
     .obc = {5, 8},
     .constants = {{13, 2, 3}},
     .finish = readComplemented},
    {.name = "Sharp", .wire = &kSharp, .device = {0, 5}, .obc = {5, 8}, .constants = {{13, 2, 1}}},
    {.name = "Sharp",
     .wire = &kSharp,
     .device = {0, 5},
     .obc = {5, 8},
     .constants = {{13, 2, 2}},
     .finish = readComplemented},
    {.name = "Sharp_Old",
     .wire = &kSharpOld,
     .device = {0, 3},
     .obc = {3, 8},
     .constants = {{11, 1, 0}}},
    {.name = "Sharp_Old",
     .wire = &kSharpOld,
     .device = {0, 3},
     .obc = {3, 8},
     .constants = {{11, 1, 1}},
     .finish = readComplemented},
    {.name = "Whynter", .wire = &kWhynter, .msb = true, .obc = {1, 32}, .constants = {{0, 1, 0}}},
    {.name = "Revox", .wire = &kRevox, .device = {1, 4}, .obc = {5, 6}, .constants = {{0, 1, 0}}},
    {.name = "RECS80",
     .wire = &kRecs80,
     .msb = true,
     .device = {2, 3},
     .obc = {5, 6},
     .constants = {{0, 1, 1}},
     .extras = {{"T", {1, 1}}}},
    {.name = "RECS80-0068",
     .wire = &kRecs80Slow,
     .msb = true,
     .device = {2, 3},
     .obc = {5, 6},
     .constants = {{0, 1, 1}},
     .extras = {{"T", {1, 1}}}},
    {.name = "Velleman",
     .wire = &kVelleman,
     .msb = true,
     .device = {2, 3},
     .obc = {5, 6},
     .constants = {{0, 1, 1}},
     .extras = {{"T", {1, 1}}}},

    // Nothing but the timing
    {.name = "Konka", .wire = &kKonka, .msb = true, .device = {0, 8}, .obc = {8, 8}},
    {.name = "GI RG",
     .wire = &kGiRg,
     .msb = true,
     .device = {8, 8},
     .subDevice = {6, 2},
     .obc = {0, 6}},
    {.name = "Samsung20",
     .wire = &kSamsung20,
     .device = {0, 6},
     .subDevice = {6, 6},
     .obc = {12, 8}},
    {.name = "Dyson",
     .wire = &kDyson,
     .device = {0, 7},
     .obc = {7, 6},
     .extras = {{"T", {13, 2, true}}},
     .repeat = &kDysonDitto},
    {.name = "SIM2", .wire = &kSim2, .device = {0, 8}, .obc = {8, 8}},
    {.name = "Pace MSS",
     .wire = &kPaceMss,
     .msb = true,
     .device = {1, 1},
     .obc = {2, 8},
     .extras = {{"T", {0, 1}}}},
    {.name = "Barco", .wire = &kBarco, .device = {0, 5}, .obc = {5, 6}},
    {.name = "Dish_Network",
     .wire = &kDish,
     .device = {11, 5},
     .subDevice = {6, 5},
     .obc = {0, 6, true}},
    {.name = "Dish_Network",
     .wire = &kDishNext,
     .device = {11, 5},
     .subDevice = {6, 5},
     .obc = {0, 6, true}},
    {.name = "Dishplayer",
     .wire = &kDishplayer,
     .msb = true,
     .device = {11, 2},
     .subDevice = {6, 5},
     .obc = {0, 6}},
    {.name = "Dishplayer",
     .wire = &kDishplayerNext,
     .msb = true,
     .device = {11, 2},
     .subDevice = {6, 5},
     .obc = {0, 6}},
    {.name = "Mitsubishi", .wire = &kMitsubishi, .device = {0, 8}, .obc = {8, 8}},
    {.name = "Akai", .wire = &kAkai, .device = {0, 3}, .obc = {3, 7}},
    {.name = "Matsui", .wire = &kMatsui, .device = {0, 3}, .obc = {3, 7}},
    {.name = "Thomson7",
     .wire = &kThomson,
     .device = {0, 4},
     .obc = {5, 7},
     .extras = {{"T", {4, 1}}}},
    {.name = "Viewstar", .wire = &kViewstar, .obc = {0, 5}, .finish = readComplemented},
    {.name = "Archer", .wire = &kArcher, .obc = {0, 5}},
    {.name = "Jerrold", .wire = &kJerrold, .obc = {0, 5}},
    {.name = "pid-0001", .wire = &kPid0001, .msb = true, .obc = {0, 5}},
    {.name = "pid-0004", .wire = &kPid0004, .msb = true, .obc = {0, 6}},
};

constexpr size_t kRowCount = std::size(kRows);
constexpr int kMostBursts = 100;

/// The rows by their number of bursts.
struct row_index {
  std::array<const row*, kRowCount> rows{};
  std::array<uint8_t, kMostBursts + 2> first{};  // of each number of bursts

  constexpr row_index() {
    size_t at = 0;
    for (int bursts = 0; bursts <= kMostBursts; ++bursts) {
      first[static_cast<size_t>(bursts)] = static_cast<uint8_t>(at);
      for (const row& candidate : kRows) {
        if (candidate.wire->bursts() == bursts) rows[at++] = &candidate;
      }
    }
    first[kMostBursts + 1] = static_cast<uint8_t>(at);
  }
};

constexpr row_index kIndex;
static_assert(kIndex.first[kMostBursts + 1] == kRowCount, "a row is longer than a frame may be");

}  // namespace

std::span<const row* const> rows_of(int bursts) {
  if (bursts < 0 || bursts > kMostBursts) return {};
  const auto at = static_cast<size_t>(bursts);
  return std::span(kIndex.rows)
      .subspan(kIndex.first[at], static_cast<size_t>(kIndex.first[at + 1]) - kIndex.first[at]);
}

}  // namespace gap
