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
}

void frame::begin(const float* at, int bursts) {
  first = at;
  begun_ = bursts;
  length = 1;
  on_times.clear();
  off_times.clear();
  on_times.insert(at);
  total_us = at[0];
  grow_to(bursts);
}

void frame::grow_to(int bursts) {
  for (; length < bursts; ++length) {
    const float* const next = first + 2 * length;
    off_times.insert(next - 1);
    on_times.insert(next);
    total_us += next[-1] + next[0];
  }
  trailing_gap = off(length - 1);
  largest_us = std::max(on_times.largest, off_times.largest);
  framing_gap = std::min(trailing_gap, gap_before);
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
