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

/// A frame without data that says "the key is still held".
struct lone_ditto {
  const char* name;
  gap::coding wire;
  gap::ditto form;
};

constexpr float kDittoFastest = 0.93F;
constexpr float kDittoSlowest = 1.07F;
constexpr float kDittoLeastBiasUs = -150;
constexpr float kDittoLongestBiasUs = 150;
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
  gap::reading frame{nullptr, {}, frameFreq_};
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
    // Both ends tell the bias, but the first mark is longer while the receiver's gain settles.
    const float unit = lone.wire.unit * scale;
    const float first = on(0) - lone.form.lead.on * unit;
    const float last = on(bursts - 1) - lone.wire.mark * unit;
    const float bias = std::clamp(std::min(first, last), kDittoLeastBiasUs, kDittoLongestBiasUs);
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
constexpr int kFewestOfAKind = 2;  // symbols, without a lead-in
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

/// The symbols of a frame that no row knows.
struct plain_symbols {
  const float* data;
  int count;
  float shortest, longest;  // µs

  plain_symbols(const float* first, int bursts) : data(first), count(bursts) {
    shortest = longest = length(0);
    for (int i = 1; i < count; ++i) {
      shortest = std::min(shortest, length(i));
      longest = std::max(longest, length(i));
    }
  }
  [[nodiscard]] float on(int i) const { return data[2 * i]; }
  [[nodiscard]] float length(int i) const { return data[2 * i] + data[2 * i + 1]; }
  [[nodiscard]] float middle() const { return (shortest + longest) / 2; }
  [[nodiscard]] int longs() const {
    int found = 0;
    for (int i = 0; i < count; ++i) found += static_cast<int>(length(i) > middle());
    return found;
  }
  [[nodiscard]] float meanMark() const {
    float sum = 0;
    for (int i = 0; i < count; ++i) sum += on(i);
    return sum / static_cast<float>(count);
  }
  /// Whether there are two lengths, well apart, and nothing between them.
  [[nodiscard]] bool areOfTwoLengths() const {
    if (longest < kUnknownRatio * shortest) return false;
    const float below = shortest + kUnknownSpread * shortest + kUnknownSpreadUs;
    const float above = longest - kUnknownSpread * longest - kUnknownSpreadUs;
    for (int i = 0; i < count; ++i) {
      if (length(i) >= below && length(i) <= above) return false;
    }
    return true;
  }
  /// Whether the marks, that of the stop burst after the symbols among them, are alike.
  [[nodiscard]] bool haveEvenMarks() const {
    const float mean = meanMark();
    for (int i = 0; i <= count; ++i) {
      if (std::fabs(on(i) - mean) > kUnknownMarkTolerance * mean + kUnknownJitterUs) return false;
    }
    return true;
  }
  /// µs: half a short symbol in the usual code, else the mark.
  [[nodiscard]] int unit() const {
    const bool classic = std::fabs(longest / shortest - kClassicRatio) < kClassicTolerance;
    return static_cast<int>(std::lround(classic ? shortest / 2 : meanMark()));
  }
};

}  // namespace

/// A clean pulse-distance frame of no known protocol: its bits go into the remark.
void Signal::gapUnknown() {
  const int last = frameLength_ - 1;  // the stop burst
  if (framingGap_ < kUnknownGapUs || last < kFewestUnknownBits) return;

  plain_symbols symbols(frame_ + 2, last - 1);
  leadIns_ = {leadIn{frame_, totalDuration_}, leadIn{}};
  const bool lead = lead_in(kUnknownLeadPart * symbols.longest, gap::kAnyUs, gap::kAnyUs, 0,
                            kFewestUnknownBits * symbols.shortest);
  if (!lead) {
    symbols = plain_symbols(frame_, last);
    const int longs = symbols.longs();
    if (symbols.count < kFewestLeadlessBits || longs < kFewestOfAKind ||
        longs > symbols.count - kFewestOfAKind) {
      return;
    }
  }
  if (symbols.count < kFewestUnknownBits || framingGap_ < kUnknownGapPart * symbols.longest ||
      !symbols.areOfTwoLengths() || !symbols.haveEvenMarks()) {
    return;
  }
  cleanup();
  decodeAt_ = symbols.data;
  threshold_ = symbols.middle();
  decodeX2(symbols.count);
  makeMsb();

  std::array<int, 4> hex = {-1, -1, -1, -1};
  std::array<char, kMostNameChars> text{};
  size_t used = 0;
  for (int at = 0; at < nBit_; at += 8) {
    const unsigned byte = getMsb(at, std::min(8, nBit_ - at));
    used +=
        static_cast<size_t>(std::snprintf(text.data() + used, text.size() - used, "%02X", byte));
    const auto index = static_cast<size_t>(at / 8);
    if (index < hex.size()) hex[index] = static_cast<int>(byte);
  }
  remark("%s", text.data());
  std::snprintf(text.data(), text.size(), "Gap-%d-%d", nBit_, symbols.unit());
  claim(text.data(), -1, -1, -1);
  std::copy(hex.begin(), hex.end(), hex_);
}
