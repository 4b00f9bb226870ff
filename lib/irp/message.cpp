// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/message.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "lib/irp/layout.h"

namespace irp {
namespace {

// Bits that must agree by constants, copies and checks. Fewer agree too often by chance, and where
// a part of the message is missing more are needed.
constexpr size_t kFewestCheckBits = 4, kFewestCheckBitsOfPart = 8;
// How far a received lead-in may be from its definition. Remotes of one kind differ by up to a
// tenth, receivers shift edges by up to 150 µs.
constexpr double kLeadInShare = 0.15;
constexpr int kEdgeUs = 150;
// Gaps vary more: 11 to 17 ms for one of 13, 5.5 to 7.4 for one of 7.4.
constexpr double kGapShare = 0.4;
// A mark below this, where a lead-in would begin behind a gap, is a spike.
constexpr int kSpikeUs = 300;
// Lead-ins whose lengths differ by less than this share cannot be told apart.
constexpr double kAlikeShare = 0.01;

bool near(int received, int defined, double share, int slack_us) {
  return std::abs(received - defined) <= std::max<double>(defined * share, slack_us);
}

bool same_shape(const Section& received, const LayoutSection& defined, bool lead_in_may_lack) {
  return received.bits.size() == defined.bits &&
         ((lead_in_may_lack && received.lead_in.empty()) ||
          std::ranges::equal(received.lead_in, defined.lead_in,
                             [](int a, int b) { return near(a, b, kLeadInShare, kEdgeUs); }));
}

/// A section with bits, and which one of the signal it is.
struct Piece {
  Section section;
  size_t place;
};

/// Sections without bits lead in the next one; those behind the last bit are left out. A spike in a
/// gap belongs to the gap.
std::vector<Piece> joined(std::span<const Section> signal) {
  std::vector<Piece> found;
  std::vector<int> lead_in;
  for (size_t i = 0; i < signal.size(); ++i) {
    const Section& now = signal[i];
    lead_in.insert(lead_in.end(), now.lead_in.begin(), now.lead_in.end());
    if (now.bits.empty()) {
      lead_in.push_back(now.gap_us);
      continue;
    }
    if (!found.empty() && lead_in.size() >= 2 && lead_in[0] < kSpikeUs) {
      found.back().section.gap_us += lead_in[0] + lead_in[1];
      lead_in.erase(lead_in.begin(), lead_in.begin() + 2);
    }
    found.push_back({{std::move(lead_in), now.bits, now.gap_us}, i});
    lead_in.clear();
  }
  return found;
}

/// The name that a field stands for, if it is nothing but some bits of one.
const std::string* plain_name(const Field& field) {
  const auto* name = std::get_if<Name>(&field.value->node);
  const bool fixed = !field.chop || std::holds_alternative<Number>(field.chop->node);
  return name != nullptr && fixed ? &name->text : nullptr;
}

bool is_constant(const Field& field) {
  return std::holds_alternative<Number>(field.value->node);
}

/// The numbers of a definition as its fields were received.
class Reading {
 public:
  explicit Reading(const Protocol& protocol) : protocol_(protocol) {}

  void add(const Section& received, const LayoutSection& defined) {
    size_t at = 0;
    for (const LayoutField& part : defined.fields) {
      fields_.push_back({part.field, value_at(received.bits, at, part.width), part.width});
      learn(*part.field, part.width, fields_.back().value);
      at += part.width;
    }
    bits_ += at;
  }

  /// Bits that what the others say decides.
  size_t check_bits() const { return bits_ - learnt_bits_; }

  /// Nothing when a constant differs, or a parameter stays unknown or out of its range.
  std::optional<Message> message() const {
    Parameters given;
    for (const auto& [name, bits] : learnt_) given[name] = bits.value;
    try {
      const Parameters full = protocol_.complete(given);
      const Lookup get = protocol_.lookup(full);
      bool check = true;
      size_t constant_bits = 0;
      for (const auto& [field, value, width] : fields_) {
        const bool agrees = evaluate(*field, get) == value;
        check = check && agrees;
        if (!is_constant(*field)) continue;
        if (!agrees) return {};
        constant_bits += width;
      }
      if (check) return Message{protocol_.name(), full, true, 0, 0};
      if (constant_bits < kFewestCheckBitsOfPart) return {};  // any other code, more likely
      return Message{{}, {}, false, 0, 0};
    } catch (const Error&) {
      return {};
    }
  }

 private:
  struct Bits {
    int64_t value, known;  // a one for every bit that is known
  };
  struct Received {
    const Field* field;
    int64_t value;
    size_t width;
  };

  int64_t value_at(const std::vector<bool>& bits, size_t at, size_t width) const {
    const bool msb = protocol_.definition().most_significant_first;
    int64_t value = 0;
    for (size_t i = 0; i < width; ++i) {
      value = value << 1 | (bits[at + (msb ? i : width - 1 - i)] ? 1 : 0);
    }
    return value;
  }

