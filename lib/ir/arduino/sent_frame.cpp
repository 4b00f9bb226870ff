// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/sent_frame.h"

namespace arduino {

using receiver::distortion;

distortion distortion_of(std::span<const uint16_t> durations, const sent_frame& sent, size_t from) {
  unsigned marks_us = 0;
  unsigned spaces_us = 0;
  unsigned sent_marks_us = 0;
  unsigned sent_spaces_us = 0;
  for (size_t i = from; i + 1 < durations.size(); i += 2) {
    marks_us += durations[i];
    spaces_us += durations[i + 1];
    sent_marks_us += sent[i];
    sent_spaces_us += sent[i + 1];
  }
  const size_t bursts = (durations.size() - from) / 2;
  const double clock = double(marks_us + spaces_us) / (sent_marks_us + sent_spaces_us);
  return {clock, (marks_us - clock * sent_marks_us) / double(bursts)};
}

bool lead_space_fits(std::span<const uint16_t> durations, const symbol& sent,
                     const distortion& found) {
  const double mark_off = found.mark_off(durations[0], sent.mark_us);
  return receiver::first_space_is_plausible(found, mark_off, durations[1], sent.space_us);
}

}  // namespace arduino
