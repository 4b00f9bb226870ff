// SPDX-License-Identifier: GPL-3.0-or-later
// The checks and readings of pulse-distance protocols that a table row cannot say.
#pragma once

#include "lib/ir/DecodeIR/protocols/rows.h"

namespace analysis {

// Marks between these may be Akai's that a receiver made longer, or Matsui's made shorter.
inline constexpr float kMatsuiShortestMarkUs = 425;
inline constexpr float kAkaiLongestMarkUs = 452;

// Between Mitsubishi's marks, a quarter of the short burst, and JVC's, half of it.
inline constexpr float kJvcShortestMarkUs = 385;

// Checks: whether the frame's check bits agree with its data.
bool all_bytes_complemented(const reading& read);
bool anthem_sum(const reading& read);
bool bytes_add_up_to_255(const reading& read);
bool denon_k_xor(const reading& read);
bool gree_state(const reading& read);
bool gi4dtv_parity(const reading& read);
bool gi_cable_sum(const reading& read);
bool kaseikyo_xor(const reading& read);
bool last_byte_is_sum(const reading& read);
bool lego_xor(const reading& read);
bool lg_sum(const reading& read);
bool lumagen_parity(const reading& read);
bool maker_parity(const reading& read);
bool mitsubishi_k_sum(const reading& read);
bool midea_sum(const reading& read);
bool pairs_differ(const reading& read);
bool samsung_count(const reading& read);
bool sharp_dvd_xor(const reading& read);
bool state_complemented(const reading& read);
bool teac_k_sum(const reading& read);
bool toshiba_xor(const reading& read);
bool xor_of_three(const reading& read);
bool xor_of_four(const reading& read);

// Readings: complete the answer; false refuses the frame.
bool is_not_nec(const reading& read, answer* out);
bool read_akai(const reading& read, answer* out);
bool read_anthem(const reading& read, answer* out);
bool read_complemented(const reading& read, answer* out);
bool read_gi4dtv(const reading& read, answer* out);
bool read_gree(const reading& read, answer* out);
bool read_gree_next(const reading& read, answer* out);
bool read_iodata(const reading& read, answer* out);
bool read_jvc(const reading& read, answer* out);
bool read_kaseikyo(const reading& read, answer* out);
bool read_nec(const reading& read, answer* out);
bool read_nec40(const reading& read, answer* out);
bool read_midea(const reading& read, answer* out);
bool read_necx(const reading& read, answer* out);
bool read_48_nec(const reading& read, answer* out);
bool read_recs80(const reading& read, answer* out);
bool read_pid0083(const reading& read, answer* out);
bool tell_bytes(const reading& read, answer* out);

}  // namespace analysis