  void learn(const Field& field, size_t size, int64_t value) {
    const std::string* name = plain_name(field);
    if (name == nullptr || std::ranges::find(protocol_.parameters(), *name, &Parameter::name) ==
                               protocol_.parameters().end()) {
      return;
    }
    const auto width = static_cast<int64_t>(size);
    if (field.complemented) value = ~value & mask(width);
    if (field.reversed) value = reversed(value, width);
    const int64_t chop = field.chop ? evaluate(*field.chop, constant) : 0;
    if (chop + width > kMostBits) return;
    Bits& bits = learnt_[*name];
    const int64_t fresh = shift_left(mask(width), chop) & ~bits.known;
    bits.value |= shift_left(value, chop) & fresh;
    bits.known |= fresh;
    learnt_bits_ += static_cast<size_t>(one_bits(fresh));
  }

  const Protocol& protocol_;
  std::vector<Received> fields_;
  std::map<std::string, Bits> learnt_;
  size_t bits_ = 0, learnt_bits_ = 0;
};

}  // namespace

struct MessageReader::Layout {
  const Protocol* protocol;
  std::vector<LayoutSection> sections;
  std::vector<size_t> check_bits;  // up to each section and with it

  /// How many sections of the definition the signal begins with.
  size_t fitting(std::span<const Piece> signal) const {
    size_t count = 0;
    while (count < std::min(signal.size(), sections.size()) &&
           same_shape(signal[count].section, sections[count], count == 0)) {
      ++count;
      const int gap_us = sections[count - 1].gap_us;
      if (gap_us > 0 && !near(signal[count - 1].section.gap_us, gap_us, kGapShare, 0)) break;
    }
    return count;
  }

  /// How far the received lead-ins are from the defined ones, as a share of these.
  double distance(std::span<const Piece> signal) const {
    int defined = 0, received = 0;
    for (size_t i = 0; i < signal.size(); ++i) {
      for (const int us : sections[i].lead_in) defined += us;
      for (const int us : signal[i].section.lead_in) received += us;
    }
    return defined == 0 ? 0 : std::abs(received - defined) / static_cast<double>(defined);
  }

  std::optional<Message> read(std::span<const Piece> signal) const {
    const bool part = signal.size() < sections.size() || signal[0].section.lead_in.empty();
    const size_t wanted = part ? kFewestCheckBitsOfPart : kFewestCheckBits;
    if (check_bits[signal.size() - 1] < wanted) return {};
    Reading reading(*protocol);
    for (size_t i = 0; i < signal.size(); ++i) reading.add(signal[i].section, sections[i]);
    std::optional<Message> found = reading.message();
    if (!found) return {};
    found->first = signal.front().place;
    found->last = signal.back().place;
    return found;
  }
};

MessageReader::MessageReader(const Protocols& protocols) {
  for (const auto& protocol : protocols.all()) {
    if (protocols.is_decoded(*protocol)) continue;
    auto found = layout(*protocol);
    if (!found) continue;
    Reading any(*protocol);
    std::vector<size_t> check_bits;
    for (const LayoutSection& section : *found) {
      any.add({.lead_in = {}, .bits = std::vector<bool>(section.bits)}, section);
      check_bits.push_back(any.check_bits());
    }
    if (check_bits.back() < kFewestCheckBits) continue;
    layouts_[found->front().bits].push_back(
        {protocol.get(), std::move(*found), std::move(check_bits)});
  }
}

MessageReader::~MessageReader() = default;

bool MessageReader::reads(const Protocol& protocol) const {
  return std::ranges::any_of(layouts_, [&](const auto& alike) {
    return std::ranges::find(alike.second, &protocol, &Layout::protocol) != alike.second.end();
  });
}

std::optional<Message> MessageReader::read(std::span<const Section> signal) const {
  const std::vector<Piece> pieces = joined(signal);
  std::optional<Message> nearest, damaged;
  for (size_t start = 0; start < pieces.size() && !nearest; ++start) {
    const auto rest = std::span(pieces).subspan(start);
    double nearest_distance = 0;
    const auto alike = layouts_.find(rest[0].section.bits.size());
    if (alike == layouts_.end()) continue;
    for (const Layout& layout : alike->second) {
      const auto received = rest.first(layout.fitting(rest));
      if (received.empty()) continue;
      std::optional<Message> found = layout.read(received);
      if (!found) continue;
      if (!found->check) {
        if (!damaged) damaged = std::move(found);
        continue;
      }
      const double distance = layout.distance(received);
      if (nearest && distance > nearest_distance + kAlikeShare) continue;
      nearest_distance = nearest ? std::min(nearest_distance, distance) : distance;
      nearest = std::move(found);
    }
  }
  return nearest ? nearest : damaged;
}

}  // namespace irp
