// SPDX-License-Identifier: GPL-3.0-or-later
// Slices a frame by its burst lengths and reads the fields that a row asks for. The tolerances
// come from captured remotes: burst lengths hold within a few per cent, marks do not.
#include "lib/ir/DecodeIR/recognisers/gap_engine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace gap {
namespace {

// A symbol this far from both nominal lengths, as a part of the nearer one, is out of line.
constexpr float kRoughTolerance = 0.28F;
// The narrow bounds once the clock is known: a part of the nominal length and a rest in µs for
// the edges' jitter, at most a part of the difference between the two symbols.
constexpr float kSymbolTolerance = 0.045F;
constexpr float kSymbolJitterUs = 60;
// The bounds for a frame without checks, which has to be cleaner.
constexpr float kStrictTolerance = 0.025F;
constexpr float kStrictJitterUs = 50;
// A symbol out of line is not read at all beyond this part of its nominal length.
constexpr float kGuessRange = 0.45F;
constexpr float kSymbolShare = 0.3F;
// The mean lengths of the two symbols have to tell the same clock.
constexpr float kClockTolerance = 0.07F;
constexpr float kClockJitterUs = 25;
// Marks against their mean.
constexpr float kMarkTolerance = 0.15F;
constexpr float kMarkJitterUs = 45;
constexpr float kJitterShare = 0.25F;  // jitter of short marks, as a part of the mark
constexpr float kOddMarkRange = 0.6F;
constexpr float kShortestMarkPart = 0.35F;
constexpr float kLongestBiasUs = 220;
constexpr float kLeastBiasUs = -200;
constexpr float kLongestBiasMark = 1.05F;  // of the mark
constexpr float kLongestBiasPart = 0.75F;  // of the shortest space
constexpr float kLongestStopPart = 2.6F;   // of a mark
// Lead-in and split bursts.
constexpr float kLeadTolerance = 0.06F;
constexpr float kLeadMarkTolerance = 0.05F;
constexpr float kLeadJitterUs = 110;
constexpr float kSettlingPart = 0.33F;  // of the lead-in's space ...
constexpr float kSettlingMark = 0.28F;  // ... and of its mark
constexpr float kOddLeadRange = 0.3F;
constexpr int kMostOdd = 1;

bool near(float value, float wanted, float tolerance) {
  return std::fabs(value - wanted) <= tolerance;
}

float length(const float* burst) {
  return burst[0] + burst[1];
}

/// Whether a first mark fits. The receiver's gain settles during it, so it may be longer at the
/// cost of the space after it.
bool leadMarkFits(float found, float on, float off, float jitter) {
  const float tolerance = kLeadMarkTolerance * on + jitter;
  const float settling = std::min(kSettlingPart * off, kSettlingMark * on) + kMarkJitterUs;
  return found >= on - tolerance && found <= on + std::max(tolerance, settling);
}

/// The work of slice, step by step; each step returns false when the frame does not fit.
class slicing {
 public:
  slicing(const coding& wire, const float* frame, sliced* out)
      : wire_(wire),
        frame_(frame),
        data_(frame + (wire.has_lead() ? 2 : 0)),
        bursts_(wire.bits + (wire.split.at >= 0 ? 1 : 0)),
        out_(*out),
        mark_(wire.mark * wire.unit),
        zero_((wire.mark + wire.zero) * wire.unit),
        one_((wire.mark + wire.one) * wire.unit) {}

  bool run() {
    out_ = sliced{};
    return roughLead() && readBits() && clock() && symbolsFit() && marksFit() && leadFits() &&
           splitFits() && stopFits();
  }

 private:
  bool roughLead() const {
    if (!wire_.has_lead()) return true;
    const float nominal = (wire_.lead.on + wire_.lead.off) * wire_.unit;
    const float ratio = length(frame_) / nominal;
    const float off = frame_[1] / (wire_.lead.off * wire_.unit);
    const float slack = kLeadTolerance + kLeadJitterUs / nominal;
    const float on = frame_[0] / (wire_.lead.on * wire_.unit);
    const auto fits = [&](float part) {
      return part > wire_.fastest - slack && part < wire_.slowest + slack;
    };
    return fits(ratio) || fits(off) || fits(on);
  }

  bool readBits() {
    const float middle = (zero_ + one_) / 2;
    int bit = 0;
    for (int i = 0; i < bursts_; ++i) {
      if (i == wire_.split.at) continue;
      const float found = length(data_ + 2 * i);
      const bool one = (found > middle) == (one_ > zero_);
      const float nominal = one ? one_ : zero_;
      if (one) out_.bits |= uint64_t{1} << bit;
      ++bit;
      if (!near(found, nominal, kRoughTolerance * nominal)) {
        out_.guessed = bit - 1;
        if (++odd_ > kMostOdd || !near(found, nominal, kGuessRange * nominal)) return false;
        odd_at_ = i;
        continue;
      }
      const auto symbol = static_cast<size_t>(one);
      nominal_sum_[symbol] += nominal;
      found_sum_[symbol] += found;
    }
    return true;
  }

