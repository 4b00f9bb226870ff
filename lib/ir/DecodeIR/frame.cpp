// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/frame.h"

#include <algorithm>

namespace analysis {

frame::frame(std::span<const float> signal, int carrier)
    : reach(static_cast<int>(signal.size() / 2)), sent(reach), carrier_hz(carrier) {
  begin(signal.data(), reach, kSilenceUs);
}

void frame::begin(const float* at, int bursts, float gap) {
  first = at;
  space_before_ = gap;
  begun_ = bursts;
  length = 1;
  on_times.clear();
  off_times.clear();
  on_times.insert(at);
  total_us = at[0];
  grow_to(bursts);
}

void frame::grow_to(int bursts) {
  // Copies, so that the loop keeps them in registers.
  setOn on = on_times;
  setOff off = off_times;
  float sum_us = total_us;
  for (; length < bursts; ++length) {
    const float* const next = first + 2 * length;
    off.insert(next - 1);
    on.insert(next);
    sum_us += next[-1] + next[0];
  }
  on_times = on;
  off_times = off;
  total_us = sum_us;
  take_gaps();
  largest_us = std::max(on_times.largest, off_times.largest);
  framing_gap = std::min(trailing_gap, gap_before);
}

/// Finds the gaps on both sides; a stray mark inside one is part of it.
void frame::take_gaps() {
  const float* const last = first + 2 * (length - 1);
  trailing_gap = last[1];
  if (length < reach && is_gap(trailing_gap) && receiver::is_stray(last[2], last[3])) {
    trailing_gap += last[2] + last[3];
  }
  gap_before = space_before_;
  if (before > 0 && is_gap(gap_before)) {
    const float further = before > 1 ? first[-3] : kSilenceUs;
    if (receiver::is_stray(first[-2], further)) gap_before += first[-2] + further;
  }
}

/// Whether a space is so long that it parts the frame from a stray mark, whatever lies inside.
bool frame::is_gap(float space) const {
  constexpr float kLonger = 1.1F;  // than every space of the frame, so that none of them is one
  return space >= receiver::kShortestGapUs && space > kLonger * off_times.largest;
}

setBurst frame::burst_lengths() const {
  setBurst lengths;
  for (int i = 0; i < begun_ - 1; ++i) lengths.insert1(first + 2 * i);
  lengths.findMid();
  for (int i = begun_ - 1; i < length - 1; ++i) lengths.insert(first + 2 * i);
  return lengths;
}

bool frame::lead_in(float minTotal, float maxTotal, float maxOn, float minOff, float extra) const {
  const float total = burst(0);
  return off(0) >= minOff && on(0) <= maxOn && minTotal <= total && total <= maxTotal &&
         total_us >= total + extra;
}

}  // namespace analysis
