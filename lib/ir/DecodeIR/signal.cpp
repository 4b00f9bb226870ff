// SPDX-License-Identifier: GPL-3.0-or-later
// Construction, resume state, preemption and the search for candidate frames.
#include "lib/ir/DecodeIR/signal.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr unsigned kStartMask = 0xFFFFF;  // context[0] holds the start burst in its low 20 bits
constexpr int kStartBits = 20;

}  // namespace

Signal::Signal(unsigned int* context, const int* bursts, int freq, int singleCount, int repeatCount,
               char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc,
               char* error, std::span<const recogniser, 32> recognisers)
    : context_(context),
      protocol_(protocol),
      misc_(misc),
      error_(error),
      device_(device),
      subDevice_(subDevice),
      obc_(obc),
      hex_(hex),
      nSingle_(std::max(singleCount, 0)),
      nRepeat_(std::max(repeatCount, 0)),
      nExtra_(0),
      lastBurst_(0),
      freq_(freq),
      hasRepeatInfo_(repeatCount > 0 || *device < -1),
      recognisers_(recognisers),
      shortestGap_(std::min_element(recognisers.begin(), recognisers.end(),
                                    [](const recogniser& a, const recogniser& b) {
                                      return a.bounds.min_gap < b.bounds.min_gap;
                                    })
                       ->bounds.min_gap) {
  if (nRepeat_ > 0 && *device < -1)
    nExtra_ = *device > -(1 << kStartBits) ? -*device : 1 << kStartBits;
  if (*subDevice < -1) interfaceLevel_ = *subDevice > -1000 ? -*subDevice : 1000;
  if (interfaceLevel_ >= 8) std::memcpy(&cycles_, &context[6], sizeof cycles_);

  // The resume state addresses 2^20 bursts; a longer signal is not searched at all.
  const auto total = int64_t{nSingle_} + 2 * int64_t{nRepeat_} + nExtra_;
  if (total > kStartMask) {
    nSingle_ = nRepeat_ = nExtra_ = 0;
    return;
  }
  bursts_ = std::make_unique<float[]>(static_cast<size_t>(2 * total) + 4);
  float* to = bursts_.get();
  const int* const repeat = bursts + 2 * nSingle_;
  const int* const extra = repeat + 2 * nRepeat_;
  const auto widen = [](int us) { return static_cast<float>(us); };
  to = std::transform(bursts, repeat, to, widen);
  to = std::transform(repeat, extra, to, widen);
  to = std::transform(repeat, extra, to, widen);
  std::transform(extra, extra + 2 * nExtra_, to, widen);

  lastBurst_ = nSingle_ + 2 * nRepeat_;
  secondCopy_ = nSingle_ + nRepeat_;
  copiedBursts_ = nRepeat_;
  if (nExtra_ > 0) {
    extraStart_ = nSingle_ + 2 * nRepeat_;
    nSingle_ += 2 * nRepeat_ + nExtra_;
    nRepeat_ = nExtra_ = 0;
    lastBurst_ = nSingle_;
  }
  if (nRepeat_ == 0) bursts_[static_cast<size_t>(2 * nSingle_ - 1)] = kEndGapUs;
}

void Signal::setPreempt(int level) {
  if (level > preemptLevel_ || (level == preemptLevel_ && frameLength_ > preemptCountdown_)) {
    preemptLevel_ = level;
    preemptCountdown_ = frameLength_;
  }
}

void Signal::setzContext() {
  context_[0] =
      static_cast<unsigned>(frameStart_) + (static_cast<unsigned>(preemptCountdown_) << kStartBits);
  context_[1] = static_cast<unsigned>(recogniserIndex_ + 1) +
                (static_cast<unsigned>(preemptLevel_) << 8) +
                (static_cast<unsigned>(frameLength_ - 2) << 16);
}

void Signal::claim(const char* name, int device, int subDevice, int obc, int hex0) {
  std::snprintf(protocol_, kMostNameChars + 1, "%s", name);
  *device_ = device;
  *subDevice_ = subDevice;
  *obc_ = obc;
  hex_[0] = hex0;
  setzContext();
}

void Signal::remark(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::vsnprintf(misc_, kMostRemarkChars + 1, fmt, args);
  va_end(args);
}

void Signal::decode() {
  *protocol_ = *misc_ = *error_ = '\0';
  *device_ = *subDevice_ = *obc_ = -1;
  std::fill_n(hex_, 4, -1);
  dittos_ = 0;
  nameVariant_ = false;
  repeatKind_ = repeatKind2_ = -1;
  suffix_.fill('\0');
  matchedRecogniser_ = -1;

  preemptCountdown_ = static_cast<int>(context_[0] >> kStartBits);
  frameLength_ = static_cast<int>(context_[1] >> 16) + 2;
  recogniserIndex_ = static_cast<int>(context_[1] & 0xFF);
  preemptLevel_ = static_cast<int>(context_[1] >> 8 & 0xFF);
  searchFrom(static_cast<int>(context_[0] & kStartMask));
}

