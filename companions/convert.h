// SPDX-License-Identifier: GPL-3.0-or-later
// What becomes of a signal on its way into another form, and what of it cannot come along.
#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "companions/formats/form.h"

namespace companions {

constexpr int kSplitGapUs = 14000;  // vantrel, too, ends a signal at a longer space

/// The signal cut behind every space of over kSplitGapUs, which each part keeps as the silence
/// behind it. The parts of a named signal are name, name_2, name_3, …
std::vector<pattern> split_at_gaps(pattern signal);

/// Makes signals fit for one form, and says what is lost: each kind of loss when it first happens,
/// its number at the end.
class fitting {
 public:
  fitting(const form& to, std::ostream& messages) : to_(to), messages_(messages) {}

  /// The signal as the form can hold it; nothing, and a message, when it can not. `place` names
  /// where the signal is from.
  std::optional<pattern> fit(pattern signal, const std::string& place);

  /// Says how often each kind of loss happened after the first time.
  void report() const;

 private:
  enum class loss {
    kName,
    kSpelling,
    kRemote,
    kCarrier,
    kDutyCycle,
    kSilence,
    kLongSilence,
    kRepeat,
    kElapsed,
    kNoCarrier,
    kCount
  };
  static const char* text_of(loss what);

  void lose(loss what, const std::string& place, const std::string& detail);
  void fit_name(pattern& signal, const std::string& place);
  void fit_carrier(pattern& signal, const std::string& place);
  void fit_silence(std::vector<int>& durations, int longest_us, const std::string& place);
  bool fits(const std::vector<int>& durations, int longest_us, const std::string& place);

  const form& to_;
  std::ostream& messages_;
  std::array<size_t, static_cast<size_t>(loss::kCount)> losses_{};
};

}  // namespace companions
