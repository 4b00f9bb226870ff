// SPDX-License-Identifier: GPL-3.0-or-later
// Pulse distance through a bad receiver: far away, in bright light, or with a coarse clock of its
// own. Every duration may be off by as much as jitter explains, and the first mark by what a
// settling gain explains. What does not change from one duration to the next, the clocks that the
// two symbols tell, has to fit as well as in a clean frame: so a clean frame of another code does
// not, and bursts at random don't either.
//
// Flashes, marks of 10 to 15 µs with spaces hardly longer, come out of a receiver no shorter than
// it can be, whatever their spaces lose. So they are read by their spaces, and marks have to agree
// with the bias that the spaces tell.
#include <algorithm>
#include <array>
#include <cmath>

#include "lib/ir/DecodeIR/readers/pulse_distance.h"
#include "lib/ir/receiver.h"

namespace analysis {
namespace {

using receiver::jitter_us;
using receiver::within;

// Two symbols have to be so many times jitter apart: else one is as likely as the other.
constexpr double kApart = 2.2;
// Less spread of each symbol than this, as a fraction, is no noise: such a frame came through a
// good receiver, and what is off in it was sent so. Only checks prove the code then.
constexpr double kLeastNoise = 0.005;
// By how many times what noise makes of its mean the clock may be out of its range.
constexpr double kClockNoise = 2.5;

// By how much of what parts the two symbols a space between flashes may be off, or by how much of
// jitter a flash from the bias that the spaces tell; and all spaces together.
constexpr double kMostFlashOff = 0.4;
constexpr double kFlashSpread = 0.17;

class noisy_reader {
 public:
  noisy_reader(const pulse_distance& wire, const float* frame, bit_buffer* bits, distance_fit* fit)
      : wire_(wire), frame_(frame), bits_(*bits), fit_(*fit) {}

  bool run() {
    fit_ = {};
    fit_.noisy = true;
    if (receiver::is_flash(wire_.mark * wire_.unit, wire_.zero * wire_.unit)) return flashes_fit();
    if (wire_.has_lead() &&
        !receiver::first_mark_is_plausible(static_cast<int64_t>(frame_[0]),
                                           static_cast<int64_t>(wire_.lead.on * wire_.unit))) {
      return refuse({reason::lead_in, 0, frame_[0]});
    }
    const float longer = std::max(sent_us(false), sent_us(true));
    if (std::fabs(sent_us(true) - sent_us(false)) < kApart * jitter_us(longer)) {
      return refuse({reason::symbol});
    }
    read_symbols();
    return bias_fits() && symbols_fit() && clock_fits() && lead_fits() && split_fits() &&
           stop_fits();
  }

 private:
  bool refuse(const refusal& why) {
    fit_.why = why;
    return false;
  }
  [[nodiscard]] int burst_of(int symbol) const {
    const bool behind_split = wire_.split.at >= 0 && symbol >= wire_.split.at;
    return static_cast<int>(wire_.has_lead()) + symbol + static_cast<int>(behind_split);
  }
  [[nodiscard]] const float* burst(int i) const { return frame_ + 2 * static_cast<ptrdiff_t>(i); }
  [[nodiscard]] float length(int i) const { return burst(i)[0] + burst(i)[1]; }
  [[nodiscard]] float sent_us(bool one) const {
    return (wire_.mark + (one ? wire_.one : wire_.zero)) * wire_.unit;
  }

  /// What burst i was sent as, by the bits read so far.
  [[nodiscard]] burst_units sent(int i) const {
    if (i == 0 && wire_.has_lead()) return wire_.lead;
    const int symbol = i - static_cast<int>(wire_.has_lead());
    if (symbol == wire_.split.at) return wire_.split.burst;
    const bool behind_split = wire_.split.at >= 0 && symbol > wire_.split.at;
    const bool one = bits_.getBit(symbol - static_cast<int>(behind_split)) != 0;
    return {wire_.mark, one ? wire_.one : wire_.zero};
  }
  /// How much longer than a space of so many units that of a burst is.
  [[nodiscard]] double space_off(int at, float units, double bias) const {
    return burst(at)[1] - receiver::at_least(units * wire_.unit - bias);
  }

