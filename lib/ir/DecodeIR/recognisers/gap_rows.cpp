// SPDX-License-Identifier: GPL-3.0-or-later
// The pulse-distance protocols, from their public IRP definitions. Of the rows that fit a frame the
// one that verifies most wins.
#include <algorithm>

#include "lib/ir/DecodeIR/recognisers/gap_engine.h"
#include "lib/ir/DecodeIR/recognisers/gap_rules.h"

namespace gap {
namespace {

// The tables are laid out by hand, to be read as tables.
// clang-format off

// --- On the wire: unit in µs, lead-in, mark, spaces of zero and one, symbols ------------------
constexpr coding kNec{564, {16, 8}, 1, 1, 3, 32};
constexpr coding kNecSlow = coding{690, {16, 8}, 1, 1, 3, 32}.clock(0.93F, 1.08F);
constexpr coding kNecx{564, {8, 8}, 1, 1, 3, 32};
constexpr coding kNec48{564, {16, 8}, 1, 1, 3, 48};
constexpr coding kNec24{550, {16, 8}, 1, 1, 3, 24};
constexpr coding kAiwa{555, {16, 8}, 1, 1, 3, 42};
constexpr coding kIodata{550, {16, 8}, 1, 1, 3, 40};
constexpr coding kKeeprite{570, {16, 8}, 1, 1, 3, 35};
constexpr coding kAnthem{605, {8000 / 605.0F, 4000 / 605.0F}, 1, 1, 3, 32};
constexpr coding kAkord{477, {18, 8}, 1, 1, 2, 32};
constexpr coding kLg{560, {15.2F, 7.6F}, 1, 1, 3, 28};
constexpr coding kLgFast{512, {17, 8}, 1, 1, 3, 28};
constexpr coding kLgShortLead{500, {6.4F, 19.5F}, 1, 1, 3, 28};
constexpr coding kCoolix{554, {8, 8}, 1, 1, 3, 48};
constexpr coding kJvc = coding{527, {16, 8}, 1, 1, 3, 16}.clock(0.945F, 1.04F);
constexpr coding kJvcRepeat = coding{527, {}, 1, 1, 3, 16}.gaps(kGapUs, 9000).clock(0.945F, 1.04F);
constexpr coding kProton = coding{500, {16, 8}, 1, 1, 3, 16, {8, {1, 8}}}.clock(0.93F, 1.11F);
constexpr coding kBose{500, {2, 3}, 1, 1, 3, 16};
constexpr coding kKonka = coding{500, {6, 6}, 1, 3, 5, 16, {16, {1, 8}}}.clock(0.96F, 1.04F);
constexpr coding kBalboa = coding{500, {9, 5}, 2, 2, 4, 16}.gaps(4200, 4200);
constexpr coding kAmazonFan{520, {9, 9}, 1, 3, 5, 33, {17, {9, 9}}};
constexpr coding kGiCable{490, {18, 9}, 1, 4.5F, 9, 16};
constexpr coding kGi4dtv = coding{992, {5, 2}, 1, 1, 3, 12}.clock(0.95F, 1.05F);
constexpr coding kGiRg = coding{1000, {5, 3}, 1, 1, 3, 16}.clock(0.96F, 1.04F);
constexpr coding kEmerson{850, {4, 4}, 1, 1, 3, 24};
constexpr coding kPanasonicOld{833, {4, 4}, 1, 1, 3, 22};
constexpr coding kSamsung20 = coding{564, {8, 8}, 1, 1, 3, 20}.clock(0.97F, 1.03F);
constexpr coding kSamsung36{560, {4500 / 560.0F, 4500 / 560.0F}, 1, 1, 3, 36, {16, {1, 9}}};
constexpr coding kSamsungSmtG = coding{
    497, {4497 / 497.0F, 4497 / 497.0F}, 1, 1, 3, 36, {16, {1, 4497 / 497.0F}}}.clock(0.95F, 1.05F);
constexpr coding kKaseikyo = coding{425, {8, 4}, 1, 1, 3, 48}.clock(0.87F, 1.1F);
constexpr coding kKaseikyo56 = coding{425, {8, 4}, 1, 1, 3, 56}.clock(0.87F, 1.1F);
constexpr coding kRca = coding{475, {8, 8}, 1, 2, 4, 24}.gaps(5500, kGapBeforeUs);
constexpr coding kRcaOld = coding{475, {40, 8}, 1, 2, 4, 24, {}, 2}.gaps(5500, kGapBeforeUs);
constexpr coding kDigivision{182, {20, 10}, 3, 3, 6, 40, {24, {20, 10}}};
constexpr coding kDyson = coding{770, {3, 1}, 1, 1, 2, 15}.clock(0.91F, 1.05F);
constexpr coding kLogitech{127, {31, 36}, 3, 4, 8, 24};
constexpr coding kInterVideo = coding{300, {10, 5}, 1, 1, 3, 17}.clock(0.95F, 1.05F);
constexpr coding kSim2 = coding{400, {6, 7}, 3, 3, 7, 16}.clock(0.95F, 1.05F);
constexpr coding kMetz19{106, {8, 22}, 4, 9, 16, 19};
constexpr coding kWhynter = coding{750, {}, 1, 1, 3, 33, {1, {4, 4}}}.clock(0.96F, 1.04F);
constexpr coding kLego = coding{158, {1, 6.5F}, 1, 1.66F, 3.5F, 16}
    .gaps(5000, kGapBeforeUs).clock(0.92F, 1.08F);
constexpr coding kPaceMss = coding{630, {1, 5}, 1, 7, 11, 10, {0, {1, 5}}}.clock(0.95F, 1.05F);
constexpr coding kBarco{10, {1, 25}, 1, 5, 15, 11, {11, {1, 25}}};
constexpr coding kRevox = coding{15, {1, 29}, 1, 9, 19, 11, {11, {1, 29}}}.clock(0.9F, 1.18F);
// The gap of these two is as long as the lead-in's space: the stop mark of one frame is the
// lead-in of the next, which then seems to begin without one.
constexpr coding kDish = coding{404, {1, 15}, 1, 7, 4, 16}
    .gaps(5300, kGapBeforeUs).clock(0.95F, 1.04F);
constexpr coding kDishNext = coding{404, {}, 1, 7, 4, 16}
    .gaps(5300, 5500, 6600).clock(0.95F, 1.04F);
constexpr coding kDishplayer = coding{535, {1, 11}, 1, 5, 3, 13}
    .gaps(5100, kGapBeforeUs).clock(0.95F, 1.04F).marks(455, kAnyUs);
constexpr coding kDishplayerNext = coding{535, {}, 1, 5, 3, 13}
    .gaps(5100, 5300, 6400).clock(0.95F, 1.04F);

// Without a lead-in the gaps on both sides have to be real ones.
constexpr coding leadless(float unit, float mark, float zero, float one, int bits, float gap_us,
                          float clock_range) {
  return coding{unit, {}, mark, zero, one, bits}
      .gaps(gap_us, gap_us)
      .clock(1 - clock_range, 1 + clock_range);
}
constexpr coding kSharp = leadless(264, 1, 3, 7, 15, 12000, 0.08F);
constexpr coding kSharpOld = leadless(264, 1, 3, 7, 12, 12000, 0.04F);
constexpr coding kMitsubishi = leadless(300, 1, 3, 7, 16, 12000, 0.05F);
// Alike but for the marks; where a receiver has brought these together readAkai tells.
constexpr coding kAkai = coding{289, {}, 1, 2.6F, 6.3F, 10}
    .gaps(3600, 3600).clock(0.93F, 1.05F).marks(0, kAkaiLongestMarkUs);
constexpr coding kMatsui = coding{525, {}, 1, 1, 3, 10}
    .gaps(7000, 7000).clock(0.95F, 1.035F).marks(kMatsuiShortestMarkUs, kAnyUs);
constexpr coding kThomson = leadless(505, 1, 4, 9, 12, 13000, 0.04F);
constexpr coding kLumagen = leadless(416, 1, 6, 12, 12, 9500, 0.03F);
constexpr coding kRecs80 = leadless(158, 1, 31, 47, 11, 15000, 0.04F);
constexpr coding kRecs80Slow = leadless(180, 1, 31, 47, 11, 15000, 0.04F);
constexpr coding kVelleman = leadless(700, 1, 5060 / 700.0F, 7590 / 700.0F, 11, 15000, 0.04F);
constexpr coding kViewstar = leadless(337, 1, 8, 5, 5, 5000, 0.04F).marks(0, 500);
constexpr coding kArcher = leadless(12, 1, 275, 4700 / 12.0F, 5, 9000, 0.03F);
constexpr coding kJerrold = leadless(44, 1, 7500 / 44.0F, 11500 / 44.0F, 5, 18000, 0.03F);
constexpr coding kPid0001 = leadless(24, 1, 9314 / 24.0F, 13486 / 24.0F, 5, 18000, 0.03F);
constexpr coding kPid0004 = leadless(12, 1, 130 / 12.0F, 31, 6, 15000, 0.06F);
constexpr coding kKeepriteNext = leadless(570, 1, 1, 3, 32, 9000, 0.08F);
constexpr coding kPid0083 = leadless(3000, 1, 3, 7, 10, 40000, 0.03F);

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
    {.name = "NEC", .wire = &kNec, .vets_bits = true, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {16, 8}, .check_bits = 8, .finish = readNec, .repeat = &kNecDitto},
    // Some remotes run a fifth slower; only the plain code is sure enough to tell.
    {.name = "NEC", .wire = &kNecSlow, .vets_bits = true, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {16, 8}, .mirrors = {{16, 24, 8}}, .finish = readNec},
    {.name = "NECx", .wire = &kNecx, .vets_bits = true, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {16, 8}, .check_bits = 8, .finish = readNecx, .repeat = &kNecxDitto},
    {.name = "Akord", .wire = &kAkord, .msb = true, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {16, 8}, .mirrors = {{16, 24, 8}}, .repeat = &kAkordDitto},
    {.name = "Anthem", .wire = &kAnthem, .device = {0, 8}, .subDevice = {8, 8}, .obc = {16, 8},
     .check_bits = 8, .check = anthemSum, .finish = readAnthem},
    {.name = "48-NEC", .wire = &kNec48, .vets_bits = true, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {16, 8}, .second = {32, 8}, .mirrors = {{16, 24, 8}, {32, 40, 8}},
     .finish = read48Nec, .extras = {{"E", {32, 8}}}, .repeat = &kNecDitto},
    {.name = "Coolix48", .wire = &kCoolix, .msb = true, .device = {0, 8}, .subDevice = {16, 8},
     .obc = {32, 8}, .mirrors = {{0, 8, 8}, {16, 24, 8}, {32, 40, 8}}},
    {.name = "Aiwa", .wire = &kAiwa, .device = {0, 8}, .subDevice = {8, 5}, .obc = {26, 8},
     .mirrors = {{0, 13, 8}, {8, 21, 5}, {26, 34, 8}}, .repeat = &kAiwaDitto},
    {.name = "Kathrein", .wire = &kNec24, .device = {0, 4}, .obc = {8, 8},
     .mirrors = {{0, 4, 4}, {8, 16, 8}}, .repeat = &kKathreinDitto},
    {.name = "Dgtec", .wire = &kNec24, .device = {0, 8}, .obc = {8, 8}, .mirrors = {{8, 16, 8}},
     .repeat = &kNecDitto},
    {.name = "IODATA", .wire = &kIodata, .device = {7, 7}, .subDevice = {14, 7}, .obc = {28, 8},
     .finish = readIodata},
    {.name = "Keeprite", .wire = &kKeeprite, .device = {0, 8}, .subDevice = {8, 4}, .obc = {12, 8},
     .constants = {{23, 9, 0xA0}, {32, 3, 2}}},
    // Its second half, 20 ms after the first.
    {.name = "Keeprite", .wire = &kKeepriteNext,
     .constants = {{4, 4, 0}, {10, 6, 16}, {16, 12, 0}}},
    {.name = "LG", .wire = &kLg, .msb = true, .device = {0, 8}, .obc = {8, 16}, .check_bits = 4,
     .check = lgSum, .repeat = &kNecDitto},
    {.name = "LG", .wire = &kLgFast, .msb = true, .device = {0, 8}, .obc = {8, 16},
     .check_bits = 4, .check = lgSum, .repeat = &kNecDitto},
    {.name = "LG", .wire = &kLgShortLead, .msb = true, .device = {0, 8}, .obc = {8, 16},
     .check_bits = 4, .check = lgSum},
    {.name = "JVC", .wire = &kJvc, .variant = true, .device = {0, 8}, .obc = {8, 8}},
    {.name = "JVC", .wire = &kJvcRepeat, .device = {0, 8}, .obc = {8, 8}},
    {.name = "Proton", .wire = &kProton, .device = {0, 8}, .obc = {8, 8}},

