// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>

#include "companions/formats/form.h"

namespace companions {

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

std::vector<int> frame_of(const pattern& whole) {
  const bool as_written = whole.form == kCommaForm.name || whole.form == kAnalysirForm.name ||
                          whole.form == kRawForm.name;
  return as_written ? whole.durations : without_gap(whole.durations);
}

std::span<const form* const> forms() {
  static constexpr std::array kForms = {&kMode2Form, &kProntoForm,   &kIrCtlForm,
                                        &kRawForm,   &kAnalysirForm, &kCommaForm};
  return kForms;
}

}  // namespace companions
