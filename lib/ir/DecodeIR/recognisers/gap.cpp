// SPDX-License-Identifier: GPL-3.0-or-later
// Pulse distance: marks of one length, and spaces whose length carries the bits.
//
//   [lead-in mark, space] (mark, short or long space)* stop mark, gap
//
// Most remotes ever made speak one of these codes. gap_rows.cpp lists them, gap_engine.cpp reads
// them, gap_rules.cpp holds their checks. This file lets the rows look at a candidate frame and
// answers for what no row knows: a repeat frame alone, and a clean frame of no known protocol.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "lib/ir/DecodeIR/recognisers/bounds.h"
#include "lib/ir/DecodeIR/recognisers/gap_engine.h"
#include "lib/ir/DecodeIR/signal.h"

namespace {

// Preemption: a frame whose checks hold keeps weaker claims away from its inside.
constexpr int kTimingLevel = 1;
constexpr int kCheckedLevel = 2;
constexpr int kFewestCheckBits = 4;
// With a symbol or the lead-in out of line the timing proves less; checks have to make up for it.
constexpr int kUnevenCheckBits = 8;
constexpr int kMostRough = 1;

/// What a frame without data says about a held key.
struct lone_ditto {
  const char* name;
  gap::coding wire;
  gap::ditto form;
};

constexpr float kDittoFastest = 0.93F;
constexpr float kDittoSlowest = 1.07F;
constexpr lone_ditto kLoneDittos[] = {
    {"NEC", {564, {16, 8}, 1, 1, 3, 32}, {{16, 4}}},
    {"NECx", {564, {8, 8}, 1, 1, 3, 32}, {{8, 8}, 1}},
};

}  // namespace

void Signal::tryGap() {
  if (!within(kGapBounds)) return;
  if (gapRow()) return;
  if (preemptLevel_ > 0) return;
  if (!gapDitto()) gapUnknown();
}

/// Lets the rows with as many bursts as the frame look at it.
bool Signal::gapRow() {
  const gap::coding* sliced_for = nullptr;
  bool fits = false;
  gap::reading frame{nullptr, {}, interfaceLevel_ > 4 ? frameFreq_ : 0};
  for (const gap::row* const row : gap::rows_of(frameLength_)) {
    const gap::coding& wire = *row->wire;
    if (trailingGap_ < wire.min_gap || gapBefore_ < wire.min_before ||
        gapBefore_ > wire.max_before) {
      continue;
    }
    const int redundancy = row->redundancy();
    const int level = redundancy >= kFewestCheckBits ? kCheckedLevel : kTimingLevel;
    if (level <= preemptLevel_) continue;
    if (sliced_for != &wire) {
      sliced_for = &wire;
      fits = gap::slice(wire, frame_, &frame.wire);
    }
    if (!fits) continue;
    frame.from = row;
    const int guessed = frame.wire.guessed;
    const bool uneven = guessed >= 0 || frame.wire.uneven || frame.wire.rough > kMostRough;
    if (uneven && redundancy < kUnevenCheckBits) continue;
    if (guessed >= 0 && !frame.vouched(guessed)) continue;
    gap::answer found;
    if (!gap::checks_hold(frame) || !gap::read_row(frame, &found)) continue;
    if (row->repeat != nullptr) countDittos(wire, *row->repeat, frame.wire.scale, frame.wire.bias);
    answerGap(found, level);
    return true;
  }
  return false;
}

/// Counts the dittos after the frame and takes them into it, all but the last burst.
void Signal::countDittos(const gap::coding& wire, const gap::ditto& form, float scale, float bias) {
  const int bursts = 2 + form.bits;
  const float* const end = bursts_.get() + ptrdiff_t{2} * (nSingle_ + nRepeat_);
  const float* at = frame_ + ptrdiff_t{2} * frameLength_;
  for (; gap::is_ditto(wire, form, at, end, scale, bias); at += ptrdiff_t{2} * bursts) ++dittos_;
  if (dittos_ > 0) frameLength_ += dittos_ * bursts - 1;
}

void Signal::answerGap(const gap::answer& found, int level) {
  setPreempt(level);
  if (found.remark[0] != '\0') remark("%s", found.remark.data());
  std::snprintf(suffix_.data(), suffix_.size(), "%s", found.suffix);
  nameVariant_ = found.variant;
  claim(found.name.data(), found.device, found.subDevice, found.obc, found.hex[0]);
  hex_[1] = found.hex[1];
}