  bool flashes_fit() {
    // What the spaces lose, by those of which the code says how long they are.
    double bias = 0;
    if (wire_.has_lead() && wire_.split.at >= 0) {
      bias = (space_off(0, wire_.lead.off, 0) +
              space_off(burst_of(wire_.split.at) - 1, wire_.split.burst.off, 0)) /
             -2;
    }
    for (int i = 0; i < wire_.bits; ++i) {
      const int at = burst_of(i);
      bits_.append(std::abs(space_off(at, wire_.one, bias)) <
                   std::abs(space_off(at, wire_.zero, bias)));
    }
    bias += bias_left(bias);
    fit_.bias = static_cast<float>(bias);
    if (!within(bias, receiver::kMostFlashBiasUs)) return refuse({reason::bias, -1, fit_.bias});
    const double mark = wire_.mark * wire_.unit;
    for (int i = 0; i < wire_.bursts(); ++i) {
      const double off = burst(i)[0] - receiver::at_least(mark + bias);
      if (!within(off, kMostFlashOff * jitter_us(mark))) {
        return refuse({reason::mark, i, burst(i)[0]});
      }
    }
    return flash_spaces_fit(bias);
  }

  /// By how much the spaces of flashes are still shorter than this bias makes them.
  [[nodiscard]] double bias_left(double bias) const {
    double left = 0;
    int told = 0;
    for (int i = 0; i < wire_.bursts() - 1; ++i) {
      if (burst(i)[1] <= receiver::kLeastUs) continue;
      left -= space_off(i, sent(i).off, bias);
      ++told;
    }
    return left / std::max(told, 1);
  }

  bool flash_spaces_fit(double bias) {
    const double apart = receiver::at_least(wire_.one * wire_.unit - bias) -
                         receiver::at_least(wire_.zero * wire_.unit - bias);
    double squares = 0;
    for (int i = 0; i < wire_.bursts() - 1; ++i) {
      const double off = space_off(i, sent(i).off, bias);
      const double most = std::min(jitter_us(sent(i).off * wire_.unit), kMostFlashOff * apart);
      if (!within(off, most)) return refuse({reason::symbol, i, burst(i)[1]});
      squares += off * off;
    }
    return squares <= std::pow(kFlashSpread * apart, 2) * (wire_.bursts() - 1) ||
           refuse({reason::symbol});
  }

  [[nodiscard]] bool is_flash() const { return wire_.mark * wire_.unit < receiver::kLeastUs; }

  void read_symbols() {
    const float middle = (sent_us(false) + sent_us(true)) / 2;
    for (int i = 0; i < wire_.bits; ++i) {
      const float found = length(burst_of(i));
      const bool one = (found > middle) == (wire_.one > wire_.zero);
      bits_.append(one);
      sent_[static_cast<size_t>(one)] += sent_us(one);
      found_[static_cast<size_t>(one)] += found;
      marks_ += burst(burst_of(i))[0];
    }
  }

  bool bias_fits() {
    fit_.scale = (found_[0] + found_[1]) / (sent_[0] + sent_[1]);
    const float mark = wire_.mark * wire_.unit;
    const float mean = marks_ / static_cast<float>(wire_.bits);
    fit_.bias = mean - fit_.scale * mark;
    found_as_ = {fit_.scale, fit_.bias};
    const refusal why = wire_.mark_refusal(mean, fit_.scale);
    return why.why == reason::none || refuse(why);
  }

