// SPDX-License-Identifier: GPL-3.0-or-later
// Construction, resume state, preemption and the search for candidate frames.
#include "lib/ir/DecodeIR/signal.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "lib/ir/receiver.h"

namespace {

constexpr unsigned kStartMask = 0xFFFFF;  // context[0] holds the start burst in its low 20 bits
constexpr int kStartBits = 20;
// What else the resume state has room for. A key held for minutes sends more dittos.
constexpr int kMostCountdown = 0xFFF;
constexpr int kMostLength = 0xFFFF + 2;
constexpr int kHighestLevel = 9;

// Bursts that are widened at a time, and those from its start on that the readers of a frame look
// at, but for its dittos.
constexpr int kWidened = 1024;
constexpr int kInSight = 4 * analysis::frame::kMostBursts;
constexpr int kMostDittoBursts = 32;

float widen(int us) {
  return static_cast<float>(us);
}

/// Whether the burst at `at` looks like a lead-in: its mark and all of it are longer than the next.
/// It may be longer than the gap to what another sender left before it.
bool is_lead_in(const float* at) {
  constexpr float kMark = 2;
  constexpr float kBurst = 1.4F;
  return at[0] > kMark * at[2] && at[0] + at[1] > kBurst * (at[2] + at[3]);
}

}  // namespace

Signal::Signal(unsigned int* context, const int* bursts, int freq, int singleCount, int repeatCount,
               char* protocol, int* device, int* subDevice, int* obc, int* hex, char* misc,
               char* error, const analysis::recogniser_table& recognisers)
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
      recognisers_(recognisers) {
  if (nRepeat_ > 0 && *device < -1)
    nExtra_ = *device > -(1 << kStartBits) ? -*device : 1 << kStartBits;
  if (*subDevice < -1) interfaceLevel_ = -std::max(*subDevice, -kHighestLevel);
  if (interfaceLevel_ >= 8) std::memcpy(&cycles_, &context[6], sizeof cycles_);

  // The resume state addresses 2^20 bursts; a longer signal is not searched at all.
  const auto total = int64_t{nSingle_} + 2 * int64_t{nRepeat_} + nExtra_;
  if (total > kStartMask) {
    nSingle_ = nRepeat_ = nExtra_ = 0;
    return;
  }
  const auto size = static_cast<size_t>(2 * total) + kZerosBehind;
  if (size > kInPlace) allocated_ = std::make_unique_for_overwrite<float[]>(size);
  bursts_ = allocated_ != nullptr ? allocated_.get() : in_place_.data();
  std::fill_n(bursts_ + 2 * total, kZerosBehind, 0.0F);
  if (nRepeat_ == 0 && total > kWidened) {
    narrow_ = bursts;
  } else {
    float* to = bursts_;
    const int* const repeat = bursts + 2 * nSingle_;
    const int* const extra = repeat + 2 * nRepeat_;
    to = std::transform(bursts, repeat, to, widen);
    to = std::transform(repeat, extra, to, widen);
    to = std::transform(repeat, extra, to, widen);
    std::transform(extra, extra + 2 * nExtra_, to, widen);
  }

  lastBurst_ = nSingle_ + 2 * nRepeat_;
  secondCopy_ = nSingle_ + nRepeat_;
  copiedBursts_ = nRepeat_;
  if (nExtra_ > 0) {
    extraStart_ = nSingle_ + 2 * nRepeat_;
    nSingle_ += 2 * nRepeat_ + nExtra_;
    nRepeat_ = nExtra_ = 0;
    lastBurst_ = nSingle_;
  }
  if (nRepeat_ == 0) {
    float& end = bursts_[2 * nSingle_ - 1];
    if (narrow_ != nullptr) end = widen(bursts[2 * nSingle_ - 1]);
    if (end > kNoSpaceUs && end < receiver::kShortestGapUs) cut_us_ = end;
    end = kEndGapUs;
  }
}

/// Bursts from the frame's first one on, of those that are there, without a second copy.
int Signal::sent_bursts() const {
  const int sent = narrow_ != nullptr ? widenedTo_ : nSingle_ + nRepeat_;
  return sent - frame_.before;
}

/// Whether the dittos that were found reach to where bursts are still missing.
bool Signal::dittos_may_go_on(const analysis::answer& found) const {
  return narrow_ != nullptr && widenedTo_ < nSingle_ && found.dittos > 0 &&
         found.length + kMostDittoBursts > frame_.sent;
}

/// Makes the bursts that a search from `first` on begins with: two before it are looked at.
void Signal::widen_from(int first) {
  if (narrow_ == nullptr) return;
  first = std::max(first - 2, 0);
  if (first < widenedFrom_ || first > widenedTo_) widenedFrom_ = widenedTo_ = first;
}

/// Makes the bursts up to this one, as far as there are so many.
void Signal::widen_to(int end) {
  if (narrow_ == nullptr || std::min(end, nSingle_) <= widenedTo_) return;
  end = std::min(std::max(end, widenedTo_ + kWidened), nSingle_);
  const ptrdiff_t from = ptrdiff_t{2} * widenedTo_;
  const ptrdiff_t to = std::min(2 * end, 2 * nSingle_ - 1);  // the last space is kEndGapUs
  std::transform(narrow_ + from, narrow_ + to, bursts_ + from, widen);
  widenedTo_ = end;
}

void Signal::setPreempt(int level) {
  if (level > preemptLevel_ || (level == preemptLevel_ && frame_.length > preemptCountdown_)) {
    preemptLevel_ = level;
    preemptCountdown_ = std::min(frame_.length, kMostCountdown);
  }
}

