// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/presses.h"

#include <algorithm>

namespace companions {
namespace {

// Where frames are repeated by a short sign, it is a lead-in and a mark, or a little more.
constexpr size_t kMostDittoDurations = 5;

}  // namespace

std::vector<press_event> press_tracker::hear(const pattern& signal, int quiet_ms) {
  std::vector<press_event> events;
  if (quiet_ms > kPressGapMs) pressed_ = nullptr;
  for (const identity& frame : identify(signal)) {
    if (pressed_ != nullptr && goes_on(frame)) {
      events.push_back({pressed_, ++count_});
      continue;
    }
    const known_key* const key = find(frame);
    if (key == nullptr) continue;
    pressed_ = key;
    first_ = frame;
    count_ = 1;
    events.push_back({key, count_});
  }
  return events;
}

/// Whether a frame that follows the last press at once is what a held key sends.
bool press_tracker::goes_on(const identity& frame) const {
  if (same(frame, first_)) return !toggled(frame, first_);
  if (frame.durations.size() <= kMostDittoDurations) return true;
  return std::any_of(pressed_->frames.begin() + 1, pressed_->frames.end(),
                     [&frame](const identity& later) { return same(frame, later); });
}

const known_key* press_tracker::find(const identity& frame) const {
  const auto found = std::find_if(keys_.begin(), keys_.end(), [&frame](const known_key& key) {
    return same(key.frames.front(), frame);
  });
  return found == keys_.end() ? nullptr : &*found;
}

}  // namespace companions
