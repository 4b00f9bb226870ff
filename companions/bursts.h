// SPDX-License-Identifier: GPL-3.0-or-later
// A signal seen as bursts: a mark and the space behind it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace companions {

/// The bursts of a signal. Where it ends in a mark, its last burst has no space.
class burst_view {
 public:
  explicit burst_view(std::span<const int> durations) : durations_(durations) {}
  [[nodiscard]] size_t count() const { return (durations_.size() + 1) / 2; }
  /// Those that have a space.
  [[nodiscard]] size_t whole() const { return durations_.size() / 2; }
  [[nodiscard]] int mark(size_t i) const { return durations_[2 * i]; }
  [[nodiscard]] std::optional<int> space(size_t i) const {
    if (i >= whole()) return {};
    return durations_[2 * i + 1];
  }
  [[nodiscard]] int length(size_t i) const { return mark(i) + space(i).value_or(0); }

 private:
  std::span<const int> durations_;
};

}  // namespace companions
