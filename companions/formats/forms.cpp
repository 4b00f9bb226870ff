// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <cmath>

#include "companions/formats/form.h"

namespace companions {

namespace {

/// vantrel takes a carrier period as a whole number of µs.
std::vector<int> in_whole_periods(const pattern& whole, std::vector<int> durations) {
  if (whole.period_us <= 0) return durations;
  const auto period = static_cast<int>(std::lround(whole.period_us));
  for (int& us : durations) us = static_cast<int>(std::lround(us / whole.period_us)) * period;
  return durations;
}

}  // namespace

void findings::add(size_t line, pattern found) {
  found.elapsed_ms = std::exchange(elapsed_ms_, {});
  found_.push_back({line, std::move(found)});
}

void findings::fault(size_t line, bad_line what) {
  elapsed_ms_.reset();
  found_.push_back({line, std::move(what)});
}

std::optional<read_result> findings::take() {
  if (found_.empty()) return {};
  read_result oldest = std::move(found_.front());
  found_.pop_front();
  return oldest;
}

bool is_own_list(const form& one) {
  return &one == &kRawForm || &one == &kCommaForm || &one == &kAnalysirForm;
}

std::vector<int> frame_of(const pattern& whole) {
  const form* const its = find_form(whole.form);
  return its != nullptr && is_own_list(*its)
             ? whole.durations
             : without_gap(in_whole_periods(whole, whole.durations));
}

std::vector<int> repeat_of(const pattern& whole) {
  return without_gap(in_whole_periods(whole, whole.repeat));
}

const form* find_form(std::string_view name) {
  if (name == "csv") return &kCommaForm;
  const auto all = forms();
  const auto found =
      std::find_if(all.begin(), all.end(), [name](const form* one) { return one->name == name; });
  return found == all.end() ? nullptr : *found;
}

std::span<const form* const> forms() {
  static constexpr std::array kForms = {
      &kIrFileForm, &kLircdForm,  &kMode2Form,    &kEsphomeForm,      &kTasmotaForm,
      &kCArrayForm, &kProntoForm, &kJsonForm,     &kBroadlinkHexForm, &kBroadlinkForm,
      &kIrCtlForm,  &kRawForm,    &kAnalysirForm, &kCommaForm};
  return kForms;
}

}  // namespace companions
