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
      if (s.xmp) xmpFlag_ = true;
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

  /// One call: the name, the device and function it gives, and the remark: "RC5 D1 F2 [T=0]".
  std::string press(std::vector<step> script, int device = -1, int subDevice = -1) {
    static const auto table = scriptedTable();
    device_ = device;
    subDevice_ = subDevice;
    ScriptedSignal signal(context_.data(), bursts_.data(), 38000, single_, repeat_, protocol_,
                          &device_, &subDevice_, &obc_, hex_.data(), misc_, error_, table);
    signal.script = std::move(script);
    signal.decode2();
    std::string text = protocol_;
    if (device_ != -1) text += " D" + std::to_string(device_);
    if (obc_ != -1) text += " F" + std::to_string(obc_);
    return text + " [" + misc_ + ']';
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

/// Records the frames that the search offers.
class OfferedFrames : public Signal {
 public:
  using Signal::Signal;
  std::string seen;
  void look() { seen += std::to_string(frameStart_) + '+' + std::to_string(frameLength_) + ' '; }
};

}  // namespace scripted
