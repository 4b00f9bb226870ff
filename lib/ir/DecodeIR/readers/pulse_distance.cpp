// SPDX-License-Identifier: GPL-3.0-or-later
// The tolerances come from captured remotes: burst lengths hold within a few per cent, marks do
// not.
#include "lib/ir/DecodeIR/readers/pulse_distance.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "lib/ir/receiver.h"

namespace analysis {
namespace {

// A symbol this far from both nominal lengths, as a fraction of the nearer one, may be either.
constexpr float kSureTolerance = 0.28F;
// The narrow bounds once the clock is known: a fraction of the nominal length and a rest in µs for
// the edges' jitter, at most a fraction of the difference between the two symbols.
constexpr float kSymbolTolerance = 0.045F;
constexpr float kSymbolJitterUs = 60;
// The bounds for a frame without checks, which has to be cleaner.
constexpr float kStrictTolerance = 0.025F;
constexpr float kStrictJitterUs = 50;
// A symbol that may be either is not read at all beyond this fraction of its nominal length.
constexpr float kUnsureTolerance = 0.45F;
constexpr float kSymbolShare = 0.3F;
// Marks against their mean.
constexpr float kMarkTolerance = 0.15F;
constexpr float kMarkJitterUs = 45;
constexpr float kJitterShare = 0.25F;  // jitter of short marks, as a fraction of the mark
constexpr float kDamagedMark = 0.6F;
constexpr float kLongestStop = 2.6F;  // of a mark
// Lead-in and split bursts.
constexpr float kLeadTolerance = 0.06F;
constexpr float kLeadMarkTolerance = 0.05F;
constexpr float kLeadJitterUs = 110;
constexpr float kDamagedLead = 0.3F;
constexpr int kMostDamaged = 1;

bool near(float value, float wanted, float tolerance) {
  return std::fabs(value - wanted) <= tolerance;
}

float length(const float* burst) {
  return burst[0] + burst[1];
}

/// Whether a first mark fits. The receiver's gain settles during it, so it may be longer at the
/// cost of the space after it.
bool lead_mark_fits(float found, float on, float off, float jitter) {
  const float tolerance = kLeadMarkTolerance * on + jitter;
  const float settling = receiver::settling(on, off, receiver::kSettlingLead) + kMarkJitterUs;
  return found >= on - tolerance && found <= on + std::max(tolerance, settling);
}

/// The steps of read_pulse_distance; each returns false when the frame does not fit.
class distance_reader {
 public:
  distance_reader(const pulse_distance& wire, const float* frame, bit_buffer* bits,
                  distance_fit* fit)
      : wire_(wire),
        frame_(frame),
        data_(frame + (wire.has_lead() ? 2 : 0)),
        split_(wire.split.at >= 0 ? wire.split.at : wire.bits),
        bits_(*bits),
        fit_(*fit),
        mark_(wire.mark * wire.unit),
        zero_((wire.mark + wire.zero) * wire.unit),
        one_((wire.mark + wire.one) * wire.unit) {}

  bool run() {
    fit_ = {};
    return lead_is_near() && read_bits() && clock() && symbols_fit() && marks_fit() &&
           lead_fits() && split_fits() && stop_fits();
  }

 private:
  bool refuse(const refusal& why) {
    fit_.why = why;
    return false;
  }
  /// The number of the i-th symbol's burst in the frame.
  [[nodiscard]] int burst_of(int i) const {
    return (wire_.has_lead() ? 1 : 0) + (i >= split_ ? i + 1 : i);
  }
  /// The burst of the i-th symbol.
  [[nodiscard]] const float* symbol(int i) const { return data_ + 2 * (i >= split_ ? i + 1 : i); }

  bool lead_is_near() {
    if (!wire_.has_lead()) return true;
    const float nominal = (wire_.lead.on + wire_.lead.off) * wire_.unit;
    const float slack = kLeadTolerance + kLeadJitterUs / nominal;
    const auto fits = [&](float found, float wanted) {
      const float clock = found / wanted;
      return clock > wire_.fastest - slack && clock < wire_.slowest + slack;
    };
    if (fits(length(frame_), nominal) || fits(frame_[1], wire_.lead.off * wire_.unit) ||
        fits(frame_[0], wire_.lead.on * wire_.unit)) {
      return true;
    }
    return refuse({reason::lead_in, 0, length(frame_), (wire_.fastest - slack) * nominal,
                   (wire_.slowest + slack) * nominal});
  }

