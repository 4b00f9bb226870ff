// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/frame.h"

#include <algorithm>

namespace analysis {

frame::frame(std::span<const float> signal, int carrier)
    : reach(static_cast<int>(signal.size() / 2)),
      sent(reach),
      gap_before(kSilenceUs),
      carrier_hz(carrier) {
  begin(signal.data(), reach);
  close();
}

void frame::begin(const float* at, int bursts) {
  first = at;
  length = bursts;
  on_times.clear();
  off_times.clear();
  burst_lengths.clear();
  total_us = 0;
  for (int i = 0; i < length - 1; ++i) {
    on_times.insert(first + 2 * i);
    off_times.insert(first + 2 * i + 1);
    burst_lengths.insert1(first + 2 * i);
    total_us += burst(i);
  }
  burst_lengths.findMid();
}

void frame::close() {
  const float* const last = first + 2 * (length - 1);
  on_times.insert(last);
  total_us += last[0];
  trailing_gap = last[1];
  largest_us = std::max(on_times.largest, off_times.largest);
  framing_gap = std::min(trailing_gap, gap_before);
}

void frame::grow() {
  const float* const last = first + 2 * (length - 1);
  total_us += trailing_gap;
  off_times.insert(last + 1);
  burst_lengths.insert(last);
  ++length;
}

bool frame::lead_in(float minTotal, float maxTotal, float maxOn, float minOff, float extra) const {
  const float total = burst(0);
  return off(0) >= minOff && on(0) <= maxOn && minTotal <= total && total <= maxTotal &&
         total_us >= total + extra;
}

}  // namespace analysis
