// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/sent_frame.h"

#include <algorithm>

namespace arduino {

using receiver::distortion;
using receiver::within;

distortion distortion_of(std::span<const uint16_t> durations, const sent_frame& sent, size_t from) {
  const size_t end = durations.size() - 1;
  unsigned received_us = 0;
  unsigned sent_us = 0;
  for (size_t i = from; i < end; i++) {
    received_us += durations[i];
    sent_us += sent[i];
  }
  const double clock = double(received_us) / sent_us;
  std::array<double, IRrecv::kBufferLength / 2> off;
  size_t marks = 0;
  for (size_t i = from; i < end; i += 2) off[marks++] = durations[i] - clock * sent[i];
  const auto median = off.begin() + marks / 2;
  std::nth_element(off.begin(), median, off.begin() + marks);
  return {clock, *median};
}

bool lead_fits(std::span<const uint16_t> durations, const symbol& sent, const distortion& found,
               const lead_tolerance& tolerance, bool settles) {
  const double mark_off = found.mark_off(durations[0], sent.mark_us);
  const double space_off = found.space_off(durations[1], sent.space_us);
  const double later =
      settles ? receiver::settling_us(mark_off, space_off, sent.mark_us, sent.space_us) : 0;
  return within(found.burst_off(durations[0] + durations[1], sent.burst_us()),
                tolerance.burst_us) &&
         within(mark_off - later, tolerance.mark_us) &&
         within(space_off + later, tolerance.space_us);
}

}  // namespace arduino
