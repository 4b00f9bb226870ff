// SPDX-License-Identifier: GPL-3.0-or-later
// How a remote of lircd.conf sends its codes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companions/formats/pattern.h"

namespace companions {

/// A mark and the space behind it, in µs; 0 for none.
using mark_space = std::array<int, 2>;

/// The parameters of one remote, as lircd.conf names them.
struct lircd_remote {
  enum class coding { kRaw, kSpace, kSpaceFirst, kTwoPhase, kTwoBits, kNibbles, kUnknown };

  std::string name = {};
  coding bits_by = coding::kSpace;
  bool least_first = false;   // REVERSE
  bool const_length = false;  // the gap counts from the start of the frame
  bool no_head_repeat = false, no_foot_repeat = false, repeat_header = false;
  int bits = 0, pre_data_bits = 0, post_data_bits = 0;
  uint64_t pre_data = 0, post_data = 0;
  uint64_t rc6_mask = 0;  // bits sent at double length; bit 0 is the last one sent
  mark_space header = {}, zero = {}, one = {}, two = {}, three = {};
  mark_space pre = {}, post = {}, foot = {}, repeat = {};
  int plead = 0, ptrail = 0;
  int gap = 0, repeat_gap = 0;
  std::optional<int> carrier_hz = {};
  std::optional<double> duty_cycle = {};
};

/// What this remote sends for a code, or several in a row. Says why it cannot.
std::optional<std::string> render_lircd(const lircd_remote& remote,
                                        const std::vector<uint64_t>& codes, pattern& to);

/// Adds the silence behind a frame that this remote sends.
void add_gap(const lircd_remote& remote, int gap, std::vector<int>& frame);

}  // namespace companions