    // 48 and 56 bits that begin with a maker's code
    {.name = "Panasonic", .wire = &kKaseikyo, .device = {16, 8}, .subDevice = {24, 8},
     .obc = {32, 8}, .constants = {{0, 8, 2}, {8, 8, 32}}, .check_bits = 8, .check = xorOfThree},
    {.name = "JVC-48", .wire = &kKaseikyo, .device = {16, 8}, .subDevice = {24, 8}, .obc = {32, 8},
     .constants = {{0, 8, 3}, {8, 8, 1}}, .check_bits = 8, .check = xorOfThree},
    {.name = "Denon-K", .wire = &kKaseikyo, .device = {20, 4}, .subDevice = {24, 4},
     .obc = {28, 12}, .constants = {{0, 8, 84}, {8, 8, 50}, {16, 4, 0}}, .check_bits = 8,
     .check = denonKXor},
    {.name = "SharpDVD", .wire = &kKaseikyo, .device = {20, 4}, .subDevice = {24, 8},
     .obc = {32, 8}, .constants = {{0, 8, 170}, {8, 8, 90}, {16, 4, 15}}, .check_bits = 4,
     .check = sharpDvdXor, .extras = {{"E", {40, 4}}}},
    {.name = "Teac-K", .wire = &kKaseikyo, .device = {20, 4}, .subDevice = {24, 8}, .obc = {32, 8},
     .constants = {{0, 8, 67}, {8, 8, 83}}, .check_bits = 8, .unchecked = {16, 4},
     .check = teacKSum,
     .extras = {{"X", {16, 4}}}, .repeat = &kTeacDitto},
    {.name = "Mitsubishi-K", .wire = &kKaseikyo, .device = {20, 8}, .subDevice = {28, 8},
     .obc = {36, 8}, .constants = {{0, 8, 35}, {8, 8, 203}, {16, 4, 6}}, .check_bits = 4,
     .unchecked = {20, 8}, .check = mitsubishiKSum},
    {.name = "Fujitsu", .wire = &kKaseikyo, .device = {24, 8}, .subDevice = {32, 8},
     .obc = {40, 8}, .constants = {{0, 8, 20}, {8, 8, 99}, {16, 4, 0}},
     .extras = {{"E", {20, 4}}}},
    {.name = "Kaseikyo", .wire = &kKaseikyo, .device = {20, 4}, .subDevice = {24, 8},
     .obc = {32, 8}, .check_bits = 8, .check = kaseikyoXor, .finish = readKaseikyo,
     .extras = {{"E", {40, 4}}}},
    {.name = "Panasonic2", .wire = &kKaseikyo56, .device = {16, 8}, .subDevice = {24, 8},
     .obc = {40, 8}, .constants = {{0, 8, 2}, {8, 8, 32}}, .check_bits = 8, .check = xorOfFour,
     .extras = {{"X", {32, 8}}}},
    {.name = "JVC-56", .wire = &kKaseikyo56, .device = {16, 8}, .subDevice = {24, 8},
     .obc = {40, 8}, .constants = {{0, 8, 3}, {8, 8, 1}}, .check_bits = 8, .check = xorOfFour,
     .extras = {{"X", {32, 8}}}},
    {.name = "Fujitsu-56", .wire = &kKaseikyo56, .device = {24, 8}, .subDevice = {32, 8},
     .obc = {48, 8}, .constants = {{0, 8, 20}, {8, 8, 99}, {16, 4, 0}},
     .extras = {{"E", {20, 4}}, {"X", {40, 8}}}},
    {.name = "Kaseikyo56", .wire = &kKaseikyo56, .device = {20, 4}, .subDevice = {24, 8},
     .obc = {40, 8}, .check_bits = 4, .check = makerParity, .finish = readKaseikyo,
     .extras = {{"E", {32, 8}}, {"G", {48, 8}}}},

