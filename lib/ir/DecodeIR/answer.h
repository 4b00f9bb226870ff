// SPDX-License-Identifier: GPL-3.0-or-later
// What a recogniser says of a frame that it claims: a value, so that nothing of a reading that was
// given up can get into the result of another.
#pragma once

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>

namespace analysis {

/// A text of at most kMost chars, kept in place; what is longer is cut off.
template <size_t kMost>
class short_text {
 public:
  short_text() = default;
  short_text(const char* text) { add(text); }

  void add(std::string_view text) {
    size_ += text.copy(chars_.data() + size_, kMost - size_);
    chars_[size_] = '\0';
  }
  /// Adds a text as printf makes it.
  [[gnu::format(printf, 2, 3)]] void print(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int wrote = std::vsnprintf(chars_.data() + size_, kMost + 1 - size_, format, args);
    va_end(args);
    size_ = std::min(size_ + static_cast<size_t>(std::max(wrote, 0)), kMost);
  }
  void clear() { *this = {}; }

  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] std::string_view view() const { return {chars_.data(), size_}; }
  /// Writes the text and its terminator: size() + 1 chars.
  void copy_to(char* buffer) const { std::copy_n(chars_.data(), size_ + 1, buffer); }

 private:
  std::array<char, kMost + 1> chars_{};
  size_t size_ = 0;
};

/// What a burst of a frame was. A gap parts two halves of a frame; a burst behind the stop mark is
/// one of a held key's repeat frames.
enum class burst_kind : uint8_t { lead_in, bits, gap, stop, ditto };

/// Where the bursts of a frame are that carry no data.
struct burst_layout {
  int lead = 0;            // bursts of the lead-in
  int split = -1;          // the burst that parts two halves, -1 for none
  bool stop = false;       // the last mark carries nothing
  int bits_per_burst = 1;  // of those that carry data

  /// What burst i of a frame of `length` bursts was, 0 the first; the dittos stand behind those.
  [[nodiscard]] constexpr burst_kind kind(int i, int length) const {
    if (i >= length) return burst_kind::ditto;
    if (i < lead) return burst_kind::lead_in;
    if (i == split) return burst_kind::gap;
    return stop && i == length - 1 ? burst_kind::stop : burst_kind::bits;
  }
};

/// Where the frames of a key press are in a signal.
struct press_place {
  int first = 0;             // burst of the first one
  int length = 0;            // bursts of each
  int frames = 0;            // 1 + copies; 0 where dittos follow, which `length` counts
  burst_layout layout = {};  // of each
};

/// Code bytes as remote code tables write them, -1 for none.
struct code_bytes {
  int first = -1, second = -1, third = -1, fourth = -1;
};

/// What preempts what: a claim keeps others of its level and below away from its inside.
inline constexpr int kTimingLevel = 1;    // the durations fit
inline constexpr int kCheckedLevel = 2;   // and checks of the data hold
inline constexpr int kExtendedLevel = 2;  // the claim takes in bursts behind the frame

/// What a frame says of its own place in a press; `none` where all frames are alike.
enum class press_part : uint8_t { none, first, middle, last };

/// The frames of a key press: one and its copies.
struct press {
  int frames = 1;
  bool has_first = false, has_last = false;  // whether one is the first, the last of its press
  std::span<const float> end = {};  // the signal from the last of them on: durations, mark first

  void note(press_part part) {
    has_first |= part == press_part::first;
    has_last |= part == press_part::last;
  }
};

struct answer {
  static constexpr size_t kMostNameChars = 63;
  static constexpr size_t kMostRemarkChars = 199;
  static constexpr size_t kMostErrorChars = 14;
  static constexpr size_t kMostAsideChars = 14;

  short_text<kMostNameChars> name = {};
  int device = -1, subdevice = -1, function = -1;  // -1 for none
  code_bytes hex = {};
  short_text<kMostRemarkChars> remark = {};
  const char* suffix = "";  // of a NEC name, behind the number that tells copies
  const char* error = "";   // what is wrong with the frame although it has a name
  bool variant = false;     // JVC: lead-in present; RCA: long first mark; X10: first frame
  int dittos = 0;           // repeat frames counted behind the frame
  int repeat_kind = -1;     // the two repeat-kind words of the interface
  int repeat_kind2 = -1;
  std::optional<bool> xmp_repeat = {};  // XMP: whether frames that follow may continue the result
  int level = 0;                        // of preemption, 0 for none
  int length = 0;                       // bursts that are claimed, 0: those of the frame
  burst_layout layout = {};
  press_part part = press_part::none;
  /// Goes into the remark of the press; the copies of the frame may say otherwise.
  short_text<kMostAsideChars> aside = {};
  /// Completes the remark when all frames of the press are known; null where a frame says it all.
  /// Looking at the press from every frame of it would cost the square of its length.
  void (*tell_press)(const press& whole, answer* found) = nullptr;
};

}  // namespace analysis
