// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/readers/levels.h"

#include <algorithm>

namespace analysis {

level_reader::level_reader(const slicer& frame, int from)
    : frame_(frame), at_(from), left_(from < frame.count() ? frame.units(from) : 0) {}

void level_reader::take(int units) {
  if (at_end()) return;
  left_ -= units;
  if (left_ > 0) return;
  ++at_;
  left_ = at_end() ? 0 : frame_.units(at_);
}

int level_reader::level(int width) {
  if (at_end()) return 0;
  if (left_ < width) return -1;
  const int found = at_ % 2 == 0 ? 1 : 0;
  take(width);
  return found;
}

bool level_reader::bits(int count, bi_phase coding, bit_buffer* to, int width) {
  for (int i = 0; i < count; ++i) {
    const int first = level(width);
    const int second = level(width);
    if (first < 0 || second < 0 || first == second) return false;
    to->append((first == 1) == (coding == bi_phase::mark_first_is_one));
  }
  return true;
}

bool level_reader::rest(int most, bi_phase coding, bit_buffer* to) {
  for (int i = 0; i < most && !at_end(); ++i) {
    if (!bits(1, coding, to)) return false;
  }
  return at_end();
}

namespace {

/// What stops it, if anything.
refusal read_sliced(const slicer& frame, const bi_phase_code& wire, bit_buffer* bits) {
  if (wire.ordinary_bias && !frame.has_ordinary_bias(wire.half_bit)) {
    return {reason::bias, -1, frame.bias()};
  }
  level_reader levels(frame);
  int level = 1;
  for (const int width : wire.lead) {
    if (width > 0 && levels.level(width) != level) return {reason::edge, levels.burst()};
    level = 1 - level;
  }
  if (levels.bits(wire.bits, wire.coding, bits) && levels.at_end()) return {};
  return {reason::edge, levels.burst()};
}

}  // namespace

bool read_bi_phase(const frame& seen, const bi_phase_code& wire, bit_buffer* bits, refusal* why) {
  slicer frame;
  if (!wire.fits_length(seen.total_us)) {
    *why = {reason::length, -1, seen.total_us, wire.shortest_us(), wire.longest_us()};
  } else if (seen.on(0) < wire.shortest_lead_us()) {
    *why = {reason::lead_in, 0, seen.on(0), wire.shortest_lead_us(), seen.total_us};
  } else if (!frame.slice(seen, wire.half_bit)) {
    *why = frame.why();
  } else {
    *why = read_sliced(frame, wire, bits);
    return !why->given();
  }
  return false;
}

bool read_phases(const bit_buffer& raw, int first, int count, const four_phase& code,
                 bit_buffer* to) {
  for (int i = 0; i < count; ++i) {
    const unsigned levels = raw.getLsb(first + i * code.units, code.units);
    const auto symbol = std::find(code.levels.begin(), code.levels.end(), levels);
    if (symbol == code.levels.end()) return false;
    const auto value = symbol - code.levels.begin();
    to->append((value & 2) != 0);
    to->append((value & 1) != 0);
  }
  return true;
}

}  // namespace analysis
