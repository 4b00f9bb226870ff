// SPDX-License-Identifier: GPL-3.0-or-later
// ESPHome: signals in the log, over several lines with a prefix each, and actions that send one.
// Durations in µs, marks positive, spaces negative.
//
//   [12:00:00][D][remote.raw:028]: Received Raw: 9024, -4512, 564, -564, 564, -1692,
//   [12:00:00][D][remote.raw:041]:   564, -564, 564
//
//   - remote_transmitter.transmit_raw:
//       carrier_frequency: 38000Hz
//       code: [9024, -4512, 564, -564, 564]
//
// An action without a carrier sends light that is not modulated. A receiver whose pin is not
// inverted has every sign the other way round. Other lines of the log and of the configuration are
// passed over.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr std::string_view kReceived = "Received Raw:";
constexpr std::string_view kCode = "code:";
constexpr std::string_view kCarrier = "carrier_frequency:";
constexpr std::string_view kAction = "remote_transmitter.";
constexpr int kSilencePerDuration = 3;  // a first space so much longer than the rest is silence

bool begins(std::string_view line) {
  const size_t code = line.find(kCode);
  return line.find(kReceived) != line.npos || line.find(kAction) != line.npos ||
         line.find(kCarrier) != line.npos || line.find("][D][remote") != line.npos ||
         (code != line.npos && line.find('[', code) != line.npos);
}

/// Without the escapes that colour a terminal; the columns behind one move.
std::string without_colours(std::string_view line) {
  std::string text;
  for (size_t at = 0; at < line.size(); ++at) {
    if (line[at] == '\x1b') {
      at = std::min(line.find('m', at), line.size());
    } else {
      text += line[at];
    }
  }
  return text;
}

/// Where the list begins behind the prefix of a log line.
size_t list_of(std::string_view line) {
  const size_t prefix = line.rfind(']');
  return std::min(line.find_first_not_of(": \t", prefix + 1), line.size());
}

/// Whether the line holds a list and nothing else.
bool goes_on(std::string_view line) {
  const size_t list = list_of(line);
  return list < line.size() && line.find_first_not_of("-0123456789, \t\r", list) == line.npos;
}

/// "38kHz", "38000Hz" or "38000".
std::optional<int> carrier_of(std::string_view text) {
  const size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data() + first, end, value);
  const std::string_view unit(stop, static_cast<size_t>(end - stop));
  if (unit.starts_with('k') || unit.starts_with('K')) value *= 1000;
  if (fault != std::errc{} || !(value >= 0 && value < 1e7)) return {};
  return static_cast<int>(std::lround(value));
}

class reader : public form_reader {
 public:
  [[nodiscard]] bool takes(std::string_view) const override { return true; }

  void read(const text_line& line, findings& out) override {
    const std::string text = without_colours(line.text);
    if (const size_t at = text.find(kReceived); at != text.npos) {
      begin(at_log, line.number, out);
      add({std::string_view(text).substr(at + kReceived.size()), at + kReceived.size() + 1},
          line.number, out);
    } else if (open_ == at_log && goes_on(text)) {
      const size_t list = list_of(text);
      add({std::string_view(text).substr(list), list + 1}, line.number, out);
    } else if (open_ == at_code) {
      add_code({text, 1}, line.number, out);
    } else {
      end(out);
      read_action(text, line.number, out);
    }
  }

  void end(findings& out) override {
    if (open_ == at_log) deliver(out);
    if (open_ == at_code) out.fault(first_, {1, "a list without its closing bracket"});
    open_ = nothing;
  }

 private:
  enum source { nothing, at_log, at_code };

  void begin(source what, size_t line, findings& out) {
    end(out);
    open_ = what;
    first_ = line;
    signed_.clear();
    broken_ = false;
  }

  void read_action(std::string_view text, size_t line, findings& out) {
    if (text.find(kAction) != text.npos) carrier_hz_.reset();
    if (const size_t at = text.find(kCarrier); at != text.npos) {
      const token value{text.substr(at + kCarrier.size()), at + kCarrier.size() + 1};
      carrier_hz_ = carrier_of(value.text);
      if (!carrier_hz_) out.fault(line, no(value, "carrier"));
    }
    const size_t code = text.find(kCode);
    if (code == text.npos) return;
    const size_t bracket = text.find('[', code);
    if (bracket == text.npos) return;
    begin(at_code, line, out);
    add_code({text.substr(bracket + 1), bracket + 2}, line, out);
  }

  void add_code(const token& list, size_t line, findings& out) {
    const size_t end = list.text.find(']');
    add({list.text.substr(0, end), list.column}, line, out);
    if (end == list.text.npos) return;
    deliver(out);
    open_ = nothing;
    carrier_hz_.reset();
  }

  void add(const token& list, size_t line, findings& out) {
    for (token one : split(list.text, kSeparators)) {
      one.column += list.column - 1;
      const bool negative = one.text.starts_with('-');
      const auto us = duration(one.text.substr(negative ? 1 : 0));
      if (!us || signed_.size() >= kMostPatternDurations) {
        if (!broken_) out.fault(line, us ? bad_line{1, kTooManyDurations} : no_duration(one));
        broken_ = true;
        return;
      }
      signed_.push_back(negative ? -*us : *us);
    }
  }

  void deliver(findings& out) {
    if (broken_) return;
    if (signed_.empty()) return out.fault(first_, {1, "expected durations"});
    const int sign = signed_[0] < 0 && !begins_with_silence() ? -1 : 1;
    pattern found{.form = "esphome"};
    for (const int us : signed_) {
      const bool mark = us * sign > 0;
      if (mark || !found.durations.empty()) append(found.durations, mark, std::abs(us));
    }
    if (open_ == at_code) found.carrier_hz = carrier_hz_.value_or(0);
    if (found.durations.empty()) return out.fault(first_, {1, "expected a mark"});
    out.add(first_, std::move(found));
  }

  [[nodiscard]] bool begins_with_silence() const {
    const auto longest = std::max_element(signed_.begin() + 1, signed_.end(),
                                          [](int a, int b) { return std::abs(a) < std::abs(b); });
    return longest != signed_.end() && -signed_[0] > kSilencePerDuration * std::abs(*longest);
  }

  source open_ = nothing;
  size_t first_ = 0;
  std::vector<int> signed_;
  std::optional<int> carrier_hz_;
  bool broken_ = false;
};

void write(std::ostream& out, const pattern& signal) {
  out << "- remote_transmitter.transmit_raw:\n";
  if (const int hz = signal.carrier_hz.value_or(kUsualCarrierHz); hz > 0) {
    out << "    carrier_frequency: " << hz << "Hz\n";
  }
  out << "    code: [";
  write_signed(out, signal.durations, "", "-", ", ");
  out << "]\n";
}

}  // namespace

const form kEsphomeForm = {.name = "esphome",
                           .about = "ESPHome's log and transmit_raw action",
                           .begins = begins,
                           .reader = open<reader>,
                           .writer = one_by_one<write>,
                           .holds = {.carrier = true, .gap = true, .needs_carrier = true}};

}  // namespace companions
