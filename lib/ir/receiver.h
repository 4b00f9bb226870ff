// SPDX-License-Identifier: GPL-3.0-or-later
// What a receiver makes of a frame, in the words of every family of decoders.
//
//   clock     all durations are longer or shorter by one factor: the remote's oscillator
//   bias      all marks are longer and all spaces shorter by one time, or the other way round; a
//             burst, which is a mark and its space together, does not feel it
//   settling  the first mark changes while the receiver's gain settles, and the space behind it
//             may pay for that
//   cut end   the last mark has no space to be measured with, and is cut or stretched
//   jitter    what is left of each duration: noise, and the steps in which receivers count
//   stray     a short mark beside a frame that belongs to none: a flash of light
#pragma once

#include <algorithm>
#include <cstdint>

namespace receiver {

/// What holds for a whole frame.
struct distortion {
  double clock;    // 1.0 = nominal
  double bias_us;  // by which marks are longer and spaces shorter

  /// By how many µs a mark, a space or a burst is longer than the one that was sent.
  [[nodiscard]] constexpr double mark_off(double us, double sent_us) const {
    return us - clock * sent_us - bias_us;
  }
  [[nodiscard]] constexpr double space_off(double us, double sent_us) const {
    return us - clock * sent_us + bias_us;
  }
  [[nodiscard]] constexpr double burst_off(double us, double sent_us) const {
    return us - clock * sent_us;
  }
};

constexpr bool within(double off, double tolerance) {
  return off <= tolerance && off >= -tolerance;
}

/// The bias that receivers have: marks up to this much shorter or longer than sent. Wider, and
/// codes of the same burst with another mark are read (a 16-bit code of 560 µs marks as one of 264
/// µs from 260 on); tighter, and remotes with short marks, far away, are lost. Captured frames
/// reach -158 and +161, and receivers add up to 80 on either side.
constexpr int kMostShorterUs = 170;
constexpr int kMostLongerUs = 220;
constexpr bool bias_is_plausible(double bias_us) {
  return bias_us >= -kMostShorterUs && bias_us <= kMostLongerUs;
}

/// What jitter may add to a mark, a space or a burst of `sent_us`, or take from it, once clock and
/// bias are known: noise, which grows with the duration, and two edges on the grid of up to 50 µs
/// in which receivers count. Wider, and symbols between two lengths are read; tighter, and a
/// receiver with a spread of 4 % loses frames of many symbols. It rests on frames with that spread
/// and grid.
constexpr double jitter_us(double sent_us) {
  constexpr double kFraction = 0.11;
  constexpr double kGridUs = 40;
  return kFraction * sent_us + kGridUs;
}

/// Whether a first mark of `us` may have been sent as `sent_us`: while the gain settles it shrinks
/// by up to 10 % or grows by up to 25 %, clock, bias and jitter aside. Wider, and a lead-in of
/// another length is taken; tighter, and a first key press is lost. Captured frames reach -8 and +9
/// %.
constexpr bool first_mark_is_plausible(int64_t us, int64_t sent_us) {
  constexpr int kShortestPercent = 80;
  constexpr int kLongestPercent = 130;
  return 100 * (us + kMostShorterUs) >= kShortestPercent * sent_us &&
         100 * (us - kMostLongerUs) <= kLongestPercent * sent_us;
}

/// Whether the space behind a first mark fits: it pays for what the mark gained or lost, in full,
/// a fraction of it or nothing.
constexpr bool first_space_is_plausible(const distortion& found, double mark_off, double us,
                                        double sent_us) {
  const double off = found.space_off(us, sent_us);
  const double tolerance = jitter_us(sent_us);
  return off >= -std::max(mark_off, 0.0) - tolerance && off <= -std::min(mark_off, 0.0) + tolerance;
}

/// Whether a last mark of `us`, without the bias, may have been sent as `sent_us`. `proven`: the
/// rest of the frame proves where it ends. Wider, and a frame that goes on is taken for whole;
/// tighter, and frames whose end was cut or stretched are lost. Captured ones reach -23 and +51 %,
/// a few more.
constexpr bool last_mark_is_plausible(double us, double sent_us, bool proven) {
  constexpr double kShortest = 0.375;
  constexpr double kLongest = 1.8;
  constexpr double kLongestProven = 3.2;
  return us >= kShortest * sent_us && us <= (proven ? kLongestProven : kLongest) * sent_us;
}

/// A mark of at most this length, at least this far from a frame, is stray. Longer marks belong to
/// frames; a shorter gap lies inside some. Captured stray marks have 28 to 193 µs, 6.8 ms away and
/// more.
constexpr unsigned kLongestStrayUs = 200;
constexpr unsigned kShortestGapUs = 5000;
/// Whether a mark behind or before a gap is stray.
constexpr bool is_stray(float mark_us, float gap_us) {
  return mark_us <= kLongestStrayUs && gap_us >= kShortestGapUs;
}

/// The longest mark of a frame is no shorter than the first of these, and no space inside it
/// shorter than the second. More, and the flashes of 10 µs that some remotes send 50 µs apart are
/// lost; less, and a list of zeros has a name.
constexpr float kShortestMarkUs = 5;
constexpr float kShortestSpaceUs = 20;

/// No receiver tells of less: what is shorter comes out as long as this, and nothing pays for it.
/// More, and the bias of flashes reads wrong; less, and flashes through slow receivers are lost.
constexpr double kLeastUs = 40;
constexpr double at_least(double us) {
  return std::max(us, kLeastUs);
}
/// Whether a mark is so short, and a space so short that it matters.
constexpr bool is_flash(float mark_us, float space_us) {
  return mark_us < kLeastUs && space_us < 10 * kLeastUs;
}

/// What the bursts of a frame scatter together at most, as a root mean square of fractions of
/// jitter. Wider, and lengths on both sides of a symbol's are read as that symbol; tighter, and
/// receivers with a spread of 4 % are lost. It rests on frames with that spread and a grid of 50
/// µs; captured frames reach 0.39.
constexpr double kSpread = 0.42;

/// What a damaged symbol may be off by, in terms of jitter, so that it is surely no other, and how
/// many of them a frame may have that checks prove: an edge that came late shows in two.
constexpr double kDamagedBurst = 1.5;
constexpr int kMostDamaged = 2;
/// What a mark that carries no bit may be off by, as a fraction, where its burst holds. Wider, and
/// codes of other marks are read; tighter, and learners that blur edges lose frames.
constexpr double kMarkWithoutBit = 0.5;

// --- The signal analysis -----------------------------------------------------------------------
// Its readers hold each duration to narrower bounds than the matchers, since they look at every
// stretch of a signal; so the limits of what a receiver does to all of a frame are its own.

/// By how much the first mark may be longer while the gain settles: a fraction of the mark, and at
/// most a fraction of the space behind it, which pays for it. Wider, and the edge between the two
/// has more than one place; tighter, and the first frame of a press is lost. It rests on rendered
/// frames whose first mark has grown by 15 to 25 %.
constexpr float kSettlingMark = 0.3F;
constexpr float kSettlingLead = 0.28F;  // of pulse distance: at 0.3 noise makes a repeat frame
constexpr float kSettlingSpace = 0.33F;
constexpr float settling(float mark, float space, float fraction = kSettlingMark) {
  return std::min(fraction * mark, kSettlingSpace * space);
}

/// The bias, in µs, by what a reader knows of a code. Wider, and a code of other marks is read;
/// tighter, and weak signals are lost. Rendered frames have -40 to 120.
constexpr float kLeastBiasUs = -200;        // of pulse distance, which reads bits from bursts
constexpr float kMostBiasUs = 220;          // the same
constexpr float kShortestOfMark = 0.35F;    // what is left of a mark, as a fraction
constexpr float kMostBiasOfMark = 1.05F;    // as a fraction of the mark ...
constexpr float kMostFlashBiasUs = 100;     // ... of which flashes are longer
constexpr float kMostBiasOfSpace = 0.75F;   // as a fraction of the shortest space
constexpr float kMostExpectedBiasUs = 180;  // of a frame compared with what it should look like
constexpr float kMostDittoBiasUs = 150;     // of a repeat frame or equal bursts, which tell little
constexpr float kMostUnitBiasUs = 250;      // of durations in whole units ...
constexpr float kMostUnitBias = 0.8F;       // ... and as a fraction of a unit: beyond it another
                                            // number of units is as likely

/// By how much the clocks that two symbols of a code tell may differ: a fraction, and a time by the
/// shorter symbol. Wider, and codes of another ratio are read; tighter, and learners that merge
/// short durations are lost.
constexpr float kMostSkew = 0.07F;
constexpr float kSkewUs = 25;
}  // namespace receiver
