// SPDX-License-Identifier: GPL-3.0-or-later
// The pulse-distance protocols, from their public IRP definitions. Of the rows that fit a frame the
// one that verifies most wins.
#include <algorithm>

#include "lib/ir/DecodeIR/protocols/distance_codings.h"
#include "lib/ir/DecodeIR/protocols/distance_rules.h"

namespace analysis {
namespace {

// The table is laid out by hand, to be read as a table.
// clang-format off
constexpr row kRows[] = {
    // 2 + 32 symbols, NEC and its relatives
    {.name = "NEC", .wire = &kNec, .finish_checks = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .check_bits = 8, .finish = read_nec, .repeat = &kNecDitto},
    // Some remotes run a fifth slower; only the plain code is sure enough to tell.
    {.name = "NEC", .wire = &kNecSlow, .finish_checks = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .mirrors = {{16, 24, 8}}, .finish = read_nec},
    // So do others that run an eighth faster.
    {.name = "NEC", .wire = &kNecFast, .finish_checks = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .mirrors = {{16, 24, 8}}, .finish = read_nec},
    {.name = "Carrier-32", .wire = &kCarrier, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .constants = {{0, 8, 205}, {8, 8, 172}}, .finish = is_not_nec,
     .extras = {{"E=", {24, 8}}}},
    {.name = "NECx", .wire = &kNecx, .finish_checks = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .check_bits = 8, .finish = read_necx, .repeat = &kNecxDitto},
    {.name = "Akord", .wire = &kAkord, .msb = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .mirrors = {{16, 24, 8}}, .repeat = &kAkordDitto},
    {.name = "Anthem", .wire = &kAnthem, .device = {0, 8}, .subdevice = {8, 8}, .function = {16, 8},
     .check_bits = 8, .check = anthem_sum, .finish = read_anthem},
    {.name = "48-NEC", .wire = &kNec48, .finish_checks = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .second = {32, 8}, .mirrors = {{16, 24, 8}, {32, 40, 8}},
     .finish = read_48_nec, .extras = {{"E=", {32, 8}}}, .repeat = &kNecDitto},
    {.name = "Coolix48", .wire = &kMidea, .msb = true, .device = {0, 8}, .subdevice = {16, 8},
     .function = {32, 8}, .mirrors = {{0, 8, 8}, {16, 24, 8}, {32, 40, 8}}},
    {.name = "Midea", .wire = &kMidea, .msb = true, .device = {0, 8}, .subdevice = {8, 8},
     .function = {16, 8}, .constants = {{0, 6, 0x28}}, .check_bits = 8, .check = midea_sum,
     .finish = read_midea, .extras = {{"D=", {24, 8}}, {"E=", {32, 8}}}},
    {.name = "Aiwa", .wire = &kAiwa, .device = {0, 8}, .subdevice = {8, 5}, .function = {26, 8},
     .mirrors = {{0, 13, 8}, {8, 21, 5}, {26, 34, 8}}, .repeat = &kAiwaDitto},
    {.name = "Kathrein", .wire = &kNec24, .device = {0, 4}, .function = {8, 8},
     .mirrors = {{0, 4, 4}, {8, 16, 8}}, .repeat = &kKathreinDitto},
    {.name = "Dgtec", .wire = &kNec24, .device = {0, 8}, .function = {8, 8}, .mirrors = {{8, 16, 8}},
     .repeat = &kNecDitto},
    {.name = "DeLonghi-40", .wire = &kNec40, .device = {0, 8}, .subdevice = {16, 8},
     .function = {8, 8}, .constants = {{0, 8, 75}, {24, 8, 12}, {32, 8, 0}}},
    {.name = "NEC-40", .wire = &kNec40, .device = {0, 8}, .subdevice = {8, 8}, .function = {24, 8},
     .mirrors = {{24, 32, 8}}, .finish = read_nec40, .extras = {{"E=", {16, 8}}}},
    {.name = "IODATA", .wire = &kNec40, .device = {7, 7}, .subdevice = {14, 7}, .function = {28, 8},
     .constants = {{0, 7, 0}, {21, 7, 0}}, .finish = read_iodata},
    {.name = "IODATA", .wire = &kIodata, .device = {7, 7}, .subdevice = {14, 7}, .function = {28, 8},
     .finish = read_iodata},
    {.name = "Gree", .wire = &kGree, .device = {0, 8}, .function = {8, 8},
     .constants = {{32, 3, 2}}, .check_bits = 10, .check = gree_state, .finish = read_gree},
    // A first block with bits that no Gree sends.
    {.name = "Keeprite", .wire = &kGree, .device = {0, 8}, .subdevice = {8, 4}, .function = {12, 8},
     .constants = {{23, 9, 0xA0}, {32, 3, 2}}},
    {.name = "Gree", .wire = &kGreeNext, .constants = {{4, 4, 0}, {10, 6, 16}, {16, 12, 0}},
     .finish = read_gree_next},
    {.name = "LG", .wire = &kLg, .msb = true, .device = {0, 8}, .function = {8, 16}, .check_bits = 4,
     .check = lg_sum, .repeat = &kNecDitto},
    {.name = "LG", .wire = &kLgFast, .msb = true, .device = {0, 8}, .function = {8, 16},
     .check_bits = 4, .check = lg_sum, .repeat = &kNecDitto},
    {.name = "LG", .wire = &kLgShortLead, .msb = true, .device = {0, 8}, .function = {8, 16},
     .check_bits = 4, .check = lg_sum},
    {.name = "JVC", .wire = &kJvc, .variant = true, .device = {0, 8}, .function = {8, 8},
     .finish = read_jvc},
    {.name = "JVC", .wire = &kJvcShort, .variant = true, .device = {0, 8}, .function = {8, 8},
     .finish = read_jvc},
    {.name = "JVC", .wire = &kJvcRepeat, .device = {0, 8}, .function = {8, 8}},
    {.name = "Proton", .wire = &kProton, .device = {0, 8}, .function = {8, 8}},

    // 48 and 56 bits that begin with a maker's code
    {.name = "Panasonic", .wire = &kKaseikyo, .device = {16, 8}, .subdevice = {24, 8},
     .function = {32, 8}, .constants = {{0, 8, 2}, {8, 8, 32}}, .check_bits = 8, .check = xor_of_three},
    {.name = "JVC-48", .wire = &kKaseikyo, .device = {16, 8}, .subdevice = {24, 8}, .function = {32, 8},
     .constants = {{0, 8, 3}, {8, 8, 1}}, .check_bits = 8, .check = xor_of_three},
    {.name = "Denon-K", .wire = &kKaseikyo, .device = {20, 4}, .subdevice = {24, 4},
     .function = {28, 12}, .constants = {{0, 8, 84}, {8, 8, 50}, {16, 4, 0}}, .check_bits = 8,
     .check = denon_k_xor},
    {.name = "SharpDVD", .wire = &kKaseikyo, .device = {20, 4}, .subdevice = {24, 8},
     .function = {32, 8}, .constants = {{0, 8, 170}, {8, 8, 90}, {16, 4, 15}}, .check_bits = 4,
     .check = sharp_dvd_xor, .extras = {{"E=", {40, 4}}}},
    {.name = "Teac-K", .wire = &kKaseikyo, .device = {20, 4}, .subdevice = {24, 8}, .function = {32, 8},
     .constants = {{0, 8, 67}, {8, 8, 83}}, .check_bits = 8, .unchecked = {16, 4},
     .check = teac_k_sum,
     .extras = {{"X=", {16, 4}}}, .repeat = &kTeacDitto},
    {.name = "Mitsubishi-K", .wire = &kKaseikyo, .device = {20, 8}, .subdevice = {28, 8},
     .function = {36, 8}, .constants = {{0, 8, 35}, {8, 8, 203}, {16, 4, 6}}, .check_bits = 4,
     .unchecked = {20, 8}, .check = mitsubishi_k_sum},
    {.name = "Fujitsu", .wire = &kKaseikyo, .device = {24, 8}, .subdevice = {32, 8},
     .function = {40, 8}, .constants = {{0, 8, 20}, {8, 8, 99}, {16, 4, 0}},
     .extras = {{"E=", {20, 4}}}},
    {.name = "Kaseikyo", .wire = &kKaseikyo, .device = {20, 4}, .subdevice = {24, 8},
     .function = {32, 8}, .check_bits = 8, .check = kaseikyo_xor, .finish = read_kaseikyo,
     .extras = {{"E=", {40, 4}}}},
    {.name = "Panasonic2", .wire = &kKaseikyo56, .device = {16, 8}, .subdevice = {24, 8},
     .function = {40, 8}, .constants = {{0, 8, 2}, {8, 8, 32}}, .check_bits = 8, .check = xor_of_four,
     .extras = {{"X=", {32, 8}}}},
    {.name = "JVC-56", .wire = &kKaseikyo56, .device = {16, 8}, .subdevice = {24, 8},
     .function = {40, 8}, .constants = {{0, 8, 3}, {8, 8, 1}}, .check_bits = 8, .check = xor_of_four,
     .extras = {{"X=", {32, 8}}}},
    {.name = "Fujitsu-56", .wire = &kKaseikyo56, .device = {24, 8}, .subdevice = {32, 8},
     .function = {48, 8}, .constants = {{0, 8, 20}, {8, 8, 99}, {16, 4, 0}},
     .extras = {{"E=", {20, 4}}, {"X=", {40, 8}}}},
    {.name = "Kaseikyo56", .wire = &kKaseikyo56, .device = {20, 4}, .subdevice = {24, 8},
     .function = {40, 8}, .check_bits = 4, .check = maker_parity, .finish = read_kaseikyo,
     .extras = {{"E=", {32, 8}}, {"G=", {48, 8}}}},

    // Air conditioners' messages
    {.name = "Fujitsu-AC-56", .wire = &kKaseikyo56, .device = {0, 8}, .subdevice = {8, 8},
     .function = {40, 8}, .constants = {{0, 32, 0x10006314}, {32, 8, 16}}, .mirrors = {{40, 48, 8}}},
    {.name = "Toshiba-72", .wire = &kToshiba72, .device = {0, 8}, .subdevice = {8, 8},
     .mirrors = {{0, 8, 8}, {16, 24, 8}}, .check_bits = 8, .check = toshiba_xor, .finish = tell_bytes},
    {.name = "MitsubishiHeavy-88", .wire = &kHeavy88, .device = {0, 8}, .subdevice = {8, 8},
     .constants = {{0, 24, 0xC3AE52}}, .check_bits = 32, .check = state_complemented,
     .finish = tell_bytes},
    {.name = "Chigo-96", .wire = &kChigo, .device = {0, 8}, .subdevice = {8, 8}, .check_bits = 48,
     .check = all_bytes_complemented, .finish = tell_bytes},
    {.name = "Chigo-96-sum", .wire = &kChigo, .device = {0, 8}, .subdevice = {8, 8}, .check_bits = 8,
     .check = last_byte_is_sum, .finish = tell_bytes},
    {.name = "Voltas-80", .wire = &kVoltas, .msb = true, .device = {0, 8}, .subdevice = {8, 8},
     .check_bits = 8, .check = bytes_add_up_to_255, .finish = tell_bytes},
    {.name = "Samsung-56", .wire = &kSamsung56, .device = {0, 8}, .subdevice = {8, 8},
     .check_bits = 8, .check = samsung_count, .finish = tell_bytes},

    // Halves that repeat or complement each other
    {.name = "GuangZhou", .wire = &kDigivision, .device = {2, 6}, .subdevice = {16, 8},
     .function = {8, 8}, .constants = {{0, 2, 3}},
     .mirrors = {{0, 24, 2}, {2, 26, 6, true}, {8, 32, 8}}, .repeat = &kDigivisionDitto},
    {.name = "Digivision", .wire = &kDigivision, .device = {0, 8}, .subdevice = {8, 8},
     .function = {24, 8}, .mirrors = {{24, 32, 8}}, .extras = {{"Dev3=", {16, 8}}},
     .repeat = &kDigivisionDitto},
    {.name = "Amazon_Fan", .wire = &kAmazonFan, .msb = true, .device = {0, 8}, .function = {8, 8},
     .constants = {{16, 1, 0}}, .mirrors = {{0, 17, 8, true}, {8, 25, 8, true}},
     .repeat = &kAmazonFanDitto},
    {.name = "Samsung36", .wire = &kSamsung36, .device = {0, 8}, .subdevice = {8, 8},
     .function = {20, 8}, .mirrors = {{20, 28, 8}}, .extras = {{"E=", {16, 4}}}},
    // Its remotes often send a unit of 500 µs, as Samsung-SMT-G does.
    {.name = "Samsung36", .wire = &kSamsungSmtG, .device = {0, 8}, .subdevice = {8, 8},
     .function = {20, 8}, .mirrors = {{20, 28, 8}}, .extras = {{"E=", {16, 4}}}},
    {.name = "Samsung-SMT-G", .wire = &kSamsungSmtG, .msb = true, .device = {0, 16},
     .subdevice = {16, 4}, .function = {20, 16}},
    {.name = "RCA", .wire = &kRca, .msb = true, .device = {0, 4}, .function = {4, 8},
     .mirrors = {{0, 12, 4}, {4, 16, 8}}},
    {.name = "RCA", .wire = &kRcaOld, .msb = true, .variant = true, .device = {0, 4}, .function = {4, 8},
     .mirrors = {{0, 12, 4}, {4, 16, 8}}},
    {.name = "Emerson", .wire = &kEmerson, .device = {0, 6}, .function = {6, 6},
     .mirrors = {{0, 12, 6}, {6, 18, 6}}},
    {.name = "Sampo", .wire = &kEmerson, .device = {0, 6}, .subdevice = {12, 6}, .function = {6, 6},
     .mirrors = {{6, 18, 6}}},
    {.name = "Logitech", .wire = &kLogitech, .device = {0, 4}, .function = {8, 8},
     .mirrors = {{0, 4, 4}, {8, 16, 8}}},
    {.name = "Old Panasonic", .wire = &kPanasonicOld, .device = {0, 5}, .function = {5, 6},
     .mirrors = {{0, 11, 5}, {5, 16, 6}}},
    {.name = "Metz19", .wire = &kMetz19, .msb = true, .device = {1, 3}, .function = {7, 6},
     .mirrors = {{1, 4, 3}, {7, 13, 6}}, .extras = {{"T=", {0, 1}}}},
    {.name = "Bose", .wire = &kBose, .msb = true, .function = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "Balboa", .wire = &kBalboa, .function = {0, 8}, .mirrors = {{0, 8, 8}}},
    {.name = "pid-0083", .wire = &kPid0083, .check_bits = 5, .check = pairs_differ,
     .finish = read_pid0083},

    // Check nibbles, parities and fixed bits
    {.name = "Lego", .wire = &kLego, .msb = true, .device = {2, 2}, .function = {4, 8}, .check_bits = 4,
     .check = lego_xor, .extras = {{"T=", {0, 1}}, {"E=", {1, 1}}}},
    {.name = "G.I.Cable", .wire = &kGiCable, .device = {8, 4}, .function = {0, 8}, .check_bits = 4,
     .check = gi_cable_sum, .repeat = &kGiCableDitto},
    {.name = "G.I.4DTV", .wire = &kGi4dtv, .device = {6, 2}, .function = {0, 6}, .check_bits = 3,
     .check = gi4dtv_parity, .finish = read_gi4dtv},
    {.name = "InterVideo RC-201", .wire = &kInterVideo, .function = {1, 6},
     .constants = {{0, 1, 0}, {7, 10, 768}}},
    {.name = "InterVideo RC-201", .wire = &kInterVideoShort, .function = {1, 6},
     .constants = {{0, 1, 0}, {7, 10, 768}}},
    {.name = "Lumagen", .wire = &kLumagen, .msb = true, .device = {0, 4}, .function = {5, 7},
     .check_bits = 1, .check = lumagen_parity},
    {.name = "Denon", .wire = &kSharp, .device = {0, 5}, .function = {5, 8}, .constants = {{13, 2, 0}}},
    {.name = "Denon", .wire = &kSharp, .device = {0, 5}, .function = {5, 8}, .constants = {{13, 2, 3}},
     .finish = read_complemented},
    {.name = "Sharp", .wire = &kSharp, .device = {0, 5}, .function = {5, 8}, .constants = {{13, 2, 1}}},
    {.name = "Sharp", .wire = &kSharp, .device = {0, 5}, .function = {5, 8}, .constants = {{13, 2, 2}},
     .finish = read_complemented},
    {.name = "Sharp_Old", .wire = &kSharpOld, .device = {0, 3}, .function = {3, 8},
     .constants = {{11, 1, 0}}},
    {.name = "Sharp_Old", .wire = &kSharpOld, .device = {0, 3}, .function = {3, 8},
     .constants = {{11, 1, 1}}, .finish = read_complemented},
    {.name = "Whynter", .wire = &kWhynter, .msb = true, .function = {1, 32}, .constants = {{0, 1, 0}}},
    {.name = "Revox", .wire = &kRevox, .device = {1, 4}, .function = {5, 6}, .constants = {{0, 1, 0}}},
    {.name = "RECS80", .wire = &kRecs80, .msb = true, .device = {2, 3}, .function = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T=", {1, 1}}}},
    {.name = "RECS80-0068", .wire = &kRecs80Slow, .msb = true, .device = {2, 3}, .function = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T=", {1, 1}}}},
    {.name = "RECS80", .wire = &kRecs80Long, .msb = true, .device = {2, 3}, .function = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T=", {1, 1}}}},
    {.name = "RECS80", .wire = &kRecs80, .msb = true, .device = {2, 3}, .function = {5, 6},
     .constants = {{0, 1, 0}}, .finish = read_recs80, .extras = {{"T=", {1, 1}}}},
    {.name = "RECS80-0068", .wire = &kRecs80Slow, .msb = true, .device = {2, 3}, .function = {5, 6},
     .constants = {{0, 1, 0}}, .finish = read_recs80, .extras = {{"T=", {1, 1}}}},
    {.name = "Velleman", .wire = &kVelleman, .msb = true, .device = {2, 3}, .function = {5, 6},
     .constants = {{0, 1, 1}}, .extras = {{"T=", {1, 1}}}},

    // Nothing but the timing
    {.name = "Konka", .wire = &kKonka, .msb = true, .device = {0, 8}, .function = {8, 8}},
    {.name = "GI RG", .wire = &kGiRg, .msb = true, .device = {8, 8}, .subdevice = {6, 2},
     .function = {0, 6}},
    {.name = "Samsung20", .wire = &kSamsung20, .device = {0, 6}, .subdevice = {6, 6},
     .function = {12, 8}},
    {.name = "Dyson", .wire = &kDyson, .device = {0, 7}, .function = {7, 6},
     .extras = {{"T=", {13, 2, true}}}, .repeat = &kDysonDitto},
    {.name = "SIM2", .wire = &kSim2, .device = {0, 8}, .function = {8, 8}},
    {.name = "Pace MSS", .wire = &kPaceMss, .msb = true, .device = {1, 1}, .function = {2, 8},
     .extras = {{"T=", {0, 1}}}},
    {.name = "Pace MSS", .wire = &kPaceMssOnce, .msb = true, .device = {2, 1}, .function = {3, 8},
     .constants = {{0, 1, 0}}, .extras = {{"T=", {1, 1}}}},
    {.name = "Barco", .wire = &kBarco, .device = {0, 5}, .function = {5, 6}},
    {.name = "Dish_Network", .wire = &kDish, .device = {11, 5}, .subdevice = {6, 5},
     .function = {0, 6, true}},
    {.name = "Dish_Network", .wire = &kDishNext, .device = {11, 5}, .subdevice = {6, 5},
     .function = {0, 6, true}},
    {.name = "Dishplayer", .wire = &kDishplayer, .msb = true, .device = {11, 2},
     .subdevice = {6, 5}, .function = {0, 6}},
    {.name = "Dishplayer", .wire = &kDishplayerNext, .msb = true, .device = {11, 2},
     .subdevice = {6, 5}, .function = {0, 6}},
    {.name = "Mitsubishi", .wire = &kMitsubishi, .device = {0, 8}, .function = {8, 8}},
    {.name = "Mitsubishi", .wire = &kMitsubishiFast, .device = {0, 8}, .function = {8, 8}},
    {.name = "Akai", .wire = &kAkai, .device = {0, 3}, .function = {3, 7}, .finish = read_akai},
    {.name = "Matsui", .wire = &kMatsui, .device = {0, 3}, .function = {3, 7}},
    {.name = "Thomson7", .wire = &kThomson, .device = {0, 4}, .function = {5, 7},
     .extras = {{"T=", {4, 1}}}},
    {.name = "Viewstar", .wire = &kViewstar, .function = {0, 5}, .finish = read_complemented},
    {.name = "Archer", .wire = &kArcher, .function = {0, 5}},
    {.name = "Jerrold", .wire = &kJerrold, .function = {0, 5}},
    {.name = "Jerrold", .wire = &kJerroldSlow, .function = {0, 5}},
    {.name = "Fisher6", .wire = &kFisher, .function = {0, 6}},
    {.name = "pid-0001", .wire = &kPid0001, .msb = true, .function = {0, 5}},
    {.name = "pid-0004", .wire = &kPid0004, .msb = true, .function = {0, 6}},
};
static_assert(are_sound(kRows));

// clang-format on

constexpr size_t kRowCount = std::size(kRows);
constexpr int kMostBursts = frame::kMostBursts;

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
        if (candidate.wire.distance()->bursts() != bursts) continue;
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

std::span<const row* const> distance_rows() {
  return kIndex.rows;
}

std::span<const row* const> distance_rows(int bursts) {
  if (bursts < 0 || bursts > kMostBursts) return {};
  const auto at = static_cast<size_t>(bursts);
  return std::span(kIndex.rows)
      .subspan(kIndex.first[at], static_cast<size_t>(kIndex.first[at + 1]) - kIndex.first[at]);
}

}  // namespace analysis
