// SPDX-License-Identifier: GPL-3.0-or-later
// Tasmota: what it received as JSON, with or without text around it, and commands to send.
//
//   {"IrReceived":{"Protocol":"NEC","Bits":32,"RawData":"+9025-4510+565cCcC-1690CcD"}}
//   {"IrReceived":{"RawData":[9024,4512,564,564,564,1692,564]}}
//   IRSend 0,9024,4512,564,564,564,1692,564               carrier in Hz or kHz, 0 the usual one
//   IRSend 0,+9025-4510+565cCcC-1690CcD
//   IRSend raw,0,564,0110                                 0 is one, 1 two units of 564 µs
//   IRSend raw,0,564,3,0110                               1 is three units, or so many µs
//   IRSend raw,0,9024,4512,564,564,1692,0110              lead-in, mark, space of a 0 and of a 1
//
// In the compact form every new length is followed by its sign and takes the next letter, a capital
// where it stands for a mark; after 26 lengths new ones have no letter.
#include <array>
#include <cctype>

#include "companions/formats/form.h"
#include "companions/formats/text.h"

namespace companions {

namespace {

constexpr std::string_view kRawData = "\"RawData\":";
constexpr std::string_view kCommand = "irsend";
constexpr int kHzPerKhz = 1000;
constexpr int kSmallestHz = 1000;  // smaller carriers are in kHz
constexpr int kLongestUs = 0xFFFF;

char lower(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool is_command(std::string_view line) {
  if (line.size() < kCommand.size()) return false;
  for (size_t i = 0; i < kCommand.size(); ++i) {
    if (lower(line[i]) != kCommand[i]) return false;
  }
  return true;
}

bool begins(std::string_view line) {
  return is_command(line) || line.find(kRawData) != line.npos ||
         line.find("\"IrReceived\"") != line.npos;
}

/// A part of a line, and the column of its first character.
using part = token;

std::optional<bad_line> read_compact(const part& text, std::vector<int>& to) {
  std::vector<int> letters;
  constexpr size_t kLetters = 26;
  for (size_t at = 0; at < text.text.size();) {
    const char c = text.text[at];
    const size_t column = text.column + at;
    if (c == '+' || c == '-') {
      size_t end = at + 1;
      while (end < text.text.size() && text.text[end] >= '0' && text.text[end] <= '9') ++end;
      const token digits{text.text.substr(at + 1, end - at - 1), column + 1};
      const auto us = duration(digits.text);
      if (!us) return no_duration(digits);
      append(to, c == '+', *us);
      if (letters.size() < kLetters) letters.push_back(*us);
      at = end;
    } else {
      const auto letter = static_cast<size_t>(lower(c) - 'a');
      if (letter >= letters.size()) return no({text.text.substr(at, 1), column}, "known length");
      append(to, lower(c) != c, letters[letter]);
      ++at;
    }
    if (to.size() > kMostPatternDurations) return bad_line{1, kTooManyDurations};
  }
  return {};
}

std::optional<bad_line> read_list(const std::vector<token>& numbers, size_t first,
                                  std::vector<int>& to) {
  for (size_t i = first; i < numbers.size(); ++i) {
    const auto us = duration(numbers[i].text);
    if (!us) return no_duration(numbers[i]);
    to.push_back(*us);
  }
  if (to.size() > kMostPatternDurations) return bad_line{1, kTooManyDurations};
  return {};
}

std::vector<token> fields_of(const part& text) {
  auto fields = split(text.text, kSeparators);
  for (token& field : fields) field.column += text.column - 1;
  return fields;
}

/// Every bit a mark and a space, behind a lead-in, and a last mark.
void add_pulse_distance(const std::array<int, 5>& lengths, std::string_view bits,
                        std::vector<int>& to) {
  const auto& [header_mark, header_space, mark, zero_space, one_space] = lengths;
  append(to, true, header_mark);
  append(to, false, header_space);
  for (const char bit : bits) {
    append(to, true, mark);
    append(to, false, bit == '1' ? one_space : zero_space);
  }
  append(to, true, mark);
}

/// Every bit a duration, in turn a mark and a space.
void add_alternating(int zero, int one, std::string_view bits, std::vector<int>& to) {
  for (const char bit : bits) to.push_back(bit == '1' ? one : zero);
}

std::optional<int> carrier_of(std::string_view text, bool& good) {
  const auto told = number(text);
  good = told.has_value();
  if (!told || *told == 0) return {};
  return *told < kSmallestHz ? *told * kHzPerKhz : *told;
}

std::optional<bad_line> read_bits(const std::vector<token>& fields, std::vector<int>& to) {
  const token& bits = fields.back();
  if (bits.text.find_first_not_of("01") != bits.text.npos) return no(bits, "list of bits");
  std::vector<token> lengths(fields.begin() + 2, fields.end() - 1);
  std::vector<int> us;
  if (auto fault = read_list(lengths, 0, us)) return fault;
  constexpr size_t kPulseDistance = 5;
  if (us.size() == 1) {
    add_alternating(us[0], 2 * us[0], bits.text, to);
  } else if (us.size() == 2) {
    const int64_t one = us[1] >= us[0] ? us[1] : int64_t{us[0]} * us[1];
    if (one > kLongestDurationUs) return no_duration(lengths[1]);
    add_alternating(us[0], static_cast<int>(one), bits.text, to);
  } else if (us.size() == kPulseDistance) {
    add_pulse_distance({us[0], us[1], us[2], us[3], us[4]}, bits.text, to);
  } else {
    return bad_line{fields[0].column, "expected 1, 2 or 5 lengths and the bits"};
  }
  return {};
}

std::optional<bad_line> read_command(const part& text, pattern& found) {
  const auto fields = fields_of(text);
  if (fields.size() < 2) return bad_line{text.column, "expected a carrier and durations"};
  if (fields[0].text.starts_with('{')) {
    return bad_line{fields[0].column, "a command by protocol, which holds no durations"};
  }
  const bool as_bits = fields[0].text == "raw";
  if (as_bits && fields.size() < 4) return bad_line{fields[0].column, "expected lengths and bits"};
  bool good = false;
  found.carrier_hz = carrier_of(fields[as_bits ? 1 : 0].text, good);
  if (!good) return no(fields[as_bits ? 1 : 0], "carrier");
  if (as_bits) return read_bits(fields, found.durations);
  const char first = fields[1].text[0];
  if (first == '+' || first == '-') return read_compact(fields[1], found.durations);
  return read_list(fields, 1, found.durations);
}

std::optional<bad_line> read_received(std::string_view line, pattern& found) {
  size_t at = line.find(kRawData);
  if (at == line.npos) return bad_line{1, "received without RawData, so without durations"};
  at = line.find_first_not_of(kBlanks, at + kRawData.size());
  if (at == line.npos || (line[at] != '[' && line[at] != '"')) {
    return bad_line{std::min(at, line.size()) + 1, "expected a list of durations"};
  }
  const size_t end = std::min(line.find(line[at] == '[' ? ']' : '"', at + 1), line.size());
  const part text{line.substr(at + 1, end - at - 1), at + 2};
  if (text.text.starts_with('+') || text.text.starts_with('-')) {
    return read_compact(text, found.durations);
  }
  return read_list(fields_of(text), 0, found.durations);
}

void read(const text_line& line, findings& out) {
  pattern found{.form = "tasmota"};
  std::optional<bad_line> fault;
  if (is_command(line.text)) {
    const size_t blank = std::min(line.text.find(' '), line.text.size());
    fault = read_command({line.text.substr(blank), blank + 1}, found);
  } else {
    fault = read_received(line.text, found);
  }
  if (!fault && found.durations.empty()) fault = bad_line{1, "expected durations"};
  if (fault) {
    out.fault(line.number, std::move(*fault));
  } else {
    out.add(line.number, std::move(found));
  }
}

void write(std::ostream& out, const pattern& signal) {
  out << "IRSend " << signal.carrier_hz.value_or(0) << ',';
  write_list(out, signal.durations, ",");
  out << '\n';
}

}  // namespace

const form kTasmotaForm = {.name = "tasmota",
                           .about = "Tasmota's RawData and IRSend 38000,9024,4512,564",
                           .begins = begins,
                           .reader = line_by_line<read>,
                           .writer = one_by_one<write>,
                           .holds = {.carrier = true, .longest_us = kLongestUs}};

}  // namespace companions
