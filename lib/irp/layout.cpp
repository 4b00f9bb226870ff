// SPDX-License-Identifier: GPL-3.0-or-later
#include "lib/irp/layout.h"

#include <algorithm>
#include <bit>

namespace irp {
namespace {

constexpr int kMostItems = 5000;  // of one pass; parts within parts could repeat for ever

/// Why a definition cannot be read.
struct Unreadable {};

/// One walk through a definition that notes its fields instead of sending them.
class Walk {
 public:
  explicit Walk(const Definition& definition) : definition_(definition) {
    walk(definition.stream, false);
    close(0);
  }

  std::vector<LayoutSection> take() { return std::move(sections_); }

 private:
  void walk(const Stream& stream, bool has_symbols) {
    if (!stream.bitspec.empty()) {
      if (has_symbols) throw Unreadable();
      check_symbols(stream.bitspec);
      has_symbols = true;
    }
    const bool first = stream.endless && sections_.empty() && now_.bits == 0;
    const int64_t passes = first ? std::max<int64_t>(stream.least, 1) : stream.least;
    for (int64_t i = 0; i < passes; ++i) {
      count();
      walk(stream.body, has_symbols);
    }
  }

  void walk(const Stream::Items& items, bool has_symbols) {
    for (const auto& item : items) {
      count();
      if (const auto* field = std::get_if<Field>(&item)) {
        if (!has_symbols) throw Unreadable();
        note(*field);
      } else if (const auto* duration = std::get_if<Duration>(&item)) {
        note(*duration);
      } else if (const auto* stream = std::get_if<std::shared_ptr<const Stream>>(&item)) {
        walk(**stream, has_symbols);
      } else {
        throw Unreadable();  // what follows differs from frame to frame
      }
    }
  }

  void count() {
    if (++items_ > kMostItems) throw Unreadable();
  }

  /// Each symbol is a mark and a space, and longer than the one before it.
  void check_symbols(const std::vector<Stream::Items>& symbols) const {
    const bool pairs =
        symbols.size() == 2 || (symbols.size() == 4 && definition_.most_significant_first);
    if (!pairs) throw Unreadable();
    Rational before;
    for (const auto& symbol : symbols) {
      if (symbol.size() != 2) throw Unreadable();
      Rational length;
      for (size_t i = 0; i < symbol.size(); ++i) {
        const auto* part = std::get_if<Duration>(&symbol[i]);
        const auto wanted = i == 0 ? Duration::Kind::kMark : Duration::Kind::kSpace;
        if (part == nullptr || part->kind != wanted) throw Unreadable();
        length = length + microseconds(*part);
      }
      if ((length - before).numerator <= 0) throw Unreadable();
      before = length;
    }
  }

  /// Of a duration that no number changes.
  Rational microseconds(const Duration& duration) const {
    return exact_value(*duration.length, constant) * definition_.scale.at(duration.suffix);
  }

  void note(const Field& field) {
    if (stopped_) throw Unreadable();
    const int64_t width = evaluate(*field.width, constant);
    mask(width);  // throws for a width that no field can have
    now_.fields.push_back({&field, static_cast<size_t>(width)});
    now_.bits += static_cast<size_t>(width);
  }

  void note(const Duration& duration) {
    const bool mark = duration.kind == Duration::Kind::kMark;
    const bool extent = duration.kind == Duration::Kind::kExtent;
    if (now_.bits == 0) {
      if (extent) throw Unreadable();
      lead(microseconds(duration), mark);
    } else if (mark) {
      stopped_ = true;
    } else {
      close(extent ? 0 : rounded(microseconds(duration)));
    }
  }

  void lead(Rational length, bool mark) {
    std::vector<int>& lead_in = now_.lead_in;
    if (mark == (lead_in.size() % 2 == 0)) {
      lead_in.push_back(rounded(length));
    } else if (!lead_in.empty()) {
      lead_in.back() += rounded(length);
    }
  }

  void close(int gap_us) {
    now_.gap_us = gap_us;
    if (now_.bits > 0) sections_.push_back(std::move(now_));
    now_ = {};
    stopped_ = false;
  }

  const Definition& definition_;
  std::vector<LayoutSection> sections_;
  LayoutSection now_;
  int items_ = 0;
  bool stopped_ = false;  // the mark behind the last bit has come
};

}  // namespace

std::optional<std::vector<LayoutSection>> layout(const Protocol& protocol) {
  try {
    return Walk(protocol.definition()).take();
  } catch (const Unreadable&) {
    return {};
  } catch (const Error&) {
    return {};  // a length or width that a parameter decides
  }
}

}  // namespace irp