    // Halves that repeat or complement each other
    {.name = "GuangZhou", .wire = &kDigivision, .device = {2, 6}, .subDevice = {16, 8},
     .obc = {8, 8}, .constants = {{0, 2, 3}},
     .mirrors = {{0, 24, 2}, {2, 26, 6, true}, {8, 32, 8}}, .repeat = &kDigivisionDitto},
    {.name = "Digivision", .wire = &kDigivision, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {24, 8}, .mirrors = {{24, 32, 8}}, .extras = {{"Dev3", {16, 8}}},
     .repeat = &kDigivisionDitto},
    {.name = "Amazon_Fan", .wire = &kAmazonFan, .msb = true, .device = {0, 8}, .obc = {8, 8},
     .constants = {{16, 1, 0}}, .mirrors = {{0, 17, 8, true}, {8, 25, 8, true}},
     .repeat = &kAmazonFanDitto},
    {.name = "Samsung36", .wire = &kSamsung36, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {20, 8}, .mirrors = {{20, 28, 8}}, .extras = {{"E", {16, 4}}}},
    // Its remotes often send a unit of 500 µs, as Samsung-SMT-G does.
    {.name = "Samsung36", .wire = &kSamsungSmtG, .device = {0, 8}, .subDevice = {8, 8},
     .obc = {20, 8}, .mirrors = {{20, 28, 8}}, .extras = {{"E", {16, 4}}}},
    {.name = "Samsung-SMT-G", .wire = &kSamsungSmtG, .msb = true, .device = {0, 16},
     .subDevice = {16, 4}, .obc = {20, 16}},
    {.name = "RCA", .wire = &kRca, .msb = true, .device = {0, 4}, .obc = {4, 8},
     .mirrors = {{0, 12, 4}, {4, 16, 8}}},
    {.name = "RCA", .wire = &kRcaOld, .msb = true, .variant = true, .device = {0, 4}, .obc = {4, 8},
     .mirrors = {{0, 12, 4}, {4, 16, 8}}},
    {.name = "Emerson", .wire = &kEmerson, .device = {0, 6}, .obc = {6, 6},
     .mirrors = {{0, 12, 6}, {6, 18, 6}}},
    {.name = "Sampo", .wire = &kEmerson, .device = {0, 6}, .subDevice = {12, 6}, .obc = {6, 6},
     .mirrors = {{6, 18, 6}}},
    {.name = "Logitech", .wire = &kLogitech, .device = {0, 4}, .obc = {8, 8},
     .mirrors = {{0, 4, 4}, {8, 16, 8}}},
    {.name = "Old Panasonic", .wire = &kPanasonicOld, .device = {0, 5}, .obc = {5, 6},
     .mirrors = {{0, 11, 5}, {5, 16, 6}}},
    {.name = "Metz19", .wire = &kMetz19, .msb = true, .device = {1, 3}, .obc = {7, 6},
     .mirrors = {{1, 4, 3}, {7, 13, 6}}, .extras = {{"T", {0, 1}}}},
    {.name = "Bose", .wire = &kBose, .msb = true, .obc = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "Balboa", .wire = &kBalboa, .obc = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "pid-0083", .wire = &kPid0083, .check_bits = 5, .check = pairsDiffer,
     .finish = readPid0083},

