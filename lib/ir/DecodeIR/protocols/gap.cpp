// SPDX-License-Identifier: GPL-3.0-or-later
// Pulse distance: marks of one length, and spaces whose length carries the bits.
//
//   [lead-in mark, space] (mark, short or long space)* stop mark, gap
//
//   NEC, unit 564 us: 16 units on, 8 off, then DDDDDDDD SSSSSSSS FFFFFFFF ffffffff, least
//   significant bits first (f: F complemented), a 0 as 1 on 1 off, a 1 as 1 on 3 off, stop mark 1.
//   D=4 S=251 F=8: 9024,4512, 564,564, 564,564, 564,1692, ... 564,1692, 564
//   Held key: 9024,2256, 564 every 108 ms.
//
// Most remotes ever made speak one of these codes. distance_rows.cpp lists them,
// readers/pulse_distance.cpp reads them, distance_rules.cpp holds their checks. This file lets the
// rows look at a candidate frame and answers for what no row knows: a repeat frame alone, and
// (unknown_gap.cpp) a clean frame of no known protocol.
#include <algorithm>
#include <cmath>

#include "lib/ir/DecodeIR/protocols/protocols.h"
#include "lib/ir/DecodeIR/protocols/rows.h"
#include "lib/ir/receiver.h"

namespace analysis {
namespace {

constexpr int kFewestCheckBits = 4;
// With a symbol or the lead-in damaged the timing proves less; checks have to make up for it.
constexpr int kDamagedCheckBits = 8;
constexpr int kMostLoose = 1;
// Equal bursts have one length, which has to be the right one: remotes keep their clock within a
// per cent or two.
constexpr float kUniformClockError = 0.025F;

/// A frame without data that says "the key is still held".
struct lone_ditto {
  const char* name;
  pulse_distance wire;
  ditto form;
};

constexpr float kDittoFastest = 0.93F;
constexpr float kDittoSlowest = 1.07F;
constexpr lone_ditto kLoneDittos[] = {
    {"NEC", {564, {16, 8}, 1, 1, 3, 32}, {{16, 4}}},
    {"NECx", {564, {8, 8}, 1, 1, 3, 32}, {{8, 8}, 1}},
};

/// Whether a frame without lead-in is a train of equal bursts, as lamps and motors make them.
bool is_uniform(const reading& fitted) {
  const bit_buffer& bits = fitted.bits;
  for (int i = 1; i < bits.size(); ++i) {
    if (bits.getBit(i) != bits.getBit(0)) return false;
  }
  return !fitted.from->wire.distance()->has_lead();
}

/// Whether enough checks speak for a frame that is damaged, or clock and bias for one that looks
/// like many others.
bool is_sure(const reading& fitted) {
  if (fitted.from->redundancy() < kFewestCheckBits && is_uniform(fitted) &&
      (std::abs(fitted.fit.scale - 1) > kUniformClockError ||
       std::abs(fitted.fit.bias) > receiver::kMostDittoBiasUs)) {
    return false;
  }
  const int unsure = fitted.fit.unsure_bit;
  const bool damaged = unsure >= 0 || fitted.fit.damaged || fitted.fit.loose > kMostLoose;
  if (damaged && fitted.from->redundancy() < kDamagedCheckBits) return false;
  return unsure < 0 || fitted.checks(unsure);
}

/// Lets the rows with as many bursts as the frame look at it through a reader.
std::optional<answer> read_distance(const frame& seen, decltype(read_pulse_distance)* reader) {
  const pulse_distance* read_as = nullptr;
  bool fits = false;
  reading fitted{seen, nullptr, {}, {}};
  for (const row* const candidate : distance_rows(seen.length)) {
    const pulse_distance& wire = *candidate->wire.distance();
    if (seen.gap_behind() < wire.min_gap) {
      seen.refused({reason::gap_behind, -1, seen.gap_behind(), wire.min_gap, kAnyUs},
                   candidate->name);
      continue;
    }
    if (seen.gap_before < wire.min_before || seen.gap_before > wire.max_before) {
      seen.refused({reason::gap_before, -1, seen.gap_before, wire.min_before, wire.max_before},
                   candidate->name);
      continue;
    }
    const int level = candidate->redundancy() >= kFewestCheckBits ? kCheckedLevel : kTimingLevel;
    if (level <= seen.preempt_level) continue;
    if (read_as != &wire) {
      read_as = &wire;
      fitted.bits = {};
      fits = reader(wire, seen.first, &fitted.bits, &fitted.fit);
    }
    fitted.from = candidate;
    std::optional<answer> found;
    refusal why = fitted.fit.why;
    if (fits) {
      const bool sure = is_sure(fitted);
      why.why = sure ? reason::check : reason::damage;
      if (sure && fitted.checks_hold()) found = fitted.read();
    }
    if (!found) {
      seen.refused(why, candidate->name);
      continue;
    }
    seen.proved({wire.bits, candidate->redundancy(), fitted.fit.scale, fitted.fit.bias});
    found->level = level;
    if (candidate->repeat != nullptr) {
      count_dittos(seen, wire, *candidate->repeat, fitted.fit.scale, fitted.fit.bias, &*found);
    }
    return found;
  }
  return {};
}

/// A repeat frame alone: named as its family, without numbers.
std::optional<answer> read_ditto(const frame& seen) {
  for (const lone_ditto& lone : kLoneDittos) {
    const int bursts = lone.form.bursts();
    if (seen.length != bursts) continue;
    const float nominal = (lone.form.lead.on + lone.form.lead.off) * lone.wire.unit;
    const float scale = seen.burst(0) / nominal;
    if (scale < kDittoFastest || scale > kDittoSlowest) continue;
    // Both ends tell the bias, but the first mark is longer while the receiver's gain settles.
    const float unit = lone.wire.unit * scale;
    const float first = seen.on(0) - lone.form.lead.on * unit;
    const float last = seen.on(bursts - 1) - lone.wire.mark * unit;
    const float bias =
        std::clamp(std::min(first, last), -receiver::kMostDittoBiasUs, receiver::kMostDittoBiasUs);
    const float* const end = seen.first + ptrdiff_t{2} * bursts;
    if (!is_ditto(lone.wire, lone.form, seen.first, end, scale, bias)) continue;
    answer found{lone.name};
    found.remark = "repeat frame";
    found.level = kTimingLevel;
    found.layout = {.lead = 1, .stop = true};
    count_dittos(seen, lone.wire, lone.form, scale, bias, &found);
    return found;
  }
  return {};
}

}  // namespace

std::optional<answer> gap(const frame& seen) {
  if (auto found = read_distance(seen, read_pulse_distance)) return found;
  if (auto found = read_distance(seen, read_noisy_distance)) return found;
  if (seen.preempt_level > 0 || seen.gap_behind() < kGapUs) return {};
  if (auto found = read_ditto(seen)) return found;
  return unknown_gap(seen);
}

}  // namespace analysis
