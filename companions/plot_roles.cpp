// SPDX-License-Identifier: GPL-3.0-or-later
// Which bursts are drawn as bits: those that carry data by the signal analysis, where it reads a
// press of a key. The shape of a signal cannot always tell: codes of more than four symbols, or of
// marks and spaces that both differ, look like others.
#include <utility>

#include "companions/plot.h"

namespace companions {

namespace {

// Where the shape misses few bits of a frame, these are a second lead-in, which the analysis does
// not tell of; where it misses more, or takes one for a gap, it reads another code.
constexpr size_t kBurstsPerMissed = 8;

/// What the analysis says of a burst.
struct told {
  size_t mark;  // the entry
  analysis::burst_kind kind;
  bool last;  // of its frame: even where it is one of bits, its mark may look like a stop mark
};

/// The bursts of a press.
std::vector<told> bursts_of(const analysis::press_place& press, size_t entries) {
  std::vector<told> all;
  for (int i = 0; i < press.frames * press.length; ++i) {
    const int within = i % press.length;
    const auto mark = static_cast<size_t>(2 * (press.first + i));
    if (mark >= entries) continue;
    all.push_back({mark, press.layout.kind(within, press.length), within == press.length - 1});
  }
  return all;
}

bool is_bit(role its) {
  return its == role::kZero || its == role::kOne || its == role::kBit || its == role::kOdd;
}

/// What the mark and the space of such a burst are for.
std::pair<role, role> roles_of(analysis::burst_kind kind) {
  switch (kind) {
    case analysis::burst_kind::lead_in:
      return {role::kLeadIn, role::kLeadIn};
    case analysis::burst_kind::bits:
      return {role::kBit, role::kBit};
    case analysis::burst_kind::gap:
    case analysis::burst_kind::stop:
    case analysis::burst_kind::ditto:
      break;
  }
  return {role::kStop, role::kGap};
}

void set_roles(coding& form, const told& burst) {
  const auto [mark, space] = roles_of(burst.kind);
  form.roles[burst.mark] = mark;
  if (burst.mark + 1 < form.roles.size()) form.roles[burst.mark + 1] = space;
}

/// Whether the shape shows another code than the one that has bits in these bursts: one of fewer
/// symbols, or with a burst that is like none of them.
bool is_read_wrongly(const coding& form, const std::vector<told>& bursts, int bits_per_burst) {
  if (bits_per_burst > form.bits_per_symbol) return true;
  size_t missed = 0;
  for (const told& burst : bursts) {
    if (burst.last || burst.kind != analysis::burst_kind::bits) continue;
    if (form.roles[burst.mark] == role::kOdd) return true;
    if (is_bit(form.roles[burst.mark])) continue;
    if (burst.mark + 1 < form.roles.size() && form.roles[burst.mark + 1] == role::kGap) return true;
    ++missed;
  }
  return missed * kBurstsPerMissed > bursts.size();
}

/// Takes the bits away that begin in entries `first` to `end` - 1.
void erase_bits(coding& form, size_t first, size_t end) {
  for (section& s : form.sections) {
    std::string bits;
    std::vector<size_t> marks;
    for (size_t i = 0; i < s.bits.size(); ++i) {
      if (s.marks[i] >= first && s.marks[i] < end) continue;
      bits += s.bits[i];
      marks.push_back(s.marks[i]);
    }
    s.bits = std::move(bits);
    s.marks = std::move(marks);
  }
}

}  // namespace

coding drawn_coding(const heard_signal& heard) {
  coding form = heard.form;
  for (const analysis_answer& answer : heard.analysis) {
    const std::vector<told> bursts = bursts_of(answer.place, form.roles.size());
    if (bursts.empty()) continue;
    const bool wrong = is_read_wrongly(form, bursts, answer.place.layout.bits_per_burst);
    if (wrong) erase_bits(form, bursts.front().mark, bursts.back().mark + 2);
    for (const told& burst : bursts) {
      const bool extra =
          !burst.last && burst.kind != analysis::burst_kind::bits && is_bit(form.roles[burst.mark]);
      if (!wrong && !extra) continue;
      set_roles(form, burst);
      erase_bits(form, burst.mark, burst.mark + 2);
    }
  }
  return form;
}

}  // namespace companions
