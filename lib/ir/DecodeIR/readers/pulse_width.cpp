// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/readers/pulse_width.h"

namespace analysis {
namespace {

constexpr float kSameUnits = 0.5F;  // of durations that are whole numbers of units

/// Slices a frame without lead-in whose first mark has grown while the receiver's gain settled: its
/// first burst is one of the pairs.
bool slice_settled(const frame& seen, const pulse_width& wire, slicer* frame) {
  if (wire.lead > 0 || wire.pair.zero_mark == wire.pair.one_mark) return false;
  slice_rule rule = wire.units;
  const auto begins_with = [&](int mark, int space) {
    rule.lead = mark;
    rule.lead_space = space;
    return frame->slice(seen, rule);
  };
  return begins_with(wire.pair.zero_mark, wire.pair.zero_space) ||
         begins_with(wire.pair.one_mark, wire.pair.one_space);
}

}  // namespace

bool read_pulse_width(const frame& seen, const pulse_width& wire, bit_buffer* bits, refusal* why) {
  slicer frame;
  const int last = wire.bursts() - 1;
  const auto off = [&](reason why_not, int burst, int units) {
    return refusal::off(why_not, burst, seen.on(burst),
                        static_cast<float>(units) * wire.units.unit_us,
                        wire.units.tolerance * wire.units.unit_us);
  };
  if (wire.whole_lead && seen.on(0) < wire.units.shortest_first_us(wire.units.lead)) {
    *why = off(reason::lead_in, 0, wire.units.lead);
    return false;  // before it costs more
  }
  if (!frame.slice(seen, wire.units) && !slice_settled(seen, wire, &frame)) {
    *why = frame.why();
  } else if (wire.whole_lead && frame.units(0) != wire.units.lead) {
    *why = off(reason::lead_in, 0, wire.units.lead);
  } else if (wire.stop && frame.units(frame.count() - 1) != 1) {
    *why = off(reason::stop, last, 1);
  } else if (!read_pairs(frame, wire.lead, wire.bits, wire.pair, bits)) {
    *why = {reason::symbol};
  } else {
    return true;
  }
  return false;
}

bool read_pairs(const slicer& frame, int first, int count, const pulse_pair& pair,
                bit_buffer* bits) {
  if (frame.last_damaged() && 2 * (first + count) > frame.count()) return false;
  const bool by_mark = pair.zero_mark != pair.one_mark;
  const auto zero = static_cast<float>(by_mark ? pair.zero_mark : pair.zero_space);
  const auto one = static_cast<float>(by_mark ? pair.one_mark : pair.one_space);
  bit_buffer read = frame.bits();
  read.skip_to(2 * first);
  if (!read.checkDecodeX(by_mark ? 0 : 1, count, zero, one, kSameUnits)) return false;
  for (int i = 0; i < count; ++i) {
    const int other = 2 * (first + i) + (by_mark ? 1 : 0);
    if (other >= frame.count()) break;
    const int space = read.getBit(i) != 0 ? pair.one_space : pair.zero_space;
    if (frame.units(other) != (by_mark ? space : pair.zero_mark)) return false;
  }
  bits->append(read);
  return true;
}

}  // namespace analysis
