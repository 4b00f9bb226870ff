// SPDX-License-Identifier: GPL-3.0-or-later
// How the frames of the pulse-distance protocols look on the wire. For the rows and what belongs to
// them.
#pragma once

#include "lib/ir/DecodeIR/protocols/distance_rules.h"
#include "lib/ir/DecodeIR/readers/pulse_distance.h"

namespace analysis {

// Laid out by hand, to be read as a table.
// clang-format off

// --- On the wire: unit in µs, lead-in, mark, spaces of zero and one, symbols ------------------
inline constexpr pulse_distance kNec{564, {16, 8}, 1, 1, 3, 32};
inline constexpr pulse_distance kNecFast = pulse_distance{495, {16, 8}, 1, 1, 3, 32}.clock(0.97F, 1.03F);
inline constexpr pulse_distance kNecSlow = pulse_distance{690, {16, 8}, 1, 1, 3, 32}.clock(0.93F, 1.08F);
inline constexpr pulse_distance kNecx{564, {8, 8}, 1, 1, 3, 32};
inline constexpr pulse_distance kNec48{564, {16, 8}, 1, 1, 3, 48};
inline constexpr pulse_distance kNec24{550, {16, 8}, 1, 1, 3, 24};
inline constexpr pulse_distance kAiwa = pulse_distance{555, {16, 8}, 1, 1, 3, 42}.uneven();
inline constexpr pulse_distance kNec40{555, {16, 8}, 1, 1, 3, 40};
// Of 40 bits that nothing checks only the exact clock speaks for IODATA: NEC's is 2 % slower.
inline constexpr pulse_distance kIodata = pulse_distance{550, {16, 8}, 1, 1, 3, 40}.clock(0.985F, 1.0155F);
inline constexpr pulse_distance kGree{570, {16, 8}, 1, 1, 3, 35};
inline constexpr pulse_distance kCarrier = pulse_distance{530, {8430 / 530.0F, 4200 / 530.0F}, 1, 1, 3, 32}.clock(0.95F, 1.03F);
inline constexpr pulse_distance kAnthem{605, {8000 / 605.0F, 4000 / 605.0F}, 1, 1, 3, 32};
inline constexpr pulse_distance kAkord{477, {18, 8}, 1, 1, 2, 32};
inline constexpr pulse_distance kLg{560, {15.2F, 7.6F}, 1, 1, 3, 28};
inline constexpr pulse_distance kLgFast{512, {17, 8}, 1, 1, 3, 28};
inline constexpr pulse_distance kLgShortLead{500, {6.4F, 19.5F}, 1, 1, 3, 28};
// Two frames follow each other; the program's patterns end with the first.
inline constexpr pulse_distance kMidea = pulse_distance{550, {8, 8}, 1, 1, 3, 48}.gaps(4300, 4300).uneven();
inline constexpr pulse_distance kToshiba72 = pulse_distance{545, {8, 8}, 1, 1, 3, 72}.gaps(5000, 5000).uneven();
inline constexpr pulse_distance kHeavy88 = pulse_distance{400, {8, 4}, 1, 1, 3, 88}.uneven();
inline constexpr pulse_distance kChigo = pulse_distance{555, {11, 7400 / 555.0F}, 1, 1, 3, 96}.gaps(6500, kGapBeforeUs).uneven();
inline constexpr pulse_distance kSamsung56 = pulse_distance{480, {3280 / 480.0F, 9050 / 480.0F}, 1.5F, 490 / 480.0F, 1420 / 480.0F, 56};
inline constexpr pulse_distance kJvc = pulse_distance{527, {16, 8}, 1, 1, 3, 16}.clock(0.945F, 1.04F);
inline constexpr pulse_distance kJvcShort = pulse_distance{
    527, {7950 / 527.0F, 3900 / 527.0F}, 1, 1, 3, 16}.clock(0.945F, 1.04F);
inline constexpr pulse_distance kJvcRepeat = pulse_distance{527, {}, 1, 1, 3, 16}.gaps(kGapUs, 9000).clock(0.945F, 1.04F).marks(kJvcShortestMarkUs, kAnyUs);
inline constexpr pulse_distance kProton = pulse_distance{500, {16, 8}, 1, 1, 3, 16, {8, {1, 8}}}.clock(0.93F, 1.11F);
inline constexpr pulse_distance kBose{500, {2, 3}, 1, 1, 3, 16};
inline constexpr pulse_distance kKonka = pulse_distance{500, {6, 6}, 1, 3, 5, 16, {16, {1, 8}}}.clock(0.96F, 1.04F);
inline constexpr pulse_distance kBalboa = pulse_distance{500, {9, 5}, 2, 2, 4, 16}.gaps(4200, 4200);
inline constexpr pulse_distance kAmazonFan{520, {9, 9}, 1, 3, 5, 33, {17, {9, 9}}};
inline constexpr pulse_distance kGiCable{490, {18, 9}, 1, 4.5F, 9, 16};
inline constexpr pulse_distance kGi4dtv = pulse_distance{992, {5, 2}, 1, 1, 3, 12}.clock(0.95F, 1.05F);
inline constexpr pulse_distance kGiRg = pulse_distance{1000, {5, 3}, 1, 1, 3, 16}.clock(0.96F, 1.04F);
inline constexpr pulse_distance kEmerson{850, {4, 4}, 1, 1, 3, 24};
inline constexpr pulse_distance kPanasonicOld{833, {4, 4}, 1, 1, 3, 22};
inline constexpr pulse_distance kSamsung20 = pulse_distance{564, {8, 8}, 1, 1, 3, 20}.clock(0.965F, 1.03F);
inline constexpr pulse_distance kSamsung36{560, {4500 / 560.0F, 4500 / 560.0F}, 1, 1, 3, 36, {16, {1, 9}}};
inline constexpr pulse_distance kSamsungSmtG = pulse_distance{
    497, {4497 / 497.0F, 4497 / 497.0F}, 1, 1, 3, 36, {16, {1, 4497 / 497.0F}}}.clock(0.95F, 1.05F);
inline constexpr pulse_distance kKaseikyo = pulse_distance{425, {8, 4}, 1, 1, 3, 48}.clock(0.87F, 1.13F).uneven();
inline constexpr pulse_distance kKaseikyo56 = pulse_distance{425, {8, 4}, 1, 1, 3, 56}.clock(0.87F, 1.13F).uneven();
inline constexpr pulse_distance kRca = pulse_distance{475, {8, 8}, 1, 2, 4, 24}.gaps(5500, kGapBeforeUs);
inline constexpr pulse_distance kRcaOld = pulse_distance{475, {40, 8}, 1, 2, 4, 24, {}, 2}.gaps(5500, kGapBeforeUs);
inline constexpr pulse_distance kDigivision{182, {20, 10}, 3, 3, 6, 40, {24, {20, 10}}};
inline constexpr pulse_distance kDyson = pulse_distance{770, {3, 1}, 1, 1, 2, 15}.clock(0.91F, 1.05F);
inline constexpr pulse_distance kLogitech{127, {31, 36}, 3, 4, 8, 24};
inline constexpr pulse_distance kInterVideo = pulse_distance{300, {10, 5}, 1, 1, 3, 17}.clock(0.95F, 1.05F);
inline constexpr pulse_distance kInterVideoShort = pulse_distance{
    310, {3020 / 310.0F, 1470 / 310.0F}, 1, 266 / 310.0F, 780 / 310.0F, 17}.clock(0.88F, 1.06F);
inline constexpr pulse_distance kSim2 = pulse_distance{400, {6, 7}, 3, 3, 7, 16}.clock(0.95F, 1.05F);
inline constexpr pulse_distance kMetz19{106, {8, 22}, 4, 9, 16, 19};
inline constexpr pulse_distance kWhynter = pulse_distance{750, {}, 1, 1, 3, 33, {1, {4, 4}}}.clock(0.96F, 1.04F);
inline constexpr pulse_distance kLego = pulse_distance{158, {1, 6.5F}, 1, 1.66F, 3.5F, 16}
    .gaps(5000, kGapBeforeUs).clock(0.92F, 1.08F);
inline constexpr pulse_distance kPaceMss = pulse_distance{630, {1, 5}, 1, 7, 11, 10, {0, {1, 5}}}.clock(0.95F, 1.05F);
inline constexpr pulse_distance kPaceMssOnce = pulse_distance{660, {760 / 660.0F, 3030 / 660.0F}, 1, 6.6F, 10.4F, 11}.clock(0.95F, 1.05F);
inline constexpr pulse_distance kBarco{10, {1, 25}, 1, 5, 15, 11, {11, {1, 25}}};
inline constexpr pulse_distance kRevox = pulse_distance{15, {1, 29}, 1, 9, 19, 11, {11, {1, 29}}}.clock(0.9F, 1.18F);
// The gap of these two is as long as the lead-in's space: the stop mark of one frame is the
// lead-in of the next, which then seems to begin without one.
inline constexpr pulse_distance kDish = pulse_distance{404, {1, 15}, 1, 7, 4, 16}
    .gaps(5300, kGapBeforeUs).clock(0.95F, 1.04F);
inline constexpr pulse_distance kDishNext = pulse_distance{404, {}, 1, 7, 4, 16}
    .gaps(5300, 5500, 6600).clock(0.95F, 1.04F);
inline constexpr pulse_distance kDishplayer = pulse_distance{535, {1, 11}, 1, 5, 3, 13}
    .gaps(5100, kGapBeforeUs).clock(0.95F, 1.04F).marks(455, kAnyUs);
inline constexpr pulse_distance kDishplayerNext = pulse_distance{535, {}, 1, 5, 3, 13}
    .gaps(5100, 5300, 6400).clock(0.95F, 1.04F);

// Without a lead-in the gaps on both sides have to be real ones.
inline constexpr pulse_distance leadless(float unit, float mark, float zero, float one, int bits, float gap_us,
                          float clock_range) {
  return pulse_distance{unit, {}, mark, zero, one, bits}
      .gaps(gap_us, gap_us)
      .clock(1 - clock_range, 1 + clock_range);
}
inline constexpr pulse_distance kSharp = leadless(264, 1, 3, 7, 15, 12000, 0.08F).any_marks(484);
inline constexpr pulse_distance kSharpOld = leadless(264, 1, 3, 7, 12, 12000, 0.04F);
inline constexpr pulse_distance kVoltas = leadless(515, 2, 550 / 515.0F, 2530 / 515.0F, 80, 12000, 0.08F);
inline constexpr pulse_distance kMitsubishi = leadless(300, 1, 3, 7, 16, 12000, 0.06F);
// As fast as JVC's repeats, whose marks are half of the short burst, not a quarter.
inline constexpr pulse_distance kMitsubishiFast = leadless(264, 1, 3, 7, 16, 12000, 0.07F).marks(0, kJvcShortestMarkUs);
// Alike but for the marks; where a receiver has brought these together read_akai tells.
inline constexpr pulse_distance kAkai = pulse_distance{289, {}, 1, 2.6F, 6.3F, 10}
    .gaps(3600, 3600).clock(0.93F, 1.05F).marks(0, kAkaiLongestMarkUs);
inline constexpr pulse_distance kMatsui = pulse_distance{525, {}, 1, 1, 3, 10}
    .gaps(7000, 7000).clock(0.95F, 1.035F).marks(kMatsuiShortestMarkUs, kAnyUs);
inline constexpr pulse_distance kThomson = leadless(505, 1, 4, 9, 12, 13000, 0.04F);
inline constexpr pulse_distance kLumagen = leadless(416, 1, 6, 12, 12, 9500, 0.03F);
inline constexpr pulse_distance kRecs80 = leadless(158, 1, 31, 47, 11, 15000, 0.06F).any_marks(620);
inline constexpr pulse_distance kRecs80Slow = leadless(180, 1, 31, 47, 11, 15000, 0.06F).any_marks(480);
inline constexpr pulse_distance kRecs80Long = leadless(247, 1, 31, 47, 11, 15000, 0.06F).any_marks(700);
inline constexpr pulse_distance kVelleman = leadless(700, 1, 5060 / 700.0F, 7590 / 700.0F, 11, 15000, 0.04F);
inline constexpr pulse_distance kViewstar = leadless(337, 1, 8, 5, 5, 5000, 0.04F).marks(0, 500);
inline constexpr pulse_distance kArcher = leadless(12, 1, 275, 4700 / 12.0F, 5, 9000, 0.03F).any_marks(350);
inline constexpr pulse_distance kJerrold = leadless(44, 1, 7500 / 44.0F, 11500 / 44.0F, 5, 18000, 0.03F).any_marks(350);
inline constexpr pulse_distance kJerroldSlow = leadless(80, 1, 7870 / 80.0F, 11800 / 80.0F, 5, 18000, 0.03F).any_marks(350);
inline constexpr pulse_distance kFisher = leadless(510, 1, 3, 7, 6, 15000, 0.07F);
inline constexpr pulse_distance kPid0001 = leadless(24, 1, 9314 / 24.0F, 13486 / 24.0F, 5, 18000, 0.03F);
inline constexpr pulse_distance kPid0004 = leadless(12, 1, 130 / 12.0F, 31, 6, 15000, 0.06F);
inline constexpr pulse_distance kGreeNext = leadless(570, 1, 1, 3, 32, 9000, 0.08F);
inline constexpr pulse_distance kPid0083 = leadless(3000, 1, 3, 7, 10, 40000, 0.03F);

// --- Held keys -------------------------------------------------------------------------------
inline constexpr ditto kNecDitto{{16, 4}};
inline constexpr ditto kNecxDitto{{8, 8}, 1};
inline constexpr ditto kAiwaDitto{{16, 8}};
inline constexpr ditto kAkordDitto{{18, 5}};
inline constexpr ditto kAmazonFanDitto{{9074 / 520.0F, 5}};
inline constexpr ditto kDigivisionDitto{{20, 20}};
inline constexpr ditto kGiCableDitto{{18, 4.5F}};
inline constexpr ditto kTeacDitto{{8, 8}};
inline constexpr ditto kKathreinDitto{{16, 8}, 8};
inline constexpr ditto kDysonDitto{{3, 1}, 1};

// clang-format on

}  // namespace analysis