    // Check nibbles, parities and fixed bits
    {.name = "Lego", .wire = &kLego, .msb = true, .device = {2, 2}, .obc = {4, 8}, .check_bits = 4,
     .check = legoXor, .extras = {{"T", {0, 1}}, {"E", {1, 1}}}},
    {.name = "G.I.Cable", .wire = &kGiCable, .device = {8, 4}, .obc = {0, 8}, .check_bits = 4,
     .check = giCableSum, .repeat = &kGiCableDitto},
    {.name = "G.I.4DTV", .wire = &kGi4dtv, .device = {6, 2}, .obc = {0, 6}, .check_bits = 3,
     .check = gi4dtvParity, .finish = readGi4dtv},
    {.name = "InterVideo RC-201", .wire = &kInterVideo, .obc = {1, 6},
     .constants = {{0, 1, 0}, {7, 10, 768}}},
    {.name = "Lumagen", .wire = &kLumagen, .msb = true, .device = {0, 4}, .obc = {5, 7},
     .check_bits = 1, .check = lumagenParity},
    {.name = "Denon", .wire = &kSharp, .device = {0, 5}, .obc = {5, 8}, .constants = {{13, 2, 0}}},
    {.name = "Denon", .wire = &kSharp, .device = {0, 5}, .obc = {5, 8}, .constants = {{13, 2, 3}},
     .finish = readComplemented},
    {.name = "Sharp", .wire = &kSharp, .device = {0, 5}, .obc = {5, 8}, .constants = {{13, 2, 1}}},
    {.name = "Sharp", .wire = &kSharp, .device = {0, 5}, .obc = {5, 8}, .constants = {{13, 2, 2}},
     .finish = readComplemented},
    {.name = "Sharp_Old", .wire = &kSharpOld, .device = {0, 3}, .obc = {3, 8},
     .constants = {{11, 1, 0}}},
    {.name = "Sharp_Old", .wire = &kSharpOld, .device = {0, 3}, .obc = {3, 8},
     .constants = {{11, 1, 1}}, .finish = readComplemented},
    {.name = "Whynter", .wire = &kWhynter, .msb = true, .obc = {1, 32}, .constants = {{0, 1, 0}}},
    {.name = "Revox", .wire = &kRevox, .device = {1, 4}, .obc = {5, 6}, .constants = {{0, 1, 0}}},
    {.name = "RECS80", .wire = &kRecs80, .msb = true, .device = {2, 3}, .obc = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T", {1, 1}}}},
    {.name = "RECS80-0068", .wire = &kRecs80Slow, .msb = true, .device = {2, 3}, .obc = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T", {1, 1}}}},
    {.name = "Velleman", .wire = &kVelleman, .msb = true, .device = {2, 3}, .obc = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T", {1, 1}}}},

    // Nothing but the timing
    {.name = "Konka", .wire = &kKonka, .msb = true, .device = {0, 8}, .obc = {8, 8}},
    {.name = "GI RG", .wire = &kGiRg, .msb = true, .device = {8, 8}, .subDevice = {6, 2},
     .obc = {0, 6}},
    {.name = "Samsung20", .wire = &kSamsung20, .device = {0, 6}, .subDevice = {6, 6},
     .obc = {12, 8}},
    {.name = "Dyson", .wire = &kDyson, .device = {0, 7}, .obc = {7, 6},
     .extras = {{"T", {13, 2, true}}}, .repeat = &kDysonDitto},
    {.name = "SIM2", .wire = &kSim2, .device = {0, 8}, .obc = {8, 8}},
    {.name = "Pace MSS", .wire = &kPaceMss, .msb = true, .device = {1, 1}, .obc = {2, 8},
     .extras = {{"T", {0, 1}}}},
    {.name = "Barco", .wire = &kBarco, .device = {0, 5}, .obc = {5, 6}},
    {.name = "Dish_Network", .wire = &kDish, .device = {11, 5}, .subDevice = {6, 5},
     .obc = {0, 6, true}},
    {.name = "Dish_Network", .wire = &kDishNext, .device = {11, 5}, .subDevice = {6, 5},
     .obc = {0, 6, true}},
    {.name = "Dishplayer", .wire = &kDishplayer, .msb = true, .device = {11, 2},
     .subDevice = {6, 5}, .obc = {0, 6}},
    {.name = "Dishplayer", .wire = &kDishplayerNext, .msb = true, .device = {11, 2},
     .subDevice = {6, 5}, .obc = {0, 6}},
    {.name = "Mitsubishi", .wire = &kMitsubishi, .device = {0, 8}, .obc = {8, 8}},
    {.name = "Akai", .wire = &kAkai, .device = {0, 3}, .obc = {3, 7}, .finish = readAkai},
    {.name = "Matsui", .wire = &kMatsui, .device = {0, 3}, .obc = {3, 7}},
    {.name = "Thomson7", .wire = &kThomson, .device = {0, 4}, .obc = {5, 7},
     .extras = {{"T", {4, 1}}}},
    {.name = "Viewstar", .wire = &kViewstar, .obc = {0, 5}, .finish = readComplemented},
    {.name = "Archer", .wire = &kArcher, .obc = {0, 5}},
    {.name = "Jerrold", .wire = &kJerrold, .obc = {0, 5}},
    {.name = "pid-0001", .wire = &kPid0001, .msb = true, .obc = {0, 5}},
    {.name = "pid-0004", .wire = &kPid0004, .msb = true, .obc = {0, 6}},
};

// clang-format on

constexpr size_t kRowCount = std::size(kRows);
constexpr int kMostBursts = 100;

/// The rows by their number of bursts, and among these by what they verify.
struct row_index {
  std::array<const row*, kRowCount> rows{};
  std::array<uint8_t, kMostBursts + 2> first{};  // of each number of bursts

  constexpr row_index() {
    size_t end = 0;
    for (int bursts = 0; bursts <= kMostBursts; ++bursts) {
      const size_t begin = end;
      first[static_cast<size_t>(bursts)] = static_cast<uint8_t>(begin);
      for (const row& candidate : kRows) {
        if (candidate.wire->bursts() != bursts) continue;
        size_t at = end++;
        for (; at > begin && rows[at - 1]->redundancy() < candidate.redundancy(); --at) {
          rows[at] = rows[at - 1];
        }
        rows[at] = &candidate;
      }
    }
    first[kMostBursts + 1] = static_cast<uint8_t>(end);
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
