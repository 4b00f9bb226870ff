// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/remote/identity.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "companions/convert.h"

namespace companions {
namespace {

// Two receivers, or two presses, of one code: the shift of a mark's end is the larger part for
// short durations, the clock of the two remotes and the grid of a recording tool for long ones.
constexpr int kAlikeUs = 150;
constexpr double kAlikeFraction = 0.2;

identity identify_frame(std::vector<int> durations) {
  identity frame{{}, std::move(durations)};
  if (frame.durations.size() > kMostDurations) return frame;
  for (analysis_answer& answer : ask_analysis(frame.durations)) {
    if (!answer.names_a_protocol()) continue;
    frame.answer = std::move(answer);
    break;
  }
  return frame;
}

bool alike(int a, int b) {
  return std::abs(a - b) <= std::max<double>(kAlikeUs, kAlikeFraction * std::max(a, b));
}

std::string_view toggle_of(const identity& frame) {
  if (!frame.answer) return {};
  const std::string_view remark = frame.answer->misc;
  const size_t at = remark.find("T=");
  return at == remark.npos ? std::string_view{} : remark.substr(at);
}

}  // namespace

std::string identity::text() const {
  if (!answer) return "no known protocol, " + std::to_string(durations.size()) + " durations";
  std::string text = answer->protocol;
  const auto add = [&text](const char* letter, int number) {
    if (number >= 0) text += std::string(" ") + letter + "=" + std::to_string(number);
  };
  add("D", answer->device);
  add("S", answer->subdevice);
  add("F", answer->obc);
  return text;
}

std::vector<identity> identify(const pattern& signal) {
  std::vector<identity> frames;
  for (const pattern& frame : split_at_gaps(signal)) {
    frames.push_back(identify_frame(without_gap(frame.durations)));
  }
  return frames;
}

bool same(const identity& a, const identity& b) {
  if (a.answer && b.answer) {
    return a.answer->protocol == b.answer->protocol && a.answer->device == b.answer->device &&
           a.answer->subdevice == b.answer->subdevice && a.answer->obc == b.answer->obc;
  }
  return a.answer.has_value() == b.answer.has_value() &&
         std::equal(a.durations.begin(), a.durations.end(), b.durations.begin(), b.durations.end(),
                    alike);
}

bool toggled(const identity& a, const identity& b) {
  return toggle_of(a) != toggle_of(b);
}

}  // namespace companions
