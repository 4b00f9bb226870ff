// SPDX-License-Identifier: GPL-3.0-or-later
// Recognisers that answer by a script, to drive the search and the repeat bookkeeping with.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <optional>
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
  analysis::press_part part = analysis::press_part::none;  // another one: the press has a remark
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
inline step as_part(step s, analysis::press_part part) {
  s.part = part;
  return s;
}
inline step from_row(step s, int row) {
  s.row = row;
  return s;
}

/// What the recognisers play.
inline std::vector<step> script;
inline int presses_told = 0;

inline void tell(const analysis::press& whole, analysis::answer* found) {
  ++presses_told;
  found->remark.print("%d%s%s, %g us", whole.frames, whole.has_first ? ", first" : "",
                      whole.has_last ? ", last" : "", whole.end[0]);
}

template <size_t kRow>
std::optional<analysis::answer> play(const analysis::frame& seen) {
  for (const step& s : script) {
    if (s.start != seen.before || s.length != seen.length || s.row != static_cast<int>(kRow)) {
      continue;
    }
    analysis::answer found{s.name, s.device, s.subDevice, s.obc, {s.hex0}};
    found.remark = s.remark;
    found.suffix = s.suffix;
    found.error = s.error;
    found.variant = s.variant;
    found.dittos = s.dittos;
    found.repeat_kind = s.kind;
    found.repeat_kind2 = s.kind2;
    found.level = s.preempt;
    found.part = s.part;
    if (s.part != analysis::press_part::none) found.tell_press = tell;
    if (s.xmp) found.xmp_repeat = true;
    return found;
  }
  return {};
}

template <size_t... kRows>
constexpr analysis::recogniser_table scriptedTable(std::index_sequence<kRows...>) {
  return analysis::recogniser_table{{{{static_cast<int>(kRows), "scripted", {}, play<kRows>}...}}};
}
inline constexpr analysis::recogniser_table kScriptedTable =
    scriptedTable(std::make_index_sequence<32>());

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
  std::string press(std::vector<step> played, int device = -1, int subDevice = -1) {
    script = std::move(played);
    device_ = device;
    subDevice_ = subDevice;
    std::strcpy(error_, "before");
    Signal(context_.data(), bursts_.data(), 38000, single_, repeat_, protocol_, &device_,
           &subDevice_, &obc_, hex_.data(), misc_, error_, kScriptedTable)
        .decode2();
    std::string text = protocol_;
    const std::pair<const char*, int> numbers[] = {
        {" D", device_}, {" S", subDevice_}, {" F", obc_}, {" H", hex_[0]}};
    for (const auto& [letter, number] : numbers) {
      if (number != -1) text += letter + std::to_string(number);
    }
    return text + " [" + misc_ + ']' + error_;
  }

  /// The carrier that one call leaves in the context, which holds the bursts' cycle counts.
  unsigned carrierOf(const std::vector<uint32_t>& cycles, std::vector<step> played,
                     int device = -1) {
    const auto* data = cycles.data();
    std::memcpy(&context_[6], &data, sizeof data);
    press(std::move(played), device, -8);
    return context_[6];
  }
};

/// The frames that the search offers.
struct offers {
  std::string seen;     // first burst and length: "0+2 0+3 2+2 "
  std::string details;  // what a recogniser knows of the last one
};

inline offers offer;

/// Notes the frame and finds nothing.
inline std::optional<analysis::answer> look(const analysis::frame& seen) {
  offer.seen += std::to_string(seen.before) + '+' + std::to_string(seen.length) + ' ';
  const setBurst lengths = seen.burst_lengths();
  char text[255];
  std::snprintf(text, sizeof text,
                "gaps %g %g framing %g total %g largest %g carrier %d marks %g %g %g spaces %g %g "
                "bursts %g %g middle %g %g",
                seen.gap_before, seen.trailing_gap, seen.framing_gap, seen.total_us,
                seen.largest_us, seen.carrier_hz, seen.on_times.smallest, seen.on_times.second,
                seen.on_times.largest, seen.off_times.smallest, seen.off_times.largest,
                lengths.smallest, lengths.largest, lengths.mid_low, lengths.mid_high);
  offer.details = text;
  return {};
}

/// What the search offers of a signal to a recogniser with these bounds.
inline offers offered(const std::vector<int>& bursts, int single, int repeat,
                      const analysis::frame_bounds& bounds = {}) {
  std::array<analysis::recogniser, 32> table;
  table.fill({0, "none", {.min_bursts = 101, .min_gap = bounds.min_gap}, look});
  table[5].bounds = bounds;
  const analysis::recogniser_table asked(table);
  offer = {};
  unsigned context[2] = {0, 0};
  char text[3][255] = {"", "", ""};
  int numbers[3] = {-1, -1, -1};
  int hex[4];
  Signal(context, bursts.data(), 38000, single, repeat, text[0], &numbers[0], &numbers[1],
         &numbers[2], hex, text[1], text[2], asked)
      .decode2();
  return offer;
}

}  // namespace scripted
