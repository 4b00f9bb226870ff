// SPDX-License-Identifier: GPL-3.0-or-later
// Recognisers that answer by a script, to drive the search and the repeat bookkeeping with.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "lib/ir/DecodeIR/signal.h"

namespace scripted {

/// What a scripted recogniser answers when it sees one candidate frame.
struct step {
  int start, length;  // bursts
  const char* name;
  int device = -1, subDevice = -1, obc = -1;
  const char* remark = "";
  int hex0 = -1;
  bool variant = false;
  int dittos = 0;
  bool xmp = false;
  int row = 0;  // the recogniser that answers
  const char* suffix = "";
  int preempt = 0;  // the level that the recogniser asks for, 0 for none
  int kind = -1, kind2 = -1;
  const char* error = "";
};

/// Steps that say more than a name and numbers. Dittos come from the row of the pulse-distance
/// codes.
inline step with_dittos(step s, int dittos) {
  s.dittos = dittos;
  s.row = 10;
  return s;
}
inline step with_variant(step s) {
  s.variant = true;
  return s;
}
inline step with_suffix(step s, const char* suffix) {
  s.suffix = suffix;
  return s;
}
inline step as_xmp(step s) {
  s.xmp = true;
  return s;
}
inline step with_preempt(step s, int level) {
  s.preempt = level;
  return s;
}
inline step with_kinds(step s, int kind, int kind2) {
  s.kind = kind;
  s.kind2 = kind2;
  return s;
}
inline step with_error(step s, const char* error) {
  s.error = error;
  return s;
}
inline step from_row(step s, int row) {
  s.row = row;
  return s;
}

class ScriptedSignal : public Signal {
 public:
  using Signal::Signal;
  std::vector<step> script;

  void play() {
    for (const step& s : script) {
      if (s.start != frameStart_ || s.length != frameLength_ || s.row != recogniserIndex_) continue;
      remark("%s", s.remark);
      nameVariant_ = s.variant;
      dittos_ = s.dittos;
      std::strcpy(error_, s.error);
      repeatKind_ = s.kind;
      repeatKind2_ = s.kind2;
      if (s.xmp) xmpFlag_ = true;
      if (s.preempt > 0) setPreempt(s.preempt);
      std::snprintf(suffix_.data(), suffix_.size(), "%s", s.suffix);
      claim(s.name, s.device, s.subDevice, s.obc, s.hex0);
      return;
    }
  }
};

inline std::array<recogniser, 32> scriptedTable() {
  std::array<recogniser, 32> table;
  table.fill({"scripted", static_cast<void (Signal::*)()>(&ScriptedSignal::play), {}});
  return table;
}

/// Twelve bursts of which every one may start a frame; the caller's parameters can be changed.
class ScriptedCall : public testing::Test {
 protected:
  static constexpr int kMarkUs = 15000;  // longer than any inside a frame: a frame may start here

  std::vector<int> bursts_ = [] {
    std::vector<int> list;
    for (int i = 0; i < 16; ++i) list.insert(list.end(), {kMarkUs, 500});
    return list;
  }();
  std::array<unsigned, 16> context_{};
  int single_ = 12, repeat_ = 0;
  int device_ = -1, subDevice_ = -1, obc_ = -1;
  std::array<int, 4> hex_{};
  char protocol_[64] = "", misc_[255] = "", error_[255] = "";

  /// One call: the name, the numbers it gives, and the remark: "RC5 D1 F2 [T=0]".
  std::string press(std::vector<step> script, int device = -1, int subDevice = -1) {
    static const auto table = scriptedTable();
    device_ = device;
    subDevice_ = subDevice;
    std::strcpy(error_, "before");
    ScriptedSignal signal(context_.data(), bursts_.data(), 38000, single_, repeat_, protocol_,
                          &device_, &subDevice_, &obc_, hex_.data(), misc_, error_, table);
    signal.script = std::move(script);
    signal.decode2();
    std::string text = protocol_;
    const std::pair<const char*, int> numbers[] = {
        {" D", device_}, {" S", subDevice_}, {" F", obc_}, {" H", hex_[0]}};
    for (const auto& [letter, number] : numbers) {
      if (number != -1) text += letter + std::to_string(number);
    }
    return text + " [" + misc_ + ']' + error_;
  }

  /// The carrier that one call leaves in the context, which holds the bursts' cycle counts.
  unsigned carrierOf(const std::vector<uint32_t>& cycles, std::vector<step> script,
                     int device = -1) {
    const auto* data = cycles.data();
    std::memcpy(&context_[6], &data, sizeof data);
    press(std::move(script), device, -8);
    return context_[6];
  }
};

/// The frames that the search offers.
struct offers {
  std::string seen;     // first burst and length: "0+2 0+3 2+2 "
  std::string details;  // what a recogniser knows of the last one
};

class OfferedFrames : public Signal, public offers {
 public:
  using Signal::Signal;
  void look() {
    seen += std::to_string(frameStart_) + '+' + std::to_string(frameLength_) + ' ';
    char text[255];
    std::snprintf(
        text, sizeof text,
        "gaps %g %g framing %g total %g largest %g carrier %d marks %g %g %g spaces %g %g "
        "bursts %g %g middle %g %g",
        gapBefore_, trailingGap_, framingGap_, totalDuration_, largestDuration_, frameFreq_,
        setOn_.smallest, setOn_.second, setOn_.largest, setOff_.smallest, setOff_.largest,
        setBurst_.smallest, setBurst_.largest, setBurst_.mid_low, setBurst_.mid_high);
    details = text;
  }
};

/// What the search offers of a signal to a recogniser with these bounds.
inline offers offered(const std::vector<int>& bursts, int single, int repeat,
                      const frame_bounds& bounds = {}) {
  std::array<recogniser, 32> table;
  table.fill({"none", static_cast<void (Signal::*)()>(&OfferedFrames::look), {.min_bursts = 101}});
  table[5].bounds = bounds;
  unsigned context[2] = {0, 0};
  char text[3][255] = {"", "", ""};
  int numbers[3] = {-1, -1, -1};
  int hex[4];
  OfferedFrames signal(context, bursts.data(), 38000, single, repeat, text[0], &numbers[0],
                       &numbers[1], &numbers[2], hex, text[1], text[2], table);
  signal.decode2();
  return signal;
}

}  // namespace scripted