  bool clock() {
    const float nominal = nominal_sum_[0] + nominal_sum_[1];
    if (nominal <= 0) return false;
    out_.scale = (found_sum_[0] + found_sum_[1]) / nominal;
    if (out_.scale < wire_.fastest || out_.scale > wire_.slowest) return false;
    if (nominal_sum_[0] <= 0 || nominal_sum_[1] <= 0) return true;
    out_.skew = found_sum_[0] / nominal_sum_[0] - found_sum_[1] / nominal_sum_[1];
    const float jitter = std::min(kClockJitterUs, mark_) / std::min(zero_, one_);
    return near(out_.skew, 0, kClockTolerance + jitter);
  }

  bool symbolsFit() {
    const float most = kSymbolShare * std::fabs(one_ - zero_);
    int bit = 0;
    for (int i = 0; i < bursts_; ++i) {
      if (i == wire_.split.at) continue;
      const float nominal = out_.scale * ((out_.bits >> bit++ & 1) != 0 ? one_ : zero_);
      if (i == odd_at_) continue;
      const float tolerance =
          std::min(most, kSymbolTolerance * nominal + std::min(kSymbolJitterUs, mark_));
      const float off = std::fabs(length(data_ + 2 * i) - nominal);
      if (off > kStrictTolerance * nominal + std::min(kStrictJitterUs, mark_)) ++out_.rough;
      if (off <= tolerance) continue;
      out_.uneven = true;
      odd_at_ = i;
      if (++odd_ > kMostOdd) return false;
    }
    return true;
  }

  bool marksFit() {
    float sum = 0;
    int count = 0;
    for (int i = 0; i < bursts_; ++i) {
      if (i == wire_.split.at || i == odd_at_) continue;
      sum += data_[2 * i];
      ++count;
    }
    if (count == 0) return false;
    const float mean = sum / static_cast<float>(count);
    const float nominal = out_.scale * mark_;
    out_.bias = mean - nominal;
    const float shortest_space = std::min(wire_.zero, wire_.one) * wire_.unit;
    if (mean < kShortestMarkPart * nominal || out_.bias < kLeastBiasUs ||
        mean < wire_.shortest_mark || mean > wire_.longest_mark ||
        out_.bias > std::min({kLongestBiasUs, kLongestBiasMark * mark_,
                              kLongestBiasPart * shortest_space})) {
      return false;
    }
    mark_tolerance_ = kMarkTolerance * nominal + std::min(kMarkJitterUs, kJitterShare * nominal);
    for (int i = 0; i < bursts_; ++i) {
      if (i == wire_.split.at || i == odd_at_) continue;
      if (near(data_[2 * i], mean, mark_tolerance_)) continue;
      if (++odd_ > kMostOdd || !near(data_[2 * i], mean, kOddMarkRange * nominal)) return false;
    }
    return odd_at_ < 0 || oddSymbolFits(mean);
  }

  /// Of the symbol out of line either the mark or the space is whole.
  bool oddSymbolFits(float mean) const {
    const float* const burst = data_ + 2 * odd_at_;
    const auto fits = [&](float symbol) {
      const float space = symbol * out_.scale - mean;
      return near(burst[1], space, mark_tolerance_ + kSymbolTolerance * space);
    };
    return near(burst[0], mean, mark_tolerance_) || fits(zero_) || fits(one_);
  }

  bool leadFits() {
    if (!wire_.has_lead()) return true;
    const float on = wire_.lead.on * wire_.unit * out_.scale;
    const float off = wire_.lead.off * wire_.unit * out_.scale;
    const float jitter = std::min(kLeadJitterUs, on);
    const bool total_fits = near(length(frame_), on + off, kLeadTolerance * (on + off) + jitter);
    if (total_fits && leadMarkFits(frame_[0], on + out_.bias, off, jitter)) return true;
    out_.uneven = true;
    const bool on_fits = near(frame_[0], on + out_.bias, kLeadMarkTolerance * on + jitter);
    const bool off_fits = near(frame_[1], off - out_.bias, kLeadTolerance * off + jitter);
    return (total_fits || on_fits || off_fits) && near(frame_[0], on, kOddLeadRange * on) &&
           near(frame_[1], off, kOddLeadRange * off) && ++odd_ <= kMostOdd;
  }

  bool splitFits() const {
    if (wire_.split.at < 0) return true;
    const float on = wire_.split.burst.on * wire_.unit * out_.scale;
    const float total = on + wire_.split.burst.off * wire_.unit * out_.scale;
    const float jitter = std::min(kLeadJitterUs, on);
    const float* const burst = data_ + 2 * wire_.split.at;
    return near(length(burst), total, kLeadTolerance * total + jitter) &&
           near(burst[0], on + out_.bias, kLeadMarkTolerance * on + jitter);
  }

