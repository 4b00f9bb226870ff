// SPDX-License-Identifier: GPL-3.0-or-later
// Which keys are pressed, and how long they are held, from the signals that are heard.
#pragma once

#include <string>
#include <vector>

#include "companions/remote/identity.h"

namespace companions {

/// A key of a remote, as a file has it.
struct known_key {
  std::string remote;  // the file, or what the file calls the remote
  std::string name;
  std::vector<identity> frames;  // what is sent first, then what is sent while it is held
};

/// One frame of a press.
struct press_event {
  const known_key* key;
  int count;  // frames of this press so far; 1 for the press itself, more while the key is held
};

/// The silence that parts two presses, in ms. Frames of a held key follow each other within 130 ms
/// in all known codes, and a finger needs longer than that.
constexpr int kPressGapMs = 150;

class press_tracker {
 public:
  explicit press_tracker(std::vector<known_key> keys) : keys_(std::move(keys)) {}

  /// What a signal that was heard says, `quiet_ms` after the end of the one before: an event for
  /// each of its frames that belongs to a key. The events point into this object.
  std::vector<press_event> hear(const pattern& signal, int quiet_ms);

 private:
  [[nodiscard]] bool goes_on(const identity& frame) const;
  [[nodiscard]] const known_key* find(const identity& frame) const;

  std::vector<known_key> keys_;
  const known_key* pressed_ = nullptr;  // the last press
  identity first_;                      // its first frame
  int count_ = 0;                       // its frames
};

}  // namespace companions
