// SPDX-License-Identifier: GPL-3.0-or-later
#include "companions/convert.h"

#include <algorithm>
#include <utility>

#include "companions/formats/text.h"

namespace companions {

namespace {

/// Without durations of zero: what stands on both sides of one is of one kind.
std::vector<int> without_zeros(const std::vector<int>& durations) {
  std::vector<int> all;
  for (size_t i = 0; i < durations.size(); ++i) {
    const bool mark = i % 2 == 0;
    if (durations[i] > 0 && (mark || !all.empty())) append(all, mark, durations[i]);
  }
  return all;
}

std::string quoted(const std::string& name) {
  return '"' + name + '"';
}

}  // namespace

std::vector<pattern> split_at_gaps(pattern signal) {
  std::vector<pattern> parts;
  const std::vector<int> whole = std::exchange(signal.durations, {});
  const std::vector<int> repeat = std::exchange(signal.repeat, {});
  for (size_t first = 0; first < whole.size();) {
    size_t end = first + 1;
    while (end < whole.size() && (end % 2 == 0 || whole[end] <= kSplitGapUs)) ++end;
    end = std::min(end + 1, whole.size());
    parts.push_back(signal);
    parts.back().durations.assign(whole.begin() + static_cast<std::ptrdiff_t>(first),
                                  whole.begin() + static_cast<std::ptrdiff_t>(end));
    if (parts.size() > 1 && !signal.name.empty()) {
      parts.back().name += '_' + std::to_string(parts.size());
    }
    first = end;
  }
  if (parts.empty()) parts.push_back(std::move(signal));
  if (parts.size() > 1) {
    for (pattern& part : parts) {
      part.held = false;
      part.code.reset();
    }
    std::for_each(parts.begin() + 1, parts.end(), [](pattern& part) { part.elapsed_ms.reset(); });
  }
  parts.back().repeat = repeat;
  return parts;
}

const char* fitting::text_of(loss what) {
  switch (what) {
    case loss::kName:
      return "holds no names";
    case loss::kSpelling:
      return "spells names in its own way";
    case loss::kRemote:
      return "holds no name of a remote";
    case loss::kCarrier:
      return "holds no carrier";
    case loss::kDutyCycle:
      return "holds no duty cycle";
    case loss::kSilence:
      return "holds no silence behind a signal";
    case loss::kLongSilence:
      return "holds no silence that long";
    case loss::kRepeat:
      return "holds no repeat sequence";
    case loss::kElapsed:
      return "holds no time between signals";
    case loss::kNoCarrier:
    case loss::kCount:
      break;
  }
  return "needs a carrier, and none is told";
}

void fitting::lose(loss what, const std::string& place, const std::string& detail) {
  if (losses_[static_cast<size_t>(what)]++ > 0) return;
  messages_ << place << ": " << to_.name << ' ' << text_of(what) << ": " << printable(detail)
            << '\n';
}

void fitting::report() const {
  for (size_t kind = 0; kind < losses_.size(); ++kind) {
    if (losses_[kind] < 2) continue;
    messages_ << to_.name << ' ' << text_of(static_cast<loss>(kind)) << ": so for "
              << losses_[kind] - 1 << " more\n";
  }
}

void fitting::fit_name(pattern& signal, const std::string& place) {
  if (!signal.remote.empty() && !to_.holds.remote) {
    lose(loss::kRemote, place, quoted(signal.remote) + " is left out");
  }
  if (signal.name.empty()) return;
  if (to_.holds.spell == nullptr) {
    lose(loss::kName, place, quoted(signal.name) + " is left out");
    return;
  }
  std::string spelt = to_.holds.spell(signal.name);
  if (spelt != signal.name) {
    lose(loss::kSpelling, place, quoted(signal.name) + " becomes " + quoted(spelt));
  }
  signal.name = std::move(spelt);
}

void fitting::fit_carrier(pattern& signal, const std::string& place) {
  if (signal.carrier_hz && !to_.holds.carrier) {
    lose(loss::kCarrier, place, std::to_string(*signal.carrier_hz) + " Hz are left out");
  }
  if (signal.duty_cycle && !to_.holds.duty_cycle) {
    lose(loss::kDutyCycle, place, std::to_string(*signal.duty_cycle) + " is left out");
  }
  if (!signal.carrier_hz && to_.holds.needs_carrier) {
    signal.carrier_hz = kUsualCarrierHz;
    lose(loss::kNoCarrier, place, std::to_string(kUsualCarrierHz) + " Hz are assumed");
  }
}

void fitting::fit_silence(std::vector<int>& durations, int longest_us, const std::string& place) {
  if (durations.empty() || durations.size() % 2 == 1) return;
  const std::string us = std::to_string(durations.back()) + " us ";
  if (!to_.holds.gap) {
    lose(loss::kSilence, place, us + "are left out");
    durations.pop_back();
  } else if (durations.back() > longest_us) {
    lose(loss::kLongSilence, place, us + "become " + std::to_string(longest_us));
    durations.back() = longest_us;
  }
}

bool fitting::fits(const std::vector<int>& durations, int longest_us, const std::string& place) {
  if (durations.size() > to_.holds.most_durations) {
    messages_ << place << ": " << to_.name << " holds signals of up to " << to_.holds.most_durations
              << " durations, not of " << durations.size() << '\n';
    return false;
  }
  const auto longest = std::max_element(durations.begin(), durations.end());
  if (longest == durations.end() || *longest <= longest_us) return true;
  messages_ << place << ": " << to_.name << " holds durations of up to " << longest_us
            << " us, not " << *longest << " inside a signal; --split parts it there\n";
  return false;
}

std::optional<pattern> fitting::fit(pattern signal, const std::string& place) {
  signal.durations = without_zeros(signal.durations);
  signal.repeat = without_zeros(signal.repeat);
  if (!to_.holds.code) signal.code.reset();
  if (signal.durations.empty()) {
    messages_ << place << ": a signal without durations\n";
    return {};
  }
  fit_name(signal, place);
  fit_carrier(signal, place);
  if (signal.elapsed_ms && !to_.holds.elapsed) {
    lose(loss::kElapsed, place, std::to_string(*signal.elapsed_ms) + " ms are left out");
  }
  if (!signal.repeat.empty() && !to_.holds.repeat && !signal.code) {
    lose(loss::kRepeat, place, std::to_string(signal.repeat.size()) + " durations are left out");
    signal.repeat.clear();
  }
  int longest_us = to_.holds.longest_us;
  if (to_.holds.longest_periods > 0) {
    const int hz = signal.carrier_hz.value_or(0) > 0 ? *signal.carrier_hz : kUsualCarrierHz;
    longest_us = static_cast<int>(
        std::min(int64_t{longest_us}, int64_t{to_.holds.longest_periods} * 1'000'000 / hz));
  }
  for (std::vector<int>* const part : {&signal.durations, &signal.repeat}) {
    fit_silence(*part, longest_us, place);
    if (!fits(*part, longest_us, place)) return {};
  }
  return signal;
}

}  // namespace companions