/// A repeat frame alone: named as its family, without numbers.
bool Signal::gapDitto() {
  for (const lone_ditto& lone : kLoneDittos) {
    const int bursts = 2 + lone.form.bits;
    if (frameLength_ != bursts) continue;
    const float nominal = (lone.form.lead.on + lone.form.lead.off) * lone.wire.unit;
    const float scale = burst(0) / nominal;
    if (scale < kDittoFastest || scale > kDittoSlowest) continue;
    const float bias = on(0) - lone.form.lead.on * lone.wire.unit * scale;
    if (!gap::is_ditto(lone.wire, lone.form, frame_, frame_ + ptrdiff_t{2} * bursts, scale, bias)) {
      continue;
    }
    countDittos(lone.wire, lone.form, scale, bias);
    remark("repeat frame");
    setPreempt(kTimingLevel);
    claim(lone.name, -1, -1, -1);
    return true;
  }
  return false;
}

namespace {

constexpr int kFewestUnknownBits = 8;
// Without a lead-in 8 symbols may also be half an XMP frame.
constexpr int kFewestLeadlessBits = 9;
constexpr float kUnknownGapUs = 9000;
constexpr float kUnknownGapPart = 1.5F;   // of the longest symbol
constexpr float kUnknownLeadPart = 1.4F;  // a lead-in against the longest symbol
constexpr float kUnknownMarkTolerance = 0.2F;
constexpr float kUnknownJitterUs = 40;
constexpr float kUnknownRatio = 1.25F;   // the long symbol against the short one
constexpr float kUnknownSpread = 0.06F;  // of one kind of symbol, and a rest in µs
constexpr float kUnknownSpreadUs = 50;
constexpr float kClassicRatio = 2;  // 1:1 and 1:3, the shape of most codes
constexpr float kClassicTolerance = 0.25F;

}  // namespace

/// A clean pulse-distance frame of no known protocol: its bits go into the remark.
void Signal::gapUnknown() {
  if (framingGap_ < kUnknownGapUs) return;
  // The longest of the bursts after the first tells whether that one is a lead-in.
  const int last = frameLength_ - 1;  // the stop mark
  if (last < kFewestUnknownBits) return;
  float shortest = burst(1);
  float longest = burst(1);
  for (int i = 2; i < last; ++i) {
    shortest = std::min(shortest, burst(i));
    longest = std::max(longest, burst(i));
  }
  const int first = burst(0) > kUnknownLeadPart * longest ? 1 : 0;
  if (first == 0) {
    shortest = std::min(shortest, burst(0));
    longest = std::max(longest, burst(0));
  }
  const int bits = last - first;
  if (bits < (first == 0 ? kFewestLeadlessBits : kFewestUnknownBits) ||
      longest < kUnknownRatio * shortest || framingGap_ < kUnknownGapPart * longest) {
    return;
  }
  float mark = 0;
  int longs = 0;
  threshold_ = (shortest + longest) / 2;
  for (int i = first; i < last; ++i) {
    mark += on(i);
    if (burst(i) > threshold_) ++longs;
    const bool is_short = burst(i) < shortest + kUnknownSpread * shortest + kUnknownSpreadUs;
    const bool is_long = burst(i) > longest - kUnknownSpread * longest - kUnknownSpreadUs;
    if (!is_short && !is_long) return;
  }
  if (first == 0 && (longs < 2 || longs > bits - 2)) return;
  mark /= static_cast<float>(bits);
  const float tolerance = kUnknownMarkTolerance * mark + kUnknownJitterUs;
  for (int i = first; i <= last; ++i) {
    if (std::fabs(on(i) - mark) > tolerance) return;
  }
  cleanup();
  decodeAt_ += ptrdiff_t{2} * first;
  decodeX2(bits);
  makeMsb();
  const bool classic = std::fabs(longest / shortest - kClassicRatio) < kClassicTolerance;
  const int unit = static_cast<int>(std::lround(classic ? shortest / 2 : mark));

  std::array<char, kMostNameChars> text{};
  size_t used = 0;
  for (int at = 0; at < bits; at += 8) {
    used += static_cast<size_t>(std::snprintf(text.data() + used, text.size() - used, "%02X",
                                              getMsb(at, std::min(8, bits - at))));
  }
  remark("%s", text.data());
  std::snprintf(text.data(), text.size(), "Gap-%d-%d", bits, unit);
  claim(text.data(), -1, -1, -1);
  for (int i = 0; i < 4 && 8 * i < bits; ++i) {
    hex_[i] = static_cast<int>(getMsb(8 * i, std::min(8, bits - 8 * i)));
  }
}