  bool symbols_fit() {
    const double mark = wire_.mark * wire_.unit;
    const double most_mark_off = std::max(receiver::kMarkWithoutBit * mark, jitter_us(mark));
    double squares = 0;   // in terms of jitter
    double relative = 0;  // as fractions
    for (int i = 0; i < wire_.bits; ++i) {
      const int at = burst_of(i);
      const float sent = sent_us(bits_.getBit(i) != 0);
      const double burst_off = found_as_.burst_off(length(at), sent) / jitter_us(sent);
      const double mark_off = found_as_.mark_off(burst(at)[0], mark);
      squares += burst_off * burst_off;
      const auto kind = static_cast<size_t>(bits_.getBit(i) != 0);
      relative += std::pow(length(at) / sent - found_[kind] / sent_[kind], 2);
      if (!within(burst_off, 1)) ++fit_.loose;
      if (fit_.loose > receiver::kMostDamaged || !within(burst_off, receiver::kDamagedBurst) ||
          !within(mark_off, most_mark_off)) {
        return refuse(refusal::off(reason::symbol, at, length(at), fit_.scale * sent,
                                   static_cast<float>(jitter_us(sent))));
      }
    }
    spread_ = std::sqrt(relative / wire_.bits);
    fit_.damaged = fit_.loose > 0 || (spread_ < kLeastNoise && !is_flash());
    return squares <= receiver::kSpread * receiver::kSpread * static_cast<float>(wire_.bits) ||
           refuse({reason::symbol});
  }

  bool clock_fits() {
    const auto out = static_cast<float>(kClockNoise * spread_ / std::sqrt(wire_.bits));
    const float fastest = wire_.fastest - out;
    // A flash that comes out longer makes its burst longer.
    const float slowest =
        wire_.slowest + out +
        (is_flash() ? receiver::kMostFlashBiasUs / std::min(sent_us(false), sent_us(true)) : 0);
    if (fit_.scale < fastest || fit_.scale > slowest) {
      return refuse({reason::clock, -1, fit_.scale, fastest, slowest});
    }
    if (sent_[0] <= 0 || sent_[1] <= 0) return true;
    fit_.skew = found_[0] / sent_[0] - found_[1] / sent_[1];
    const float most = wire_.most_skew();
    return within(fit_.skew, most) || refuse({reason::skew, -1, fit_.skew, -most, most});
  }

  bool lead_fits() {
    if (!wire_.has_lead()) return true;
    const float off = wire_.lead.off * wire_.unit;
    const double mark_off = found_as_.mark_off(frame_[0], wire_.lead.on * wire_.unit);
    return receiver::first_space_is_plausible(found_as_, mark_off, frame_[1], off) ||
           refuse(refusal::off(reason::lead_in, 0, frame_[1], off * fit_.scale,
                               static_cast<float>(jitter_us(off))));
  }

  bool split_fits() {
    if (wire_.split.at < 0) return true;
    const int at = burst_of(wire_.split.at) - 1;
    const float on = wire_.split.burst.on * wire_.unit;
    const float sent = on + wire_.split.burst.off * wire_.unit;
    return (within(found_as_.burst_off(length(at), sent), jitter_us(sent)) &&
            within(found_as_.mark_off(burst(at)[0], on), jitter_us(on))) ||
           refuse(refusal::off(reason::split, at, length(at), fit_.scale * sent,
                               static_cast<float>(jitter_us(sent))));
  }

  bool stop_fits() {
    const int at = wire_.bursts() - 1;
    const float sent = (wire_.stop > 0 ? wire_.stop : wire_.mark) * wire_.unit;
    return receiver::last_mark_is_plausible(burst(at)[0] - fit_.bias, sent, false) ||
           refuse({reason::stop, at, burst(at)[0]});
  }

  const pulse_distance& wire_;
  const float* frame_;
  bit_buffer& bits_;
  distance_fit& fit_;
  receiver::distortion found_as_{};
  std::array<float, 2> sent_{};  // µs in all zeros and all ones
  std::array<float, 2> found_{};
  float marks_ = 0;
  double spread_ = 0;  // of each symbol, as a fraction
};

}  // namespace

bool read_noisy_distance(const pulse_distance& wire, const float* frame, bit_buffer* bits,
                         distance_fit* fit) {
  return noisy_reader(wire, frame, bits, fit).run();
}

}  // namespace analysis
