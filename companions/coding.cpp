// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/coding.h"

#include "companions/bursts.h"
#include "companions/clusters.h"
#include "companions/coding_readers.h"

namespace companions {

namespace {

/// The sections of a signal whose bits are not known: what lies between its gaps.
coding read_gaps(std::span<const int> durations) {
  constexpr int kShortestGapUs = 5000;
  constexpr double kGapPerBurst = 4;  // and to the typical burst
  const burst_view bursts(durations);
  std::vector<int> lengths;
  for (size_t i = 0; i < bursts.whole(); ++i) lengths.push_back(bursts.length(i));
  const double shortest_gap = std::max<double>(kShortestGapUs, kGapPerBurst * median(lengths));

  coding found;
  found.roles.assign(durations.size(), role::kPlain);
  bool open = false;
  for (size_t i = 0; i < bursts.count(); ++i) {
    if (!open) found.sections.push_back({.first = 2 * i});
    const auto space = bursts.space(i);
    open = !space || *space < shortest_gap;
    if (open) continue;
    found.sections.back().gap_us = space;
    found.roles[2 * i + 1] = role::kGap;
  }
  return found;
}

}  // namespace

std::string_view name_of(modulation kind) {
  switch (kind) {
    case modulation::kPulseDistance:
      return "pulse distance";
    case modulation::kPulseWidth:
      return "pulse width";
    case modulation::kBiPhase:
      return "bi-phase";
    case modulation::kUnknown:
      break;
  }
  return "unknown";
}

coding find_coding(std::span<const int> durations) {
  auto distance = read_pulse_distance(durations);
  if (distance && distance->odd == 0) return std::move(distance->found);
  // Bi-phase explains every duration or nothing.
  if (auto halves = read_bi_phase(durations)) return std::move(*halves);
  auto width = read_pulse_width(durations);
  if (width && (!distance || width->odd < distance->odd)) return std::move(width->found);
  return distance ? std::move(distance->found) : read_gaps(durations);
}

std::vector<unsigned char> bytes_of(std::string_view bits, bit_order order) {
  std::vector<unsigned char> bytes;
  bytes.reserve(bits.size() / 8 + 1);
  for (; !bits.empty(); bits.remove_prefix(std::min<size_t>(bits.size(), 8))) {
    const std::string_view byte = bits.substr(0, 8);
    unsigned value = 0;
    for (size_t i = 0; i < byte.size(); ++i) {
      const size_t from_left = order == bit_order::kMsbFirst ? i : byte.size() - 1 - i;
      value = value << 1 | (byte[from_left] == '1' ? 1U : 0U);
    }
    bytes.push_back(static_cast<unsigned char>(value));
  }
  return bytes;
}

}  // namespace companions