  bool read_bits() {
    const float middle = (zero_ + one_) / 2;
    for (int i = 0; i < wire_.bits; ++i) {
      const float found = length(symbol(i));
      const bool one = (found > middle) == (one_ > zero_);
      const float nominal = one ? one_ : zero_;
      bits_.append(one);
      if (near(found, nominal, kSureTolerance * nominal)) {
        const auto kind = static_cast<size_t>(one);
        nominal_sum_[kind] += nominal;
        found_sum_[kind] += found;
      } else if (++damaged_ > kMostDamaged || !near(found, nominal, kUnsureTolerance * nominal)) {
        return refuse(
            refusal::off(reason::symbol, burst_of(i), found, nominal, kSureTolerance * nominal));
      } else {
        fit_.unsure_bit = damaged_symbol_ = i;
      }
    }
    return true;
  }

  bool clock() {
    const float nominal = nominal_sum_[0] + nominal_sum_[1];
    if (nominal <= 0) return refuse({reason::clock});
    fit_.scale = (found_sum_[0] + found_sum_[1]) / nominal;
    if (fit_.scale < wire_.fastest || fit_.scale > wire_.slowest) {
      return refuse({reason::clock, -1, fit_.scale, wire_.fastest, wire_.slowest});
    }
    if (nominal_sum_[0] <= 0 || nominal_sum_[1] <= 0) return true;
    fit_.skew = found_sum_[0] / nominal_sum_[0] - found_sum_[1] / nominal_sum_[1];
    const float most = wire_.most_skew();
    return near(fit_.skew, 0, most) || refuse({reason::skew, -1, fit_.skew, -most, most});
  }

  bool symbols_fit() {
    const float most = kSymbolShare * std::fabs(one_ - zero_);
    for (int i = 0; i < wire_.bits; ++i) {
      if (i == damaged_symbol_) continue;
      const float nominal = fit_.scale * (bits_.getBit(i) != 0 ? one_ : zero_);
      const float tolerance =
          std::min(most, kSymbolTolerance * nominal + std::min(kSymbolJitterUs, mark_));
      const float off = std::fabs(length(symbol(i)) - nominal);
      if (off > kStrictTolerance * nominal + std::min(kStrictJitterUs, mark_)) ++fit_.loose;
      if (off <= tolerance) continue;
      fit_.damaged = true;
      damaged_symbol_ = i;
      if (++damaged_ > kMostDamaged) {
        return refuse(
            refusal::off(reason::symbol, burst_of(i), length(symbol(i)), nominal, tolerance));
      }
    }
    return true;
  }

  bool marks_fit() {
    float sum = 0;
    int count = 0;
    for (int i = 0; i < wire_.bits; ++i) {
      if (i == damaged_symbol_) continue;
      sum += symbol(i)[0];
      ++count;
    }
    if (count == 0) return refuse({reason::mark});
    const float mean = sum / static_cast<float>(count);
    const float nominal = fit_.scale * mark_;
    fit_.bias = mean - nominal;
    if (!mean_mark_fits(mean)) return false;
    mark_tolerance_ = kMarkTolerance * nominal + std::min(kMarkJitterUs, kJitterShare * nominal);
    for (int i = 0; i < wire_.bits; ++i) {
      const float mark = symbol(i)[0];
      if (i == damaged_symbol_ || near(mark, mean, mark_tolerance_)) continue;
      if (++damaged_ > kMostDamaged || !near(mark, mean, kDamagedMark * nominal)) {
        return refuse(refusal::off(reason::mark, burst_of(i), mark, mean, mark_tolerance_));
      }
    }
    return damaged_symbol_ < 0 || damaged_symbol_fits(mean) ||
           refuse(refusal::off(reason::mark, burst_of(damaged_symbol_), symbol(damaged_symbol_)[0],
                               mean, mark_tolerance_));
  }

  [[nodiscard]] bool mean_mark_fits(float mean) {
    const refusal why = wire_.mark_refusal(mean, fit_.scale);
    return why.why == reason::none || refuse(why);
  }

  /// Of the damaged symbol either the mark or the space is whole.
  [[nodiscard]] bool damaged_symbol_fits(float mean) const {
    const float* const burst = symbol(damaged_symbol_);
    const auto fits = [&](float nominal) {
      const float space = nominal * fit_.scale - mean;
      return near(burst[1], space, mark_tolerance_ + kSymbolTolerance * space);
    };
    return near(burst[0], mean, mark_tolerance_) || fits(zero_) || fits(one_);
  }

