// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/mark_space.h"

#include <algorithm>

namespace arduino {
namespace {

using receiver::distortion;
using receiver::first_mark_is_plausible;
using receiver::jitter_us;
using receiver::within;

// A frame as read, and what the receiver made of it.
struct reading {
  uint64_t bits = 0;
  sent_frame sent;
  distortion found;

  void add_bit(bool bit) { bits = bits << 1 | static_cast<unsigned>(bit); }
};

// Splits at the middle between the two bursts, which neither bias nor clock can reach. A last
// symbol that ends the frame has no burst: its mark is compared with the others.
void read_symbols(const mark_space& row, std::span<const uint16_t> durations, reading& r) {
  const unsigned zero = row.zero.burst_us();
  const unsigned one = row.one.burst_us();
  const unsigned middle = (zero + one) / 2;
  const std::array<symbol, 2> symbols = {row.zero, row.one};  // no branch could tell the bits
  for (size_t i = 0; i < row.lead.count; i++) r.sent.add(row.lead.sent[i]);
  for (size_t i = r.sent.size(); i + 1 < durations.size(); i += 2) {
    const unsigned burst = durations[i] + durations[i + 1];
    const bool bit = (burst > middle) == (one > zero);
    r.add_bit(bit);
    r.sent.add(symbols[bit]);
  }
  r.found = distortion_of(durations, r.sent, 2 * row.lead.count);
  if (row.end == ending::last_symbol) {
    const double middle_mark = (row.zero.mark_us + row.one.mark_us) / 2.0;
    r.add_bit(r.found.mark_off(durations.back(), middle_mark) > 0);
  }
}

// How many symbols may be damaged: their burst is off by more than jitter, though not by so much
// that it could be another symbol. An edge that came late shows in two symbols. A code that proves
// little has to have many symbols for one of them to be damaged: three of 2,151 captured
// frames of 28 bits and more have one.
unsigned most_damaged(const mark_space& row, bool proven) {
  constexpr unsigned kSymbolsForOne = 24;
  return proven ? receiver::kMostDamaged : row.bits / kSymbolsForOne;
}

// Whether the bursts behind the first one of a lead-in fit, each and, as a root mean square, all of
// them: trains of other lengths hold no single tolerance as a clock that is not theirs, or lengths
// that lie on both sides of a symbol's. Captured frames reach a spread of 0.39 times jitter. A mark
// that carries no bit may be off by half where its burst holds.
bool bursts_fit(const mark_space& row, std::span<const uint16_t> durations, const reading& r,
                bool proven) {
  const bool marks_carry = row.zero.mark_us != row.one.mark_us;
  unsigned damaged = 0;
  unsigned bursts = 0;
  double squares = 0;
  for (size_t i = row.lead.count > 0 ? 2 : 0; i + 1 < durations.size(); i += 2) {
    const double sent_us = r.sent[i] + r.sent[i + 1];
    const double tolerance = jitter_us(sent_us);
    const double burst_off = r.found.burst_off(durations[i] + durations[i + 1], sent_us);
    const double mark_off = r.found.mark_off(durations[i], r.sent[i]);
    const double mark_tolerance =
        marks_carry ? jitter_us(r.sent[i]) : receiver::kMarkWithoutBit * r.sent[i];
    if (!within(burst_off, receiver::kDamagedBurst * tolerance) ||
        !within(mark_off, mark_tolerance))
      return false;
    if (!within(burst_off, tolerance)) damaged++;
    squares += burst_off * burst_off / (tolerance * tolerance);
    bursts++;
  }
  return damaged <= most_damaged(row, proven) &&
         squares <= receiver::kSpread * receiver::kSpread * bursts;
}

// The last mark has no space to be measured with, and is the one that receivers cut or stretch
// most. One that carries a bit has to fit like the others.
bool last_mark_fits(const mark_space& row, double us, const reading& r, bool proven) {
  if (row.end == ending::last_symbol) {
    const symbol& sent = (r.bits & 1) != 0 ? row.one : row.zero;
    return within(r.found.mark_off(us, sent.mark_us), jitter_us(sent.mark_us));
  }
  return receiver::last_mark_is_plausible(us - r.found.bias_us, row.zero.mark_us, proven);
}

}  // namespace

bool match_row(const mark_space& row, const frame& f, arduino_result& result) {
  if (f.durations.size() != row.length()) return false;
  if (!f.ends_after(std::max(row.zero.space_us, row.one.space_us))) return false;
  const bool has_lead = row.lead.count > 0;
  if (has_lead && !first_mark_is_plausible(f.durations[0], row.lead.sent[0].mark_us)) return false;
  reading r;
  read_symbols(row, f.durations, r);
  const proof found = row.check != nullptr ? row.check(r.bits) : proof::weak;
  if (found == proof::refuted) return false;
  const bool proven = found == proof::strong;
  const clocks& allowed = proven ? kProvenClocks : row.seen;
  if (r.found.clock < allowed.low || r.found.clock > allowed.high) return false;
  if (!receiver::bias_is_plausible(r.found.bias_us)) return false;
  if (!last_mark_fits(row, f.durations.back(), r, proven)) return false;
  if (has_lead && !lead_space_fits(f.durations, row.lead.sent[0], r.found)) return false;
  if (!bursts_fit(row, f.durations, r, proven)) return false;
  result = {row.type, uint32_t(r.bits), row.bits, 0};
  return true;
}

bool match_any(std::span<const mark_space> rows, const frame& f, arduino_result& result) {
  return std::any_of(rows.begin(), rows.end(),
                     [&](const mark_space& row) { return match_row(row, f, result); });
}

}  // namespace arduino
