// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/arduino/mark_space.h"

#include <algorithm>
#include <array>

namespace arduino {
namespace {

// Bits determined by others that vouch for a lead-in or last mark out of line, and for each odd
// symbol. An edge that came late shows in two symbols.
constexpr int kEndsProof = 8;
constexpr int kSymbolProof = 4;
constexpr int kMostForgiven = 2;

// The symbols of a frame as read, before anything is known about the receiver.
struct reading {
  uint64_t bits;
  fit found;
};

// Splits at the middle between the two bursts, which neither stretch nor clock can reach.
reading read_symbols(const mark_space& row, std::span<const uint16_t> symbols) {
  const unsigned zero = row.zero_burst_us();
  const unsigned one = row.one_burst_us();
  const unsigned middle = (zero + one) / 2;
  uint64_t bits = 0;
  unsigned ones = 0;
  unsigned total = 0;
  std::array<uint16_t, IRrecv::kBufferLength / 2> marks{};
  for (size_t i = 0; i < row.bits; i++) {
    const unsigned burst = symbols[2 * i] + symbols[2 * i + 1];
    const bool bit = (burst > middle) == (one > zero);
    bits = bits << 1 | (bit ? 1U : 0U);
    ones += bit ? 1U : 0U;
    total += burst;
    marks[i] = symbols[2 * i];
  }
  const unsigned nominal = ones * one + (row.bits - ones) * zero;
  const double scale = double(total) / nominal;
  const auto median = marks.begin() + row.bits / 2;
  std::nth_element(marks.begin(), median, marks.begin() + row.bits);
  return {bits, {scale, *median - scale * row.sent.mark_us}};
}

bool receiver_is_plausible(const limits& seen, const fit& found) {
  return found.scale >= seen.scale_low && found.scale <= seen.scale_high &&
         found.stretch_us >= -double(seen.shorter_us) && found.stretch_us <= seen.longer_us;
}

// The symbols whose burst jitter alone does not explain, or kTooMany where one is so far out that
// it could be another symbol. A mark may be odd where its burst holds.
constexpr int kTooMany = 1000;

int count_odd(const mark_space& row, std::span<const uint16_t> symbols, const reading& r) {
  const double tolerance = jitter_us(row.sent.mark_us);
  const double limit = 2 * tolerance;
  const double zero = row.zero_burst_us();
  const double one = row.one_burst_us();
  int odd = 0;
  for (size_t i = 0; i < row.bits; i++) {
    const bool bit = (r.bits >> (row.bits - 1 - i) & 1U) != 0;
    const double burst = symbols[2 * i] + symbols[2 * i + 1];
    const double burst_off = r.found.burst_off(burst, bit ? one : zero);
    const double mark_off = r.found.mark_off(symbols[2 * i], row.sent.mark_us);
    if (!within(burst_off, limit) || !within(mark_off, limit)) return kTooMany;
    if (!within(burst_off, tolerance)) odd++;
  }
  return odd;
}

// Far enough from half the nominal length, which is another protocol's lead-in.
constexpr bool odd_lead_mark(double us, double nominal_us) {
  return us >= 0.7 * nominal_us && us <= 1.3 * nominal_us;
}

// The lead-in in pairs of mark and space, as the symbols predict it. Gain control makes its first
// mark the least reliable one: a strong proof vouches for it where its space fits.
bool lead_fits(const mark_space& row, std::span<const uint16_t> lead, const fit& found, int proof) {
  for (size_t i = 0; i < lead.size(); i += 2) {
    const double mark = row.lead.us[i];
    const double space = row.lead.us[i + 1];
    const double jitter = jitter_us(row.sent.mark_us);
    const auto tolerance = [&](double us) { return std::max(jitter, row.lead.tolerance * us); };
    const double mark_off = found.mark_off(lead[i], mark);
    const double space_off = found.space_off(lead[i + 1], space);
    if (within(found.burst_off(lead[i] + lead[i + 1], mark + space), tolerance(mark + space))) {
      const double later = i == 0 ? settling_us(mark_off, space_off, mark, space) : 0;
      if (within(mark_off - later, tolerance(mark)) &&
          within(space_off + later, tolerance(space))) {
        continue;
      }
    }
    if (!within(space_off, tolerance(space))) return false;
    if (proof < kEndsProof || !odd_lead_mark(lead[i], mark)) return false;
  }
  return true;
}

// The last mark has no space to be measured with, and is the one that receivers cut or stretch
// most.
bool last_mark_fits(const mark_space& row, double us, int proof) {
  constexpr double kShortest = 0.4;
  constexpr double kLongest = 1.8;
  constexpr double kLongestProven = 3.2;
  return us >= kShortest * row.sent.mark_us &&
         us <= (proof >= kEndsProof ? kLongestProven : kLongest) * row.sent.mark_us;
}

}  // namespace

bool match_row(const mark_space& row, const frame& f, arduino_result& result) {
  if (f.durations.size() != row.length()) return false;
  if (!f.ends_after(std::max(row.sent.zero_us, row.sent.one_us))) return false;
  const auto lead = f.durations.first(row.lead.count);
  const auto symbols = f.durations.subspan(row.lead.count);
  const reading r = read_symbols(row, symbols);
  if (!receiver_is_plausible(row.seen, r.found)) return false;
  const int proof = row.check != nullptr ? row.check(r.bits) : 0;
  if (proof < 0) return false;
  if (!last_mark_fits(row, symbols.back(), proof)) return false;
  if (!lead_fits(row, lead, r.found, proof)) return false;
  const int forgiven = std::min(proof / kSymbolProof, kMostForgiven);
  if (count_odd(row, symbols, r) > forgiven) return false;
  result = {row.type, uint32_t(r.bits), row.bits, 0};
  return true;
}

}  // namespace arduino