  bool lead_fits() {
    if (!wire_.has_lead()) return true;
    const float on = wire_.lead.on * wire_.unit * fit_.scale;
    const float off = wire_.lead.off * wire_.unit * fit_.scale;
    const float jitter = std::min(kLeadJitterUs, on);
    const bool total_fits = near(length(frame_), on + off, kLeadTolerance * (on + off) + jitter);
    const float mark_off = frame_[0] - on - fit_.bias;
    const bool space_fits =
        frame_[1] > off - fit_.bias - std::max(mark_off, 0.0F) - kLeadTolerance * off - jitter;
    if (total_fits && space_fits && lead_mark_fits(frame_[0], on + fit_.bias, off, jitter)) {
      return true;
    }
    fit_.damaged = true;
    const bool on_fits = near(frame_[0], on + fit_.bias, kLeadMarkTolerance * on + jitter);
    const bool off_fits = near(frame_[1], off - fit_.bias, kLeadTolerance * off + jitter);
    const bool one_fits = total_fits || on_fits || off_fits;
    return (one_fits && near(frame_[0], on, kDamagedLead * on) &&
            near(frame_[1], off, kDamagedLead * off) && ++damaged_ <= kMostDamaged) ||
           refuse(refusal::off(reason::lead_in, 0, length(frame_), on + off,
                               kLeadTolerance * (on + off) + jitter));
  }

  [[nodiscard]] bool split_fits() {
    if (wire_.split.at < 0) return true;
    const float on = wire_.split.burst.on * wire_.unit * fit_.scale;
    const float total = on + wire_.split.burst.off * wire_.unit * fit_.scale;
    const float jitter = std::min(kLeadJitterUs, on);
    const float* const burst = data_ + 2 * wire_.split.at;
    const float tolerance = kLeadTolerance * total + jitter;
    return (near(length(burst), total, tolerance) &&
            near(burst[0], on + fit_.bias, kLeadMarkTolerance * on + jitter)) ||
           refuse(
               refusal::off(reason::split, burst_of(split_) - 1, length(burst), total, tolerance));
  }

  bool stop_fits() {
    const float nominal = (wire_.stop > 0 ? wire_.stop * wire_.unit : mark_) * fit_.scale;
    const float found = frame_[2 * (wire_.bursts() - 1)];
    if (near(found, nominal + fit_.bias, mark_tolerance_)) return true;
    return (found < kLongestStop * nominal && ++damaged_ <= kMostDamaged) ||
           refuse(refusal::off(reason::stop, wire_.bursts() - 1, found, nominal + fit_.bias,
                               mark_tolerance_));
  }

  const pulse_distance& wire_;
  const float* frame_;
  const float* data_;  // the first data burst
  int split_;          // symbols before the split
  bit_buffer& bits_;
  distance_fit& fit_;
  float mark_, zero_, one_;  // nominal lengths in µs; those of the symbols with their spaces
  std::array<float, 2> nominal_sum_{};  // µs in all zeros and all ones
  std::array<float, 2> found_sum_{};
  float mark_tolerance_ = 0;
  int damaged_ = 0;  // durations
  int damaged_symbol_ = -1;
};

}  // namespace

bool read_pulse_distance(const pulse_distance& wire, const float* frame, bit_buffer* bits,
                         distance_fit* fit) {
  return distance_reader(wire, frame, bits, fit).run();
}

bool is_ditto(const pulse_distance& wire, const ditto& form, const float* at, const float* end,
              float scale, float bias) {
  const ptrdiff_t bursts = form.bursts();
  if (end - at < 2 * bursts) return false;
  const float unit = wire.unit * scale;
  const float on = form.lead.on * unit;
  const float total = on + form.lead.off * unit;
  if (!near(length(at), total, kLeadTolerance * total) ||
      !lead_mark_fits(at[0], on + bias, form.lead.off * unit, kLeadJitterUs)) {
    return false;
  }
  const float mark = wire.mark * unit;
  const float tolerance = kMarkTolerance * mark + kMarkJitterUs;
  for (int i = 1; i <= form.bits; ++i) {
    const float* const burst = at + ptrdiff_t{2} * i;
    const auto fits = [&](float space) {
      const float nominal = mark + space * unit;
      return near(length(burst), nominal, kSymbolTolerance * nominal + kSymbolJitterUs);
    };
    if (!near(burst[0], mark + bias, tolerance) || !(fits(wire.zero) || fits(wire.one)))
      return false;
  }
  const float* const stop = at + 2 * (bursts - 1);
  return near(stop[0], mark + bias, tolerance) && stop[1] >= wire.min_gap;
}

}  // namespace analysis
