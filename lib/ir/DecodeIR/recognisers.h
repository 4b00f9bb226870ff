// SPDX-License-Identifier: GPL-3.0-or-later
// The table of recognisers: what looks at a candidate frame, and in which order.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>

#include "lib/ir/DecodeIR/answer.h"
#include "lib/ir/DecodeIR/frame.h"

namespace analysis {

/// One row of the table.
struct recogniser {
  int index;  // its place, which the resume state stores
  const char* name;
  frame_bounds bounds;
  /// Says what the frame is, or nothing. REQUIRES: the frame is in the bounds.
  std::optional<answer> (*read)(const frame& seen);

  /// The same for any frame.
  [[nodiscard]] std::optional<answer> ask(const frame& seen) const {
    return bounds.hold(seen) ? read(seen) : std::nullopt;
  }
};

/// Recognisers in call order: the first to claim a frame wins, so each refuses every frame that a
/// later one owns.
class recogniser_table {
 public:
  static constexpr int kCount = 32;

  constexpr explicit recogniser_table(const std::array<recogniser, kCount>& rows) : rows_(rows) {
    for (size_t i = 0; i < rows.size(); ++i) {
      const frame_bounds& bounds = rows[i].bounds;
      shortest_gap_ = std::min(shortest_gap_, bounds.min_gap);
      shortest_gap_before_ = std::min(shortest_gap_before_, bounds.min_gap_before);
      for (int bursts = bounds.min_bursts; bursts <= bounds.max_bursts; ++bursts) {
        if (bursts <= frame::kMostBursts) by_bursts_[static_cast<size_t>(bursts)] |= 1U << i;
      }
    }
  }

  [[nodiscard]] constexpr const recogniser& operator[](size_t i) const { return rows_[i]; }
  [[nodiscard]] constexpr auto begin() const { return rows_.begin(); }
  [[nodiscard]] constexpr auto end() const { return rows_.end(); }
  [[nodiscard]] constexpr size_t size() const { return rows_.size(); }

  /// The least gap behind a frame that any of them looks at.
  [[nodiscard]] constexpr float shortest_gap() const { return shortest_gap_; }
  /// The same of the gap before it.
  [[nodiscard]] constexpr float shortest_gap_before() const { return shortest_gap_before_; }
  /// The first one from `index` on whose bounds hold for the frame; kCount where there is none.
  [[nodiscard]] int next(int index, const frame& seen) const {
    if (index >= kCount) return kCount;
    uint32_t left = by_bursts_[static_cast<size_t>(seen.length)] >> index << index;
    for (; left != 0; left &= left - 1) {
      const int i = std::countr_zero(left);
      if (rows_[static_cast<size_t>(i)].bounds.hold(seen)) return i;
    }
    return kCount;
  }

 private:
  std::array<recogniser, kCount> rows_;
  std::array<uint32_t, frame::kMostBursts + 1> by_bursts_ = {};  // bit i: row i takes so many
  float shortest_gap_ = frame::kSilenceUs;
  float shortest_gap_before_ = frame::kSilenceUs;
};

extern const recogniser_table kRecognisers;

}  // namespace analysis