  bool stopFits() {
    const float nominal = (wire_.stop > 0 ? wire_.stop * wire_.unit : mark_) * out_.scale;
    const float found = data_[2 * bursts_];
    if (near(found, nominal + out_.bias, mark_tolerance_)) return true;
    return found < kLongestStopPart * nominal && ++odd_ <= kMostOdd;
  }

  const coding& wire_;
  const float* frame_;
  const float* data_;  // the first data burst
  int bursts_;         // data bursts, the split included
  sliced& out_;
  float mark_, zero_, one_;  // nominal lengths in µs; those of the symbols with their spaces
  std::array<float, 2> nominal_sum_{};  // µs in all zeros and all ones
  std::array<float, 2> found_sum_{};
  float mark_tolerance_ = 0;
  int odd_ = 0;      // durations out of line
  int odd_at_ = -1;  // the symbol among them
};

}  // namespace

bool slice(const coding& wire, const float* frame, sliced* out) {
  return slicing(wire, frame, out).run();
}

unsigned bits_at(uint64_t bits, const field& where, bool msb) {
  unsigned value = 0;
  for (int i = 0; i < where.width; ++i) {
    const int shift = msb != where.reversed ? where.width - 1 - i : i;
    value |= static_cast<unsigned>(bits >> (where.first + i) & 1) << shift;
  }
  return value;
}

unsigned reading::get(const field& where) const {
  return bits_at(wire.bits, where, from->msb);
}

bool reading::vouched(int bit) const {
  const auto within = [bit](int first, int width) { return bit >= first && bit < first + width; };
  if (from->vets_bits) return true;
  if (from->check != nullptr && !within(from->unchecked.first, from->unchecked.width)) return true;
  return std::any_of(std::begin(from->constants), std::end(from->constants),
                     [&](const constant& fixed) { return within(fixed.first, fixed.width); }) ||
         std::any_of(std::begin(from->mirrors), std::end(from->mirrors), [&](const mirror& twice) {
           return within(twice.first, twice.width) || within(twice.second, twice.width);
         });
}

bool checks_hold(const reading& frame) {
  const row& from = *frame.from;
  for (const constant& fixed : from.constants) {
    if (frame.get({fixed.first, fixed.width}) != fixed.value) return false;
  }
  for (const mirror& twice : from.mirrors) {
    const uint64_t mask = (uint64_t{1} << twice.width) - 1;
    const uint64_t difference =
        (frame.wire.bits >> twice.first ^ frame.wire.bits >> twice.second) & mask;
    if (difference != (twice.plain ? 0 : mask)) return false;
  }
  return from.check == nullptr || from.check(frame);
}

int code_byte(const reading& frame, const field& where) {
  if (where.width == 0) return -1;
  const auto mask = static_cast<unsigned>((uint64_t{1} << where.width) - 1);
  const unsigned wire_order = bits_at(frame.wire.bits, {where.first, where.width}, true);
  const bool complemented = !frame.from->msb && !where.reversed;
  return static_cast<int>(complemented ? ~wire_order & mask : wire_order);
}

bool read_row(const reading& frame, answer* out) {
  const row& from = *frame.from;
  const auto number = [&](const field& where) {
    return where.width == 0 ? -1 : static_cast<int>(frame.get(where));
  };
  std::snprintf(out->name.data(), out->name.size(), "%s", from.name);
  out->device = number(from.device);
  out->subDevice = number(from.subDevice);
  out->obc = number(from.obc);
  out->hex = {code_byte(frame, from.obc), code_byte(frame, from.second)};
  out->variant = from.variant;
  size_t used = 0;
  for (const extra& more : from.extras) {
    if (more.label == nullptr) break;
    const int wrote = std::snprintf(out->remark.data() + used, out->remark.size() - used, "%s%s=%u",
                                    used == 0 ? "" : ", ", more.label, frame.get(more.where));
    used = std::min(used + static_cast<size_t>(wrote), out->remark.size() - 1);
  }
  return from.finish == nullptr || from.finish(frame, out);
}

bool is_ditto(const coding& wire, const ditto& form, const float* at, const float* end, float scale,
              float bias) {
  const ptrdiff_t bursts = 2 + form.bits;
  if (end - at < 2 * bursts) return false;
  const float unit = wire.unit * scale;
  const float on = form.lead.on * unit;
  const float total = on + form.lead.off * unit;
  if (!near(length(at), total, kLeadTolerance * total) ||
      !leadMarkFits(at[0], on + bias, form.lead.off * unit, kLeadJitterUs)) {
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

}  // namespace gap