void Signal::setzContext() {
  context_[0] = static_cast<unsigned>(frame_.before) +
                (static_cast<unsigned>(preemptCountdown_) << kStartBits);
  context_[1] = static_cast<unsigned>(recogniserIndex_ + 1) +
                (static_cast<unsigned>(preemptLevel_) << 8) +
                (static_cast<unsigned>(std::min(frame_.length, kMostLength) - 2) << 16);
}

void Signal::decode() {
  found_.reset();
  write_results({});
  *misc_ = *error_ = '\0';

  preemptCountdown_ = static_cast<int>(context_[0] >> kStartBits);
  frame_.length = static_cast<int>(context_[1] >> 16) + 2;
  recogniserIndex_ = static_cast<int>(context_[1] & 0xFF);
  preemptLevel_ = static_cast<int>(context_[1] >> 8 & 0xFF);
  const auto start = static_cast<int>(context_[0] & kStartMask);
  widen_from(start);
  search_from(start);
}

void Signal::search_from(int start) {
  const int last_start = nRepeat_ < 2 ? nSingle_ + 2 * nRepeat_ - 1 : nSingle_ + nRepeat_;
  for (frame_.before = start; frame_.before < last_start; ++frame_.before) {
    widen_to(frame_.before + kInSight);
    const float* const at = burst_at(frame_.before);
    float gap = frame_.before == 0 ? analysis::frame::kSilenceUs : at[-1];
    if (frame_.before == nSingle_ && nRepeat_ > 0) {
      gap = std::max(gap, bursts_[2 * (nSingle_ + nRepeat_) - 1]);
    }
    const bool starts_here = frame_.before == 0 || frame_.before == nSingle_ ||
                             at[-1] + 0.5F * at[-2] > at[0] + at[1] ||
                             (at[-1] >= receiver::kShortestGapUs && is_lead_in(at)) ||
                             at[0] > analysis::frame::kLongestInsideUs;
    if (starts_here && try_frame(at, gap)) return;
    frame_.length = 2;
    recogniserIndex_ = 0;
    if (--preemptCountdown_ < 1) preemptCountdown_ = preemptLevel_ = 0;
  }
}

/// Lets the frame that starts at `at`, behind `gap` µs, grow until a recogniser names it.
bool Signal::try_frame(const float* at, float gap) {
  // Only a gap gets longer by a stray mark in it.
  if (gap < std::min<float>(recognisers_.shortest_gap_before(), receiver::kShortestGapUs)) {
    return false;
  }
  frame_.reach = lastBurst_ - frame_.before;
  frame_.sent = sent_bursts();
  frame_.preempt_level = preemptLevel_;
  const int longest = std::min(analysis::frame::kMostBursts, frame_.reach);
  if (frame_.length > longest) return false;
  frame_.begin(at, frame_.length, gap);
  for (int bursts = frame_.length; bursts <= longest; ++bursts) {
    // Most ends are refused by their gap, before anything of the frame is looked at.
    if (at[2 * bursts - 1] >= recognisers_.shortest_gap()) {
      frame_.grow_to(bursts);
      frame_.cut_us = bursts == frame_.reach ? cut_us_ : analysis::frame::kSilenceUs;
      frame_.carrier_hz =
          cycles_ != nullptr ? getFreq(frame_.before, frame_.before + bursts) : freq_;
      if (frame_.is_possible() && call_recognisers()) return true;
    }
    recogniserIndex_ = 0;
  }
  return false;
}

/// Asks the recognisers from the current one on; whether one of them named the frame.
bool Signal::call_recognisers() {
  constexpr int kEnd = analysis::recogniser_table::kCount;
  for (int i = recognisers_.next(recogniserIndex_, frame_); i < kEnd;
       i = recognisers_.next(i + 1, frame_)) {
    if (recognise(i)) return true;
  }
  return false;
}

bool Signal::recognise(int index) {
  recogniserIndex_ = index;
  if (frame_.listener != nullptr) frame_.listener->asked(frame_);
  auto found = recognisers_[static_cast<size_t>(index)].ask(frame_);
  while (found && dittos_may_go_on(*found)) {
    widen_to(widenedTo_ + (widenedTo_ - widenedFrom_));
    frame_.sent = sent_bursts();
    found = recognisers_[static_cast<size_t>(index)].ask(frame_);
  }
  if (found) claim(*found);
  return found.has_value();
}

void Signal::claim(const analysis::answer& found) {
  found_ = found;
  if (found.length > 0) {
    frame_.length = found.length;
    frame_.trailing_gap = frame_.off(found.length - 1);
  }
  if (found.level > 0) setPreempt(found.level);
  if (found.xmp_repeat) xmpFlag_ = *found.xmp_repeat;
  write_results(found);
  found.remark.copy_to(misc_);
  analysis::short_text<analysis::answer::kMostErrorChars>(found.error).copy_to(error_);
  setzContext();
}

void Signal::write_results(const analysis::answer& found) {
  found.name.copy_to(protocol_);
  *device_ = found.device;
  *subDevice_ = found.subdevice;
  *obc_ = found.function;
  hex_[0] = found.hex.first;
  hex_[1] = found.hex.second;
  hex_[2] = found.hex.third;
  hex_[3] = found.hex.fourth;
}

int Signal::getFreq(int first, int end) const {
  if (cycles_ == nullptr) return 0;
  int64_t cycles = 0;
  double on_time = 0;
  for (int i = first; i < end; ++i) {
    // The caller's data knows the repeat part once.
    const int slot = i < secondCopy_ ? i : i - copiedBursts_;
    cycles += cycles_[slot] & 0xFFFF;
    on_time += static_cast<double>(bursts_[2 * i]);
  }
  if (cycles == end - first || on_time <= 0) return 0;  // one cycle a burst: not modulated
  const double hz = 1e6 * static_cast<double>(cycles) / on_time;
  return hz < INT_MAX ? static_cast<int>(hz) : INT_MAX;
}