void Signal::searchFrom(int start) {
  const int lastStart = nRepeat_ < 2 ? nSingle_ + 2 * nRepeat_ - 1 : nSingle_ + nRepeat_;
  for (frameStart_ = start; frameStart_ < lastStart; ++frameStart_) {
    frame_ = bursts_.get() + 2 * static_cast<ptrdiff_t>(frameStart_);
    gapBefore_ = frameStart_ == 0 ? 1e9F : frame_[-1];
    if (frameStart_ == nSingle_ && nRepeat_ > 0) {
      gapBefore_ =
          std::max(gapBefore_, bursts_[static_cast<size_t>(2 * (nSingle_ + nRepeat_) - 1)]);
    }
    const bool startsHere = frameStart_ == 0 || frameStart_ == nSingle_ ||
                            frame_[-1] + 0.5F * frame_[-2] > frame_[0] + frame_[1] ||
                            frame_[0] > kLongestInsideUs;
    if (startsHere && tryFrame()) return;
    setOn_.clear();
    setOff_.clear();
    setBurst_.clear();
    frameLength_ = 2;
    recogniserIndex_ = 0;
    if (--preemptCountdown_ < 1) preemptCountdown_ = preemptLevel_ = 0;
  }
}

/// Lets the frame at the current start grow until a recogniser names it.
bool Signal::tryFrame() {
  const int longest = std::min(kMostBursts, burstsFromFrame());
  if (frameLength_ > longest) return false;
  totalDuration_ = 0;
  for (int i = 0; i < frameLength_ - 1; ++i) {
    setOn_.insert(frame_ + 2 * i);
    setOff_.insert(frame_ + 2 * i + 1);
    setBurst_.insert1(frame_ + 2 * i);
    totalDuration_ += burst(i);
  }
  setBurst_.findMid();

  for (; frameLength_ <= longest; ++frameLength_) {
    const float* const last = frame_ + 2 * (frameLength_ - 1);
    setOn_.insert(last);
    totalDuration_ += last[0];
    trailingGap_ = last[1];
    largestDuration_ = std::max(setOn_.largest, setOff_.largest);
    framingGap_ = std::min(trailingGap_, gapBefore_);
    frameFreq_ = interfaceLevel_ > 4 && cycles_ != nullptr
                     ? getFreq(frameStart_, frameStart_ + frameLength_)
                     : freq_;
    if (trailingGap_ >= shortestGap_ && callRecognisers()) return true;
    recogniserIndex_ = 0;
    totalDuration_ += trailingGap_;
    setOff_.insert(last + 1);
    setBurst_.insert(last);
  }
  return false;
}

/// Runs the recognisers from the current one on; whether one of them named the frame.
bool Signal::callRecognisers() {
  for (; recogniserIndex_ < static_cast<int>(recognisers_.size()); ++recogniserIndex_) {
    const recogniser& row = recognisers_[static_cast<size_t>(recogniserIndex_)];
    if (!within(row.bounds)) continue;
    (this->*row.member)();
    if (*protocol_ != '\0') {
      matchedRecogniser_ = recogniserIndex_;
      return true;
    }
  }
  return false;
}

int Signal::getFreq(int first, int end) const {
  if (cycles_ == nullptr) return 0;
  int64_t cycles = 0;
  double onTime = 0;
  for (int i = first; i < end; ++i) {
    // The caller's data knows the repeat part once.
    const int slot = i < secondCopy_ ? i : i - copiedBursts_;
    cycles += cycles_[slot] & 0xFFFF;
    onTime += static_cast<double>(bursts_[static_cast<size_t>(2 * i)]);
  }
  if (cycles == end - first || onTime <= 0) return 0;  // one cycle a burst: not modulated
  const double hz = 1e6 * static_cast<double>(cycles) / onTime;
  return hz < INT_MAX ? static_cast<int>(hz) : INT_MAX;
}

bool Signal::lead_in(float minTotal, float maxTotal, float maxOn, float minOff, float extra) const {
  return std::any_of(leadIns_.begin(), leadIns_.end(), [&](const leadIn& lead) {
    if (lead.burst == nullptr) return false;
    const float total = lead.burst[0] + lead.burst[1];
    return lead.burst[1] >= minOff && lead.burst[0] <= maxOn && minTotal <= total &&
           total <= maxTotal && lead.recorded >= total + extra;
  });
}
