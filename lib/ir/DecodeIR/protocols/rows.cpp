// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/ir/DecodeIR/protocols/rows.h"

#include <algorithm>
#include <iterator>

namespace analysis {

unsigned reading::get(const field& where) const {
  const unsigned value = bits.getLsb(where.first, where.width);
  return from->msb != where.reversed ? msb(value, where.width) : value;
}

int reading::code_byte(const field& where) const {
  if (where.width == 0) return -1;
  const auto mask = static_cast<unsigned>((uint64_t{1} << where.width) - 1);
  const unsigned as_sent = msb(bits.getLsb(where.first, where.width), where.width);
  const bool complemented = from->wire.distance() != nullptr && !from->msb && !where.reversed;
  return static_cast<int>(complemented ? ~as_sent & mask : as_sent);
}

bool reading::checks(int bit) const {
  const auto within = [bit](int first, int width) { return bit >= first && bit < first + width; };
  if (from->finish_checks) return true;
  if (from->check.present() && !within(from->unchecked.first, from->unchecked.width)) return true;
  return std::any_of(std::begin(from->constants), std::end(from->constants),
                     [&](const constant& fixed) { return within(fixed.first, fixed.width); }) ||
         std::any_of(std::begin(from->mirrors), std::end(from->mirrors), [&](const mirror& twice) {
           return within(twice.first, twice.width) || within(twice.second, twice.width);
         });
}

bool reading::checks_hold() const {
  for (const constant& fixed : from->constants) {
    if (fixed.width != 0 && get({fixed.first, fixed.width}) != fixed.value) return false;
  }
  for (const mirror& twice : from->mirrors) {
    if (twice.width == 0) break;
    const unsigned difference =
        bits.getLsb(twice.first, twice.width) ^ bits.getLsb(twice.second, twice.width);
    if (difference != (twice.plain ? 0 : (1U << twice.width) - 1)) return false;
  }
  return !from->check.present() || from->check(*this);
}

namespace {

burst_layout layout_of(const coding& wire) {
  if (wire.width() != nullptr) return {.lead = wire.width()->lead, .stop = wire.width()->stop};
  if (wire.phase() != nullptr) return {.lead = wire.phase()->lead[0] > 0 ? 1 : 0};
  const int lead = wire.distance()->has_lead() ? 1 : 0;
  const int split = wire.distance()->split.at;
  return {.lead = lead, .split = split >= 0 ? lead + split : -1, .stop = true};
}

}  // namespace

std::optional<answer> reading::read() const {
  const auto number = [&](const field& where) {
    return where.width == 0 ? -1 : static_cast<int>(get(where));
  };
  answer found{.name = from->name,
               .device = number(from->device),
               .subdevice = number(from->subdevice),
               .function = number(from->function),
               .hex = {code_byte(from->function), code_byte(from->second)},
               .variant = from->variant,
               .layout = layout_of(from->wire)};
  for (const extra& more : from->extras) {
    if (more.label == nullptr) break;
    found.remark.print("%s%s%u", found.remark.empty() ? "" : ", ", more.label, get(more.where));
  }
  if (from->finish.present() && !from->finish(*this, &found)) return {};
  return found;
}

std::optional<answer> read_rows(std::span<const row> rows, const frame& seen) {
  for (const row& candidate : rows) {
    const coding& wire = candidate.wire;
    refusal why{reason::bursts, -1, static_cast<float>(seen.length),
                static_cast<float>(wire.fewest_bursts()), static_cast<float>(wire.most_bursts())};
    reading fitted{seen, &candidate, {}, {}};
    const bool fits =
        seen.length >= wire.fewest_bursts() && seen.length <= wire.most_bursts() &&
        (wire.width() != nullptr ? read_pulse_width(seen, *wire.width(), &fitted.bits, &why)
                                 : read_bi_phase(seen, *wire.phase(), &fitted.bits, &why));
    if (fits && fitted.checks_hold()) {
      if (auto found = fitted.read()) {
        seen.proved({.bits = wire.bits(), .checked = candidate.redundancy()});
        return found;
      }
    }
    seen.refused(fits ? refusal{reason::check} : why, candidate.name);
  }
  return {};
}

void count_dittos(const frame& seen, const pulse_distance& wire, const ditto& form, float scale,
                  float bias, answer* found) {
  const float* const end = seen.first + ptrdiff_t{2} * seen.sent;
  const float* at = seen.first + ptrdiff_t{2} * seen.length;
  for (; is_ditto(wire, form, at, end, scale, bias); at += ptrdiff_t{2} * form.bursts())
    ++found->dittos;
  if (found->dittos > 0) found->length = seen.length + found->dittos * form.bursts() - 1;
}

}  // namespace analysis
