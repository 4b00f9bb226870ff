// SPDX-License-Identifier: GPL-3.0-or-later
// Pronto hex: words of four hexadecimal digits, over one line or more; lib/pronto explains them.
//
//   0000 006D 0002 0002 0157 00AC 0015 05E8
//   0157 0056 0015 0E49
#include "lib/pronto/pronto.h"

#include <algorithm>
#include <cmath>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

using pronto::kDigits;

bool is_word(std::string_view text) {
  return text.size() == kDigits && number(text, pronto::kBase);
}

bool begins_durations(std::string_view line) {
  const auto tokens = split(line.substr(0, 4 * kDigits), kSeparators);
  return tokens.size() >= 2 && (tokens[0].text == "0000" || tokens[0].text == "0100") &&
         is_word(tokens[1].text);
}

/// Whether the line is a code of another format, such as RC5 by its number,
/// 5000 0000 0000 0001 0005 0023: without this it would be a list of durations.
bool is_foreign(std::string_view line) {
  constexpr size_t kLongest = 8 * (kDigits + 1);
  if (line.size() > kLongest) return false;
  const auto tokens = split(line, kSeparators);
  if (!std::all_of(tokens.begin(), tokens.end(), [](auto& t) { return is_word(t.text); })) {
    return false;
  }
  std::vector<uint16_t> words(tokens.size());
  std::transform(tokens.begin(), tokens.end(), words.begin(), [](const token& t) {
    return static_cast<uint16_t>(number(t.text, pronto::kBase).value_or(0));
  });
  const size_t header = pronto::kHeaderWords;
  return words.size() > header && words.size() == header + size_t{2} * (words[2] + words[3]);
}

bool begins(std::string_view line) {
  return begins_durations(line) || is_foreign(line);
}

class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view line) const override {
    if (!short_of_words()) return false;
    const auto tokens = split(line, kSeparators);
    return !tokens.empty() && !begins_durations(line) &&
           std::all_of(tokens.begin(), tokens.end(), [](auto& t) { return is_word(t.text); });
  }

  void read(const text_line& line, findings& out) override {
    for (const token& t : split(line.text, kSeparators)) {
      const auto word = number(t.text, pronto::kBase);
      if (!word || t.text.size() > kDigits) {
        clear();
        return out.fault(line.number, no(t, "Pronto word"));
      }
      words_.push_back(static_cast<uint16_t>(*word));
      places_.push_back({line.number, t.column});
    }
    if (!short_of_words()) end(out);
  }

  void end(findings& out) override {
    if (!words_.empty()) deliver(out);
    clear();
  }

 private:
  static constexpr size_t kCountsWord = 2;

  [[nodiscard]] bool short_of_words() const {
    if (words_.empty()) return false;
    return words_.size() < pronto::kHeaderWords ||
           words_.size() < pronto::kHeaderWords + size_t{2} * (words_[2] + words_[3]);
  }

  void clear() {
    words_.clear();
    places_.clear();
  }

  void deliver(findings& out) const {
    if (words_.size() < pronto::kHeaderWords) {
      return out.fault(places_[0].line, {1, "a Pronto text of fewer than 4 words"});
    }
    pronto::code parts;
    const pronto::result found_parts = pronto::parse_code(words_, &parts);
    if (found_parts == pronto::result::kForeign) {
      return out.fault(places_[0].line,
                       {places_[0].column, "a Pronto format that holds no durations"});
    }
    if (found_parts != pronto::result::kGood) {
      const place& counts = places_[kCountsWord];
      return out.fault(counts.line,
                       {counts.column, "the pair counts do not fit the number of Pronto words"});
    }
    const double period = pronto::exact_period_us(parts.frequency);
    if (period == 0) {
      return out.fault(places_[1].line, {places_[1].column, "a carrier of 0, the unit of all"});
    }
    for (const pronto::sequence& part : {parts.once, parts.repeat}) {
      for (const uint16_t& word : part.frame) {
        if (word * period <= kLongestDurationUs) continue;
        const place& its = places_[static_cast<size_t>(&word - words_.data())];
        return out.fault(its.line, {its.column, "a duration over 16777215 us"});
      }
    }
    pattern found{.form = "pronto",
                  .durations = durations(parts.once, period),
                  .repeat = durations(parts.repeat, period)};
    found.period_us = period;
    found.carrier_hz = words_[0] == pronto::kUnmodulated
                           ? 0
                           : static_cast<int>(pronto::frequency_hz(parts.frequency));
    if (found.durations.empty()) {
      found.durations.swap(found.repeat);
      found.held = !found.durations.empty();
    }
    out.add(places_[0].line, std::move(found));
  }

  /// A final space of 0 says that the silence is not known.
  static std::vector<int> durations(const pronto::sequence& part, double period) {
    std::vector<int> all;
    for (const uint16_t word : part.frame)
      all.push_back(static_cast<int>(std::lround(word * period)));
    if (part.gap > 0) all.push_back(static_cast<int>(std::lround(part.gap * period)));
    return all;
  }

  struct place {
    size_t line, column;
  };
  std::vector<uint16_t> words_;
  std::vector<place> places_;  // of each word
};

void write_sequence(std::ostream& out, const std::vector<int>& durations, double period) {
  for (const int us : durations) {
    out << ' ';
    write_hex(out, static_cast<uint32_t>(std::clamp(std::lround(us / period), 1L, 0xFFFFL)),
              kDigits);
  }
  if (durations.size() % 2 == 1) out << " 0000";  // the silence is not known
}

void write(std::ostream& out, const pattern& signal) {
  const int told = signal.carrier_hz.value_or(kUsualCarrierHz);
  const int carrier_hz = told > 0 ? told : kUsualCarrierHz;  // the unit of unmodulated codes, too
  const uint16_t frequency = pronto::frequency_word(carrier_hz);
  const double period_us = pronto::exact_period_us(frequency);
  const std::vector<int> none;
  const std::vector<int>& once = signal.held ? none : signal.durations;
  const std::vector<int>& repeat = signal.held ? signal.durations : signal.repeat;
  write_hex(out, told > 0 ? pronto::kLearned : pronto::kUnmodulated, kDigits);
  for (const size_t word : {size_t{frequency}, (once.size() + 1) / 2, (repeat.size() + 1) / 2}) {
    out << ' ';
    write_hex(out, static_cast<uint32_t>(word), kDigits);
  }
  write_sequence(out, once, period_us);
  write_sequence(out, repeat, period_us);
  out << '\n';
}

}  // namespace

const form kProntoForm = {.name = "pronto",
                          .about = "Pronto hex, 0000 006D 0022 0002 0157 00AC",
                          .begins = begins,
                          .reader = open<reader>,
                          .writer = one_by_one<write>,
                          .holds = {.carrier = true,
                                    .gap = true,
                                    .repeat = true,
                                    .needs_carrier = true,
                                    .longest_periods = 0xFFFF,
                                    .most_durations = size_t{2} * 0xFFFF}};

}  // namespace companions
